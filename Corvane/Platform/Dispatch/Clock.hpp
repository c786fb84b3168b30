#pragma once

#include <chrono>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

/// An instant on the monotonic clock, which deadlines are counted on.
using SteadyInstant = std::chrono::time_point<std::chrono::steady_clock, std::chrono::nanoseconds>;

/// The one seam through which Corvane reads and waits for time. The system's clock stands behind it unless a test
/// has installed another one (`testing::VirtualClock`).
///
/// All operations may be called on any thread.
class CORVANE_EXPORT Clock {
  public:
    /// Monotonic time; deadlines of timers, delayed work and timeouts are counted on it.
    [[nodiscard]] virtual SteadyInstant uptime() const noexcept = 0;

    /// Wall-clock time; it may be set back or forth while the process runs.
    [[nodiscard]] virtual Date now() const noexcept = 0;

    /// How long a thread may sleep in the kernel until `deadline`: zero when it has passed, absent when only
    /// a wake-up from outside can end the wait (a virtual clock never lets anybody sleep towards a deadline).
    [[nodiscard]] virtual std::optional<std::chrono::nanoseconds> timeToWait(SteadyInstant deadline) const noexcept = 0;

    /// The clock in force.
    [[nodiscard]] static Clock& current() noexcept;

    /// Puts `clock` in force, or the system's clock when it is null, and wakes everything that waits. The clock
    /// must outlive its time in force. For tests: deadlines that are pending at the change are not converted.
    static void setCurrent(Clock* clock) noexcept;

  protected:
    // Nobody owns a clock by this type, and the system's clock, which is never destroyed, needs no destructor.
    ~Clock() = default;
};

/// The instant `seconds` from now on the clock in force: now for zero, negative or not-a-number, and the last
/// representable instant instead of an overflow.
[[nodiscard]] CORVANE_EXPORT SteadyInstant deadlineAfter(double seconds) noexcept;

}  // namespace corvane
