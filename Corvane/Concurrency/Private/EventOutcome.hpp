#pragma once

#include <utility>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// Calls `submit(event, onDeny)` on the main thread and waits for either: true for the event. `context` is who hops.
template <class Submit>
Task<bool> eventOutcome(Submit submit, SourceFileContext context) {
    co_return co_await withContinuation<bool>([&](const Continuation<bool>& continuation) {
        asyncOnMain(
            [submit, continuation] {
                submit([continuation] { continuation.resume(true); }, [continuation] { continuation.resume(false); });
            },
            context);
    });
}

template <class Operation>
Task<> performed(Operation operation) {
    operation();
    co_return;
}

/// Calls `operation()` on the main thread.
template <class Operation>
Task<> performedOnMain(Operation operation) {
    co_await onMain(performed(std::move(operation)));
}

}  // namespace corvane
