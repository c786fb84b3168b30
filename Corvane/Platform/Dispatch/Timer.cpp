#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/RunLoopImplementation.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>

namespace corvane {

namespace {

constexpr double shortestInterval = 0.0001;

double acceptedInterval(double interval) noexcept {
    return interval > 0 ? interval : shortestInterval;
}

/// The first beat after `now` of a rhythm that has one at `due`.
SteadyInstant nextBeat(SteadyInstant due, double interval, SteadyInstant now) noexcept {
    constexpr double longest = 9.2e9;
    if (interval >= longest) return SteadyInstant::max();
    const auto span = std::max(std::chrono::nanoseconds(static_cast<std::int64_t>(interval * 1e9 + 0.5)),
                               std::chrono::nanoseconds(1));
    const auto missed = now < due ? 0 : (now - due) / span;
    const auto left = SteadyInstant::max() - due;
    return left / span <= missed ? SteadyInstant::max() : due + (missed + 1) * span;
}

}  // namespace

/// The run loop's heap holds this as a part of its timer, and with it the timer.
class Timer::Implementation final : public RunLoopDeadline {
  public:
    Implementation(double interval, bool repeats, Block block, std::shared_ptr<RunLoop::Implementation> loop)
        : interval_(interval), repeats_(repeats), loop_(std::move(loop)), block_(std::move(block)) {}

    void start(std::shared_ptr<Timer> timer) {
        timer_ = timer.get();
        static_cast<void>(moveTo(deadlineAfter(interval_)));
        loop_->arm(std::shared_ptr<RunLoopDeadline>(std::move(timer), this));
    }

    void invalidate() noexcept {
        std::shared_ptr<RunLoopDeadline> hold;
        const Block block = endWith([&] { hold = loop_->disarm(*this); });
        // The block first, then what may be the last hold on the timer: nothing of it is touched afterwards.
    }

    void restart(double interval) noexcept {
        if (isValid() && moveTo(deadlineAfter(acceptedInterval(interval)))) loop_->hasten(*this);
    }

    [[nodiscard]] bool isValid() const noexcept { return isValid_.load(std::memory_order_acquire); }

    [[nodiscard]] double repeatInterval() const noexcept { return repeats_ ? interval_ : 0; }

    void fire(std::shared_ptr<RunLoopDeadline> self) noexcept override {
        Block block;
        {
            const std::lock_guard lock(mutex_);
            if (!isValid()) return;
            block.swap(block_);
        }
        block(*timer_);

        const std::lock_guard lock(mutex_);
        if (!isValid()) return;
        if (repeats_) setUnlessMoved(nextBeat(due(), interval_, Clock::current().uptime()));
        if (isMoved()) {
            block_.swap(block);
            loop_->arm(std::move(self));
        } else {
            isValid_.store(false, std::memory_order_release);
        }
    }

    void loopEnded() noexcept override {
        const Block block = endWith([] {});
    }

  private:
    template <class Action>
    Block endWith(const Action& action) noexcept {
        Block block;
        const std::lock_guard lock(mutex_);
        isValid_.store(false, std::memory_order_release);
        block.swap(block_);
        action();
        return block;
    }

    const double interval_;
    const bool repeats_;
    const std::shared_ptr<RunLoop::Implementation> loop_;
    Timer* timer_ = nullptr;
    std::atomic<bool> isValid_ = true;
    std::mutex mutex_;
    /// Empty while it runs.
    Block block_;
};

Timer::Timer(std::unique_ptr<Implementation> implementation) noexcept : implementation_(std::move(implementation)) {}

Timer::~Timer() = default;

std::shared_ptr<Timer> Timer::scheduled(double interval, bool repeats, Block block, RunLoop& loop) {
    auto implementation =
        std::make_unique<Implementation>(acceptedInterval(interval), repeats, std::move(block), loop.implementation());
    const std::shared_ptr<Timer> timer(new Timer(std::move(implementation)));
    timer->implementation_->start(timer);
    return timer;
}

void Timer::invalidate() noexcept {
    implementation_->invalidate();
}

bool Timer::isValid() const noexcept {
    return implementation_->isValid();
}

void Timer::restart(double interval) noexcept {
    implementation_->restart(interval);
}

double Timer::interval() const noexcept {
    return implementation_->repeatInterval();
}

}  // namespace corvane
