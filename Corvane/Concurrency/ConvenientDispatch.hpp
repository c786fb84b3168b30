#pragma once

#include <concepts>
#include <string_view>
#include <type_traits>
#include <utility>

#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>

/// \file
/// Thread hops that say where they came from. A callback that was queued writes one entry at level debug, category
/// "Concurrency", with the place of the call, on the thread it runs on and right before it runs; a callback that is
/// run directly writes none. While that level is off a hop pays one relaxed load for it.
///
/// All functions may be called on any thread. Callbacks are moved to where they run, called once and destroyed
/// there; together with the place of the call, one of up to 64 bytes is queued without an allocation of its own (56
/// bytes with a delay and a quality of service). There is no way to take one back. A queued callback must not throw.
/// The main thread has to run or pump its run loop; an `after` in seconds counts on the clock in force.
///
/// What runs a callback directly stops the process when a task of another executor than the main one calls it on the
/// main thread (`Thread::assumeMainExecutor`).

namespace corvane {

/// What can be queued: something called without arguments, whose result nobody gets.
template <class Execute>
concept DispatchCallback = std::invocable<std::decay_t<Execute>&>;

namespace detail {

/// Each writes one entry: `operation` with what follows it in brackets, and the place of the call.
CORVANE_EXPORT void logHop(std::string_view operation, const SourceFileContext& context,
                           std::string_view progress = "") noexcept;
CORVANE_EXPORT void logDelayedHop(std::string_view operation, double after, const SourceFileContext& context) noexcept;
CORVANE_EXPORT void logDelayedHop(std::string_view operation, double after, DispatchQoS qos,
                                  const SourceFileContext& context) noexcept;

}  // namespace detail

/// Queues `execute` on the main queue, also when called on the main thread.
template <DispatchCallback Execute>
void asyncOnMain(Execute&& execute, SourceFileContext context = SourceFileContext::current()) {
    DispatchQueue::main().async([context, execute = std::forward<Execute>(execute)]() mutable {
        detail::logHop("asyncOnMain()", context);
        static_cast<void>(execute());
    });
}

/// Queues `execute` on the main queue once `after` seconds have passed; at once when `after` is not above zero.
template <DispatchCallback Execute>
void asyncOnMain(double after, Execute&& execute, SourceFileContext context = SourceFileContext::current()) {
    if (!(after > 0.0)) return asyncOnMain(std::forward<Execute>(execute), context);
    DispatchQueue::main().asyncAfter(after, [context, after, execute = std::forward<Execute>(execute)]() mutable {
        detail::logDelayedHop("asyncOnMain", after, context);
        static_cast<void>(execute());
    });
}

/// Runs `execute` before returning when called on the main thread; queues it on the main queue otherwise.
template <DispatchCallback Execute>
void performOnMain(Execute&& execute, SourceFileContext context = SourceFileContext::current()) {
    if (Thread::isMainThread()) {
        Thread::assumeMainExecutor();
        std::decay_t<Execute> direct(std::forward<Execute>(execute));
        static_cast<void>(direct());
        return;
    }
    DispatchQueue::main().async([context, execute = std::forward<Execute>(execute)]() mutable {
        detail::logHop("performOnMain()", context);
        static_cast<void>(execute());
    });
}

/// Runs `execute` on the main thread and waits for it; gives what it returns and throws what it throws. Called on the
/// main thread it runs `execute` directly. Off the main thread it writes two entries, that it is waiting, on the
/// calling thread, and that it is running, on the main thread; it deadlocks when the main thread waits for the caller.
template <std::invocable Execute>
std::invoke_result_t<Execute> syncOnMain(Execute&& execute, SourceFileContext context = SourceFileContext::current()) {
    using Result = std::invoke_result_t<Execute>;
    if (Thread::isMainThread()) {
        Thread::assumeMainExecutor();
        return std::forward<Execute>(execute)();
    }
    constexpr std::string_view operation = std::is_void_v<Result> ? "syncOnMain()" : "syncOnMain() -> T";
    detail::logHop(operation, context, " is waiting");
    return DispatchQueue::main().sync([&]() -> Result {
        detail::logHop(operation, context, " is running");
        return std::forward<Execute>(execute)();
    });
}

/// Queues `execute` on the global queue of the class of `qos`.
template <DispatchCallback Execute>
void asyncOnGlobal(DispatchQoS qos, Execute&& execute, SourceFileContext context = SourceFileContext::current()) {
    DispatchQueue::global(qos.qosClass).async([context, execute = std::forward<Execute>(execute)]() mutable {
        detail::logHop("asyncOnGlobal()", context);
        static_cast<void>(execute());
    });
}

/// Queues `execute` on the global queue of the class of `qos` once `after` seconds have passed, by way of the delay
/// also when `after` is zero or less.
template <DispatchCallback Execute>
void asyncOnGlobal(double after, DispatchQoS qos, Execute&& execute,
                   SourceFileContext context = SourceFileContext::current()) {
    DispatchQueue::global(qos.qosClass)
        .asyncAfter(after, [context, after, qos, execute = std::forward<Execute>(execute)]() mutable {
            detail::logDelayedHop("asyncOnGlobal", after, qos, context);
            static_cast<void>(execute());
        });
}

/// Queues `execute` on `queue`, with `qos`, once `after` seconds have passed; at once when `after` is not above zero.
template <DispatchCallback Execute>
void async(DispatchQueue& queue, double after, DispatchQoS qos, Execute&& execute,
           SourceFileContext context = SourceFileContext::current()) {
    if (after > 0.0) {
        queue.asyncAfter(
            after,
            [context, after, execute = std::forward<Execute>(execute)]() mutable {
                detail::logDelayedHop("DispatchQueue.async", after, context);
                static_cast<void>(execute());
            },
            qos);
    } else {
        queue.async(
            [context, execute = std::forward<Execute>(execute)]() mutable {
                detail::logHop("DispatchQueue.async", context);
                static_cast<void>(execute());
            },
            qos);
    }
}

}  // namespace corvane
