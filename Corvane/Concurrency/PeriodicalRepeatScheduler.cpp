#include <utility>

#include <Corvane/Concurrency/PeriodicalRepeatScheduler.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace corvane {

std::shared_ptr<PeriodicalRepeatScheduler> PeriodicalRepeatScheduler::make(double period, bool shouldRepeatOnStart,
                                                                           std::optional<std::int64_t> repeatLimit) {
    return std::shared_ptr<PeriodicalRepeatScheduler>(
        new PeriodicalRepeatScheduler(period, shouldRepeatOnStart, repeatLimit));
}

PeriodicalRepeatScheduler::PeriodicalRepeatScheduler(double period, bool shouldRepeatOnStart,
                                                     std::optional<std::int64_t> repeatLimit)
    : period_(period), shouldRepeatOnStart_(shouldRepeatOnStart), repeatCounter_(0, repeatLimit) {}

PeriodicalRepeatScheduler::~PeriodicalRepeatScheduler() {
    if (timer_ != nullptr) timer_->invalidate();
}

void PeriodicalRepeatScheduler::start(std::function<void()> onRepeat) {
    stop();
    isStarted_ = true;
    const auto callback = std::make_shared<const std::function<void()>>(std::move(onRepeat));
    // The callback before ends at the end of this, when it can do no harm.
    const auto formerCallback = std::exchange(onRepeat_, callback);
    const auto self = shared_from_this();
    repeatCounter_.setOnReachLimit([weak = weak_from_this()] {
        if (const auto scheduler = weak.lock()) scheduler->stop();
    });
    if (shouldRepeatOnStart_) {
        repeat();
        // Stopped, or started anew, which has armed a timer of its own.
        if (!isStarted_ || onRepeat_ != callback) return;
    }
    timer_ = Timer::scheduled(
        period_, true,
        [weak = weak_from_this()](Timer& timer) {
            if (const auto scheduler = weak.lock()) {
                scheduler->repeat();
            } else {
                timer.invalidate();
            }
        },
        RunLoop::current());
}

void PeriodicalRepeatScheduler::stop() {
    isStarted_ = false;
    if (timer_ != nullptr) timer_->invalidate();
}

void PeriodicalRepeatScheduler::repeat() {
    const auto callback = onRepeat_;
    repeatCounter_.increment();
    if (*callback) (*callback)();
}

}  // namespace corvane
