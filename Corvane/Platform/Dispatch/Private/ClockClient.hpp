#pragma once

#include <cstdint>

#include <Corvane/Export.hpp>
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

    friend bool operator==(const ClockActivity&, const ClockActivity&) = default;
};

/// Something that waits for deadlines or runs work: a run loop, a worker pool, the delayed-work thread, the network
/// thread. A virtual clock steps from one deadline to the next over all clients and, after each step, waits until
/// all of them are idle (two scans in a row with equal counts and nothing due).
class CORVANE_EXPORT ClockClient {
  public:
    virtual ~ClockClient() = default;

    /// Reads the counts under the lock that they are changed under. May be called on any thread.
    [[nodiscard]] virtual ClockActivity activity() const noexcept = 0;

    /// The clock in force was replaced or moved: wake up and look at the deadlines again. May be called on any thread.
    virtual void clockMoved() noexcept = 0;
};

/// The process's register of clock clients; one instance, never destroyed. Any thread. A client calls `add` and
/// `remove` without holding a lock that its `activity` or `clockMoved` takes.
class CORVANE_EXPORT ClockClients {
  public:
    ClockClients() = delete;

    static void add(ClockClient& client);
    /// After this returns the client is not called again.
    static void remove(ClockClient& client) noexcept;

    static void announceMove() noexcept;

    /// The earliest deadline of all clients and the sums of their counts.
    [[nodiscard]] static ClockActivity scan() noexcept;

    /// To be called by a client, after its counts were changed under its lock, when it may have become idle, and by
    /// the main run loop when it was given something: wakes those who watch. One relaxed load while nobody does.
    static void announceChange() noexcept;

    /// Somebody who waits for the clients to become idle. What is announced while it lives is not missed: take
    /// a ticket, scan, and wait for the ticket to expire.
    class CORVANE_EXPORT Watch {
      public:
        Watch() noexcept;
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

        [[nodiscard]] std::uint32_t ticket() const noexcept;

        /// Blocks until a change was announced after the ticket was taken.
        void wait(std::uint32_t ticket) const noexcept;
    };
};

}  // namespace corvane
