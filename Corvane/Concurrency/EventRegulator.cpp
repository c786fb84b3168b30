#include <utility>

#include <Corvane/Concurrency/EventRegulator.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

namespace corvane {

EventRegulator::EventRegulator(std::optional<std::string> name, std::string_view unnamed, double time)
    : name_(std::move(name)), unnamed_(unnamed), time_(time) {}

EventRegulator::~EventRegulator() {
    if (timer_ != nullptr) timer_->invalidate();
    deny(takeWaiting());
    log("has been destroyed");
}

void EventRegulator::reset() {
    restartTimer();
}

void EventRegulator::invalidate() {
    // The timer may be the last to hold this object.
    const auto self = shared_from_this();
    if (const auto timer = std::exchange(timer_, nullptr)) timer->invalidate();
    forget();
    deny(takeWaiting());
}

void EventRegulator::restartTimer() {
    if (isTimerRunning()) {
        timer_->restart(time_);
        return;
    }
    timer_ = Timer::scheduled(time_, false, [self = shared_from_this()](Timer&) {
        self->timer_ = nullptr;
        self->timerFired();
    });
}

std::optional<EventRegulator::Submission> EventRegulator::takeWaiting() noexcept {
    return std::exchange(waiting_, std::nullopt);
}

std::optional<EventRegulator::Submission> EventRegulator::letWait(Submission submission) noexcept {
    return std::exchange(waiting_, std::move(submission));
}

void EventRegulator::fire(Callback event) {
    if (event) event();
}

void EventRegulator::deny(std::optional<Submission> submission) {
    if (submission && submission->onDeny) submission->onDeny();
}

void EventRegulator::log(std::string_view decision, std::source_location where) const noexcept {
    logFormatted(Loggers::unspecified(), LogLevel::debug, where, FMT_COMPILE("{} {}"), debugDescription(), decision);
}

}  // namespace corvane
