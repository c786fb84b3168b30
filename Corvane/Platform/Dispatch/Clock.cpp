#include <atomic>

#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>

namespace corvane {

namespace {

class SystemClock final : public Clock {
  public:
    [[nodiscard]] SteadyInstant uptime() const noexcept override { return std::chrono::steady_clock::now(); }

    [[nodiscard]] Date now() const noexcept override { return std::chrono::system_clock::now(); }

    [[nodiscard]] std::optional<std::chrono::nanoseconds> timeToWait(SteadyInstant deadline) const noexcept override {
        if (deadline == SteadyInstant::max()) return std::nullopt;
        const SteadyInstant instant = uptime();
        if (deadline <= instant) return std::chrono::nanoseconds::zero();
        return deadline - instant;
    }
};

constinit SystemClock systemClock;
constinit std::atomic<Clock*> clockInForce = &systemClock;

}  // namespace

Clock& Clock::current() noexcept {
    return *clockInForce.load(std::memory_order_acquire);
}

void Clock::setCurrent(Clock* clock) noexcept {
    clockInForce.store(clock != nullptr ? clock : &systemClock, std::memory_order_release);
    ClockClients::announceMove();
}

SteadyInstant deadlineAfter(double seconds) noexcept {
    const SteadyInstant instant = Clock::current().uptime();
    if (!(seconds > 0)) return instant;  // not-a-number included
    // Far below the overflow of 64-bit nanoseconds, and 292 years all the same.
    constexpr double longest = 9.2e9;
    if (seconds >= longest) return SteadyInstant::max();
    const std::chrono::nanoseconds span(static_cast<std::int64_t>(seconds * 1e9 + 0.5));
    return span < SteadyInstant::max() - instant ? instant + span : SteadyInstant::max();
}

}  // namespace corvane
