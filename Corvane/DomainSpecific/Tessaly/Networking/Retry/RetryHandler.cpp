#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/RetryHandler.hpp>

namespace corvane {

std::shared_ptr<RetryHandler> RetryHandler::make(std::int64_t maxRetryAttemptCount, double retryInterval) {
    return std::shared_ptr<RetryHandler>(new RetryHandler(maxRetryAttemptCount, retryInterval));
}

RetryHandler::RetryHandler(std::int64_t maxRetryAttemptCount, double retryInterval)
    : retryCounter_(0, maxRetryAttemptCount), retryInterval_(retryInterval) {}

RetryHandler::~RetryHandler() {
    dropTimer();
}

void RetryHandler::start(std::function<void()> onRetry, std::function<void()> onReachMaxRetryCount) {
    isStarted_ = true;
    if (onRetry) onRetry_ = std::move(onRetry);
    if (onReachMaxRetryCount) onReachMaxRetryCount_ = std::move(onReachMaxRetryCount);
}

void RetryHandler::stop() {
    isStarted_ = false;
    dropTimer();
}

void RetryHandler::reset() {
    dropTimer();
    retryCounter_.reset();
}

void RetryHandler::recordError() {
    if (!isStarted_ || isPostponedRetryScheduled()) return;
    if (!isPostponedRetryEnabled()) {
        retry();
        return;
    }
    timer_ = Timer::scheduled(
        retryInterval_, false,
        [weak = weak_from_this()](Timer&) {
            if (const auto self = weak.lock()) self->retry();
        },
        RunLoop::current());
}

void RetryHandler::retry() {
    // Both callbacks come even when the first lets the handler go.
    const auto self = shared_from_this();
    retryCounter_.increment();
    dropTimer();
    const bool isReached = isReachedMaxRetryAttempt();
    if (isReached) stop();
    if (const auto callback = onRetry_) callback();
    if (!isReached) return;
    if (const auto callback = onReachMaxRetryCount_) callback();
}

void RetryHandler::dropTimer() {
    if (const auto timer = std::exchange(timer_, nullptr)) timer->invalidate();
}

}  // namespace corvane
