#include <chrono>
#include <utility>

#include <Corvane/Concurrency/PreConcurrencyEventThrottler.hpp>

namespace corvane {

std::shared_ptr<PreConcurrencyEventThrottler> PreConcurrencyEventThrottler::make(std::optional<std::string> name,
                                                                                 Mode mode, double window) {
    return std::shared_ptr<PreConcurrencyEventThrottler>(
        new PreConcurrencyEventThrottler(std::move(name), mode, window));
}

std::shared_ptr<PreConcurrencyEventThrottler> PreConcurrencyEventThrottler::make(Mode mode, double window) {
    return make(std::nullopt, mode, window);
}

PreConcurrencyEventThrottler::PreConcurrencyEventThrottler(std::optional<std::string> name, Mode mode, double window)
    : EventRegulator(std::move(name), "Unnamed EventThrottler (Synchronous)", window), mode_(mode) {}

PreConcurrencyEventThrottler::~PreConcurrencyEventThrottler() = default;

void PreConcurrencyEventThrottler::throttle(Callback event, Callback onDeny) {
    if (isTimerRunning()) return deny(letWait({std::move(event), std::move(onDeny)}));
    if (!firesAtOnce()) {
        log("delays event");
        auto replaced = letWait({std::move(event), std::move(onDeny)});
        restartTimer();
        return deny(std::move(replaced));
    }
    log("fires immediate event");
    const auto self = shared_from_this();
    // Open before the event, so that what it submits waits; counted from its return.
    restartTimer();
    fire(std::move(event));
    if (isTimerRunning()) restartTimer();
}

bool PreConcurrencyEventThrottler::firesAtOnce() const noexcept {
    if (mode_ != Mode::immediate || !closed_) return false;
    return std::chrono::duration<double>(Clock::current().uptime() - *closed_).count() > window();
}

void PreConcurrencyEventThrottler::timerFired() {
    // Not closed before the event has returned: what it submits waits, however long it takes.
    closed_.reset();
    if (auto submission = takeWaiting()) {
        log("fires last delayed event");
        fire(std::move(submission->event));
    }
    if (!isWaiting()) closed_ = Clock::current().uptime();
}

void PreConcurrencyEventThrottler::forget() noexcept {
    closed_.reset();
}

}  // namespace corvane
