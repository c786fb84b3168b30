#include <utility>

#include <Corvane/Concurrency/EventDebouncer.hpp>
#include <Corvane/Concurrency/Private/EventOutcome.hpp>

namespace corvane {

namespace {

constexpr std::string_view unnamed = "Unnamed EventDebouncer (Actor)";

}  // namespace

EventDebouncer::EventDebouncer(std::optional<std::string> name, double delay)
    : Actor(name.value_or(std::string(unnamed))),
      synchronousDebouncer_(PreConcurrencyEventDebouncer::make(std::move(name), delay)) {}

EventDebouncer::~EventDebouncer() = default;

std::string_view EventDebouncer::debugDescription() const noexcept {
    const std::optional<std::string>& given = name();
    return given ? *given : unnamed;
}

Task<bool> EventDebouncer::debounce() {
    const auto submit = [debouncer = synchronousDebouncer_](auto event, auto onDeny) {
        debouncer->debounce(std::move(event), std::move(onDeny));
    };
    return on(executor(), eventOutcome(submit, SourceFileContext::current()));
}

Task<> EventDebouncer::invalidate() {
    return on(executor(), performedOnMain([debouncer = synchronousDebouncer_] { debouncer->invalidate(); }));
}

}  // namespace corvane
