#include <utility>

#include <Corvane/Testing/Private/LoopbackLog.hpp>

namespace corvane::testing {

template <class Condition>
bool LoopbackLog::waitUntil(std::unique_lock<std::mutex>& lock, Patience patience, Condition condition) const {
    // Counted on the wall clock because ThreadSanitizer of GCC 12 does not know waits on the monotonic one; a
    // clock that is set meanwhile makes patience longer or shorter and nothing wrong.
    return changed_.wait_until(lock, std::chrono::system_clock::now() + patience, condition);
}

void LoopbackLog::connectionOpened(std::uint64_t connection) {
    const std::lock_guard lock(mutex_);
    ++accepted_;
    open_.insert(connection);
    changed_.notify_all();
}

void LoopbackLog::connectionClosed(std::uint64_t connection) {
    const std::lock_guard lock(mutex_);
    open_.erase(connection);
    changed_.notify_all();
}

void LoopbackLog::requestArrived(LoopbackRequest request) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(request));
    changed_.notify_all();
}

void LoopbackLog::exchangeHeld(LoopbackExchange exchange) {
    const std::lock_guard lock(mutex_);
    held_.push_back(std::move(exchange));
    changed_.notify_all();
}

void LoopbackLog::forgetHeldExchanges() {
    std::deque<LoopbackExchange> forgotten;
    const std::lock_guard lock(mutex_);
    forgotten.swap(held_);
}

std::vector<LoopbackRequest> LoopbackLog::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::size_t LoopbackLog::requestCount() const {
    const std::lock_guard lock(mutex_);
    return requests_.size();
}

std::size_t LoopbackLog::connectionsAccepted() const {
    const std::lock_guard lock(mutex_);
    return accepted_;
}

std::size_t LoopbackLog::connectionsOpen() const {
    const std::lock_guard lock(mutex_);
    return open_.size();
}

bool LoopbackLog::waitForRequests(std::size_t count, Patience patience) const {
    std::unique_lock lock(mutex_);
    return waitUntil(lock, patience, [&] { return requests_.size() >= count; });
}

bool LoopbackLog::waitForOpenConnections(std::size_t count, Patience patience) const {
    std::unique_lock lock(mutex_);
    return waitUntil(lock, patience, [&] { return open_.size() == count; });
}

bool LoopbackLog::waitForEndOf(std::uint64_t connection, Patience patience) const {
    std::unique_lock lock(mutex_);
    return waitUntil(lock, patience, [&] { return !open_.contains(connection); });
}

std::optional<LoopbackExchange> LoopbackLog::waitForHeldExchange(Patience patience) {
    std::unique_lock lock(mutex_);
    if (!waitUntil(lock, patience, [&] { return !held_.empty(); })) return std::nullopt;
    LoopbackExchange oldest = std::move(held_.front());
    held_.pop_front();
    return oldest;
}

}  // namespace corvane::testing
