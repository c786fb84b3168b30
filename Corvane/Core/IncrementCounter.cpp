#include <algorithm>
#include <limits>

#include <Corvane/Core/IncrementCounter.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

IncrementCounter::IncrementCounter(std::int64_t initialCount, std::optional<std::int64_t> limit,
                                   std::function<void()> onReachLimit, std::int64_t customIncrement)
    : onReachLimit_(std::move(onReachLimit)),
      incrementValue_(customIncrement),
      limit_(limit.value_or(std::numeric_limits<std::int64_t>::max())),
      count_(std::min(initialCount, limit_)) {}

bool IncrementCounter::isLimitReached() const {
    return count_ >= limit_ || nextCount() > limit_;
}

void IncrementCounter::increment() {
    const std::int64_t next = nextCount();
    const bool isRefused = next > limit_;
    if (!isRefused) count_ = next;
    if (!isRefused && !isLimitReached()) return;
    // A copy, as the callback may end the counter.
    if (const auto callback = onReachLimit_) callback();
}

std::int64_t IncrementCounter::nextCount() const {
    std::int64_t next = 0;
    if (__builtin_add_overflow(count_, incrementValue_, &next)) fatalError("An increment counter overflowed");
    return next;
}

}  // namespace corvane
