#pragma once

#include <cstdint>
#include <vector>

#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

/// What something that runs work on the clock says of itself at one moment.
struct ClockActivity {
    /// The earliest instant at which it will do something by itself; `SteadyInstant::max()` for never.
    SteadyInstant nextDeadline = SteadyInstant::max();
    /// Pieces of work it has ever accepted and ever finished (run and destroyed). Equal counts mean idle. What
    /// becomes due is counted as accepted in the same critical section that takes it off the deadlines.
    std::uint64_t accepted = 0;
    std::uint64_t finished = 0;
};

/// Something that waits for deadlines or runs work: a run loop, a worker pool, the delayed-work thread, the network
/// thread. A virtual clock steps from one deadline to the next over all clients and, after each step, waits until
/// all of them are idle (two scans in a row with equal counts and nothing due).
class ClockClient {
  public:
    virtual ~ClockClient() = default;

    /// May be called on any thread.
    [[nodiscard]] virtual ClockActivity activity() const noexcept = 0;

    /// The clock in force was replaced or moved: wake up and look at the deadlines again. May be called on any thread.
    virtual void clockMoved() noexcept = 0;
};

/// The process's register of clock clients; one instance, never destroyed. Any thread.
class ClockClients {
  public:
    static void add(ClockClient& client);
    /// After this returns the client is not called again.
    static void remove(ClockClient& client) noexcept;

    static void announceMove() noexcept;

    /// The earliest deadline of all clients and the sums of their counts.
    static ClockActivity scan() noexcept;

    /// To be called by a client when it may have become idle: wakes the threads in `waitForChange`. Costs one relaxed
    /// load while nobody waits.
    static void announceIdle() noexcept;

    /// A ticket for `waitForChange`: take it before a scan.
    static std::uint64_t changeTicket() noexcept;

    /// Blocks until `announceIdle` was called after the ticket was taken.
    static void waitForChange(std::uint64_t ticket) noexcept;
};

}  // namespace corvane
