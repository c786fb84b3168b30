#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <Corvane/Platform/Dispatch/CancellationError.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/Private/DelayedWork.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

namespace {

/// A stop callback that ends a sleep.
struct Waking {
    Continuation<bool> sleeper;

    void operator()() const { sleeper.tryResume(false); }
};

Task<std::expected<void, AnyError>> sleepFor(double seconds) {
    if (!CurrentTask::isNotCancelled()) co_return std::unexpected<AnyError>(CancellationError());

    DelayedWork& delayed = DelayedWork::shared();
    std::shared_ptr<DelayedWork::Entry> alarm;
    std::optional<std::stop_callback<Waking>> cancellation;
    const bool hasSlept = co_await withContinuation<bool>([&](const Continuation<bool>& sleeper) {
        alarm = delayed.add(deadlineAfter(seconds), nullptr, [sleeper] { sleeper.tryResume(true); }, {});
        cancellation.emplace(CurrentTask::stopToken(), Waking{sleeper});
    });
    cancellation.reset();
    if (hasSlept) co_return {};
    delayed.remove(*alarm);
    co_return std::unexpected<AnyError>(CancellationError());
}

}  // namespace

bool CurrentTask::isNotCancelled() noexcept {
    const TaskContext* const context = TaskContext::current();
    return context == nullptr || !context->cancellation().isCancelled();
}

std::stop_token CurrentTask::stopToken() {
    const TaskContext* const context = TaskContext::current();
    return context != nullptr ? context->cancellation().token() : std::stop_token();
}

Task<std::expected<void, AnyError>> CurrentTask::sleep(double seconds) {
    const double nanoseconds = seconds * 1e9;
    if (!std::isfinite(nanoseconds) || nanoseconds <= -1.0 || nanoseconds >= 0x1p64) {
        fatalError("a task cannot sleep for " + std::to_string(seconds) + " seconds");
    }
    return sleepFor(seconds);
}

}  // namespace corvane
