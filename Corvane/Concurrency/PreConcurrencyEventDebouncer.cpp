#include <utility>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>

namespace corvane {

std::shared_ptr<PreConcurrencyEventDebouncer> PreConcurrencyEventDebouncer::make(std::optional<std::string> name,
                                                                                 double delay) {
    return std::shared_ptr<PreConcurrencyEventDebouncer>(new PreConcurrencyEventDebouncer(std::move(name), delay));
}

PreConcurrencyEventDebouncer::PreConcurrencyEventDebouncer(std::optional<std::string> name, double delay)
    : EventRegulator(std::move(name), "Unnamed EventDebouncer (Synchronous)", delay) {}

PreConcurrencyEventDebouncer::~PreConcurrencyEventDebouncer() = default;

void PreConcurrencyEventDebouncer::debounce(Callback event, Callback onDeny) {
    auto replaced = letWait({std::move(event), std::move(onDeny)});
    restartTimer();
    deny(std::move(replaced));
}

void PreConcurrencyEventDebouncer::timerFired() {
    auto submission = takeWaiting();
    if (!submission) return;
    log("fires last debounced event");
    fire(std::move(submission->event));
}

}  // namespace corvane
