#pragma once

#include <memory>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane::testing {

/// A clock that stands still until a test moves it. While it lives it is the clock in force: every timer, delay,
/// timeout and cache period of Corvane is counted on it, and no thread sleeps towards a deadline.
///
///     VirtualClock clock;
///     const auto timer = Timer::scheduled(60, false, [&](Timer&) { fired = true; });
///     clock.advance(60);
///     EXPECT_TRUE(fired);
///
/// `advance` and `settle` are for the main thread, where they pump the main run loop themselves, inside a block of
/// it, too; another thread may call them while the main thread runs its loop. Calling them in a block of a dispatch
/// queue, or while a block waits for the test's own thread, waits forever: they return when every block has ended.
/// What a thread that is not Corvane's does meanwhile is not waited for.
///
/// `RunLoop::run` and `runUntil` sleep while this clock stands still; a `runUntil` ends when the wall clock is
/// moved to its limit, by a block or another thread. One virtual clock at a time.
class CORVANE_EXPORT VirtualClock {
  public:
    /// Installs the clock; the wall clock shows `wallTime` (2024-03-15 12:00:00 UTC unless chosen).
    explicit VirtualClock(Date wallTime = Date(std::chrono::seconds(1710504000)));

    /// Puts the system's clock back in force. Deadlines still pending stand on a time that nobody advances any more.
    ~VirtualClock();
    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    /// Moves the time on by `seconds`: from deadline to deadline in order, each time letting everything that is due
    /// run on its thread, and what that causes, until all is idle. Zero, negative and not-a-number only settle.
    void advance(double seconds);

    /// Lets everything run that is due now, and what that causes, until all is idle.
    void settle();

    /// Sets the wall clock alone, as a user or the network's time service does; deadlines stay.
    void setWallTime(Date wallTime);

    [[nodiscard]] Date now() const noexcept;

    [[nodiscard]] SteadyInstant uptime() const noexcept;
};

}  // namespace corvane::testing
