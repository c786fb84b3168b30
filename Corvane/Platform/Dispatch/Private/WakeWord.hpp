#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include <Corvane/Export.hpp>

namespace corvane {

/// A flag that one thread sleeps on and any thread sets; taking it resets it. Setting makes no system call unless
/// somebody sleeps.
///
/// `set` may still be about to wake the futex when the sleeper has seen the flag and ended the word. A wake-up on
/// an address that nobody waits on, or that is gone, does nothing, so a word may live on the sleeper's stack.
class WakeWord {
  public:
    void set() noexcept {
        if (state_.exchange(State::set, std::memory_order_acq_rel) == State::waiting) wakeSleeper();
    }

    /// Takes the flag if it is set; whether it was.
    bool take() noexcept {
        State expected = State::set;
        return state_.load(std::memory_order_relaxed) == expected &&
               state_.compare_exchange_strong(expected, State::idle, std::memory_order_acq_rel);
    }

    /// Sleeps until the flag is set, and takes it.
    void wait() noexcept {
        while (!waitOnce(nullptr)) {
        }
    }

    /// The same, for `timeout` at most; may also return early. Whether the flag was set and is taken.
    bool waitFor(std::chrono::nanoseconds timeout) noexcept { return waitOnce(&timeout); }

  private:
    enum class State : std::uint32_t { idle, set, waiting };

    CORVANE_EXPORT bool waitOnce(const std::chrono::nanoseconds* timeout) noexcept;
    CORVANE_EXPORT void wakeSleeper() noexcept;

    std::atomic<State> state_ = State::idle;
};

}  // namespace corvane
