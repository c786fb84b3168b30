#pragma once

#include <atomic>
#include <cstdint>

#include <Corvane/Export.hpp>

namespace corvane {

/// A four-byte mutual-exclusion lock that is not recursive and not fair: whoever comes while it is free gets
/// it, and a thread that waits sleeps in the kernel. For short critical sections and small objects; fits
/// `std::lock_guard` and `std::unique_lock`. Locking it again on the thread that holds it deadlocks.
class CORVANE_EXPORT UnfairLock {
  public:
    constexpr UnfairLock() noexcept = default;
    UnfairLock(const UnfairLock&) = delete;
    UnfairLock& operator=(const UnfairLock&) = delete;

    void lock() noexcept {
        if (!try_lock()) lockContended();
    }

    [[nodiscard]] bool try_lock() noexcept {  // the name that the standard's Lockable requires
        std::uint32_t expected = unlocked;
        return state_.compare_exchange_strong(expected, locked, std::memory_order_acquire, std::memory_order_relaxed);
    }

    void unlock() noexcept {
        if (state_.exchange(unlocked, std::memory_order_release) == lockedWithSleepers) wakeOne();
    }

  private:
    static constexpr std::uint32_t unlocked = 0;
    static constexpr std::uint32_t locked = 1;
    static constexpr std::uint32_t lockedWithSleepers = 2;

    void lockContended() noexcept;
    void wakeOne() noexcept;

    std::atomic<std::uint32_t> state_ = unlocked;
};

}  // namespace corvane
