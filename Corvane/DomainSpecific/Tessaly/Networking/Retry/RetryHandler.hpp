#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <Corvane/Core/IncrementCounter.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>

namespace corvane {

/// Tries something again after an error, at once or some seconds later, and gives up after so many attempts.
///
///     auto retry = RetryHandler::make(3, 5.0);
///     retry->start([] { load(); }, [] { showFailure(); });
///     ...
///     retry->recordError();  // load() five seconds later; the third time showFailure() follows it
///
/// One thread, usually the main one: retries come on the run loop of the thread that records the error. Callbacks may
/// call every operation and may let the handler go. No retry comes once the handler is gone.
class CORVANE_EXPORT RetryHandler final : public std::enable_shared_from_this<RetryHandler> {
  public:
    /// `retryInterval` in seconds; with zero retries come at once, any other value makes them postponed. A negative
    /// maximum is reached from the start.
    [[nodiscard]] static std::shared_ptr<RetryHandler> make(std::int64_t maxRetryAttemptCount, double retryInterval);

    ~RetryHandler();
    RetryHandler(const RetryHandler&) = delete;
    RetryHandler& operator=(const RetryHandler&) = delete;

    [[nodiscard]] const IncrementCounter& retryCounter() const noexcept { return retryCounter_; }

    [[nodiscard]] double retryInterval() const noexcept { return retryInterval_; }

    [[nodiscard]] bool isStarted() const noexcept { return isStarted_; }

    [[nodiscard]] bool isReachedMaxRetryAttempt() const { return retryCounter_.isLimitReached(); }

    [[nodiscard]] bool isPostponedRetryEnabled() const noexcept { return retryInterval_ != 0; }

    [[nodiscard]] bool isPostponedRetryScheduled() const noexcept { return timer_ != nullptr; }

    /// Lets errors be recorded. A callback that is given replaces the one before, an empty one leaves it in place. The
    /// count goes on: `reset` begins anew.
    void start(std::function<void()> onRetry = nullptr, std::function<void()> onReachMaxRetryCount = nullptr);

    /// Records no more errors and drops a postponed retry; the count stays.
    void stop();

    /// Drops a postponed retry and counts from zero; a handler that is started stays so.
    void reset();

    /// Counts one attempt and calls `onRetry`, at once or postponed; with the attempt that reaches the maximum the
    /// handler stops, and `onReachMaxRetryCount` follows. Ignored unless started, and while a retry is pending.
    void recordError();

  private:
    RetryHandler(std::int64_t maxRetryAttemptCount, double retryInterval);

    void retry();
    void dropTimer();

    IncrementCounter retryCounter_;
    double retryInterval_;
    std::shared_ptr<Timer> timer_;
    std::function<void()> onRetry_;
    std::function<void()> onReachMaxRetryCount_;
    bool isStarted_ = false;
};

}  // namespace corvane
