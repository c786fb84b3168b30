#include <utility>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/APIAutoRetryHandler.hpp>

namespace corvane {

APIAutoRetry::~APIAutoRetry() = default;

std::shared_ptr<APIAutoRetryHandler> APIAutoRetryHandler::make(std::int64_t retryCount, double retryTimeout) {
    return std::shared_ptr<APIAutoRetryHandler>(new APIAutoRetryHandler(retryCount, retryTimeout));
}

APIAutoRetryHandler::APIAutoRetryHandler(std::int64_t retryCount, double retryTimeout) noexcept
    : retryCount_(retryCount), retryTimeout_(retryTimeout) {}

Task<TYAutoRetryResult> APIAutoRetryHandler::start() {
    return waitAndDecide(shared_from_this());
}

Task<TYAutoRetryResult> APIAutoRetryHandler::waitAndDecide(std::shared_ptr<APIAutoRetryHandler> self) {
    if (self->currentCount() >= self->retryCount_) co_return TYAutoRetryResult::stop;
    const auto slept = co_await Task<>::sleep(self->retryTimeout_);
    if (!slept) co_return TYAutoRetryResult::stop;
    // Looked at again: the count was free to change during the wait. Below a limit, it cannot overflow.
    co_return self->currentCount_.mutate([limit = self->retryCount_](std::int64_t& count) {
        if (count >= limit) return TYAutoRetryResult::stop;
        ++count;
        return TYAutoRetryResult::retry;
    });
}

}  // namespace corvane
