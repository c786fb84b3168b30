#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include <Corvane/Export.hpp>

namespace corvane {

/// A counter with a limit that it never passes, and a callback for when the limit is reached.
///
///     IncrementCounter attempts(0, 3, [] { giveUp(); });
///     attempts.increment();  // the third call reaches the limit
///
/// A sum beyond 64 bits is a programming error and stops the process. A value; one thread at a time.
class CORVANE_EXPORT IncrementCounter {
  public:
    /// Starts at the smaller of `initialCount` and `limit`; without a limit this is the largest 64-bit integer.
    /// `onReachLimit` may be empty, and is called by `increment`, on its thread; copies of the counter share what it
    /// has captured.
    explicit IncrementCounter(std::int64_t initialCount = 0, std::optional<std::int64_t> limit = std::nullopt,
                              std::function<void()> onReachLimit = nullptr, std::int64_t customIncrement = 1);

    [[nodiscard]] std::int64_t count() const noexcept { return count_; }

    [[nodiscard]] std::int64_t limit() const noexcept { return limit_; }

    [[nodiscard]] std::int64_t incrementValue() const noexcept { return incrementValue_; }

    void setOnReachLimit(std::function<void()> callback) { onReachLimit_ = std::move(callback); }

    /// Whether the count is at the limit or the next step would pass it.
    [[nodiscard]] bool isLimitReached() const;

    /// Takes a step unless it would pass the limit. When the limit is reached then, calls `onReachLimit`, which may
    /// end or replace the counter; so does every further call.
    void increment();

    /// Sets the count to zero, wherever it started.
    void reset() noexcept { count_ = 0; }

  private:
    [[nodiscard]] std::int64_t nextCount() const;

    std::function<void()> onReachLimit_;
    std::int64_t incrementValue_;
    std::int64_t limit_;
    std::int64_t count_;
};

}  // namespace corvane
