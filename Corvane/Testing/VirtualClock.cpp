#include <algorithm>
#include <atomic>
#include <cstdint>

#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane::testing {

namespace {

/// The clock behind every `VirtualClock`. It is never destroyed: a thread may be reading it while a test ends.
class StandingClock final : public Clock {
  public:
    static StandingClock& shared() {
        static auto* const clock = new StandingClock;
        return *clock;
    }

    [[nodiscard]] SteadyInstant uptime() const noexcept override { return uptime_.load(std::memory_order_acquire); }

    [[nodiscard]] Date now() const noexcept override {
        const std::chrono::duration<double> elapsed = uptime() - wallSetAt_.load(std::memory_order_acquire);
        return wallTime_.load(std::memory_order_acquire) + elapsed;
    }

    [[nodiscard]] std::optional<std::chrono::nanoseconds> timeToWait(SteadyInstant deadline) const noexcept override {
        if (deadline <= uptime() && deadline != SteadyInstant::max()) return std::chrono::nanoseconds::zero();
        return std::nullopt;
    }

    void install(Date wallTime) {
        if (isInstalled_.exchange(true)) fatalError("A VirtualClock is in force already");
        uptime_.store(std::chrono::steady_clock::now(), std::memory_order_release);
        setWallTime(wallTime);
        setCurrent(this);
    }

    void uninstall() noexcept {
        setCurrent(nullptr);
        isInstalled_.store(false);
    }

    void setUptime(SteadyInstant instant) noexcept { uptime_.store(instant, std::memory_order_release); }

    void setWallTime(Date wallTime) noexcept {
        wallSetAt_.store(uptime(), std::memory_order_release);
        wallTime_.store(wallTime, std::memory_order_release);
    }

  private:
    std::atomic<SteadyInstant> uptime_ = SteadyInstant();
    std::atomic<SteadyInstant> wallSetAt_ = SteadyInstant();
    std::atomic<Date> wallTime_ = Date();
    std::atomic<bool> isInstalled_ = false;
};

[[nodiscard]] bool isIdle(const ClockActivity& activity) noexcept {
    return activity.accepted == activity.finished && activity.nextDeadline > Clock::current().uptime();
}

/// Never back: a block may itself have moved the clock beyond.
void moveTo(SteadyInstant instant) noexcept {
    StandingClock& clock = StandingClock::shared();
    clock.setUptime(std::max(instant, clock.uptime()));
    ClockClients::announceMove();
}

}  // namespace

VirtualClock::VirtualClock(Date wallTime) {
    StandingClock::shared().install(wallTime);
}

VirtualClock::~VirtualClock() {
    StandingClock::shared().uninstall();
}

void VirtualClock::advance(double seconds) {
    // The last instant that can be counted stands for "never".
    const SteadyInstant end = std::min(deadlineAfter(seconds), SteadyInstant::max() - std::chrono::nanoseconds(1));
    settle();
    for (SteadyInstant next = ClockClients::scan().nextDeadline; next <= end;
         next = ClockClients::scan().nextDeadline) {
        moveTo(next);
        settle();
    }
    moveTo(end);
    settle();
}

void VirtualClock::settle() {
    const ClockClients::Watch watch;
    for (;;) {
        const std::uint32_t ticket = watch.ticket();
        if (Thread::isMainThread()) {
            while (RunLoop::main().drain()) {
            }
        }
        const ClockActivity first = ClockClients::scan();
        // Twice the same, so that nothing was handed from a client looked at late to one looked at early.
        if (isIdle(first)) {
            if (ClockClients::scan() == first) return;
            continue;
        }
        watch.wait(ticket);
    }
}

void VirtualClock::setWallTime(Date wallTime) {
    StandingClock::shared().setWallTime(wallTime);
    ClockClients::announceMove();
}

Date VirtualClock::now() const noexcept {
    return StandingClock::shared().now();
}

SteadyInstant VirtualClock::uptime() const noexcept {
    return StandingClock::shared().uptime();
}

}  // namespace corvane::testing
