#include <utility>

#include <Corvane/Concurrency/EventThrottler.hpp>
#include <Corvane/Concurrency/Private/EventOutcome.hpp>

namespace corvane {

namespace {

constexpr std::string_view unnamed = "Unnamed EventThrottler (Actor)";

}  // namespace

EventThrottler::EventThrottler(std::optional<std::string> name, Mode mode, double window)
    : Actor(name.value_or(std::string(unnamed))),
      synchronousThrottler_(PreConcurrencyEventThrottler::make(std::move(name), mode, window)) {}

EventThrottler::EventThrottler(Mode mode, double window) : EventThrottler(std::nullopt, mode, window) {}

EventThrottler::~EventThrottler() = default;

std::string_view EventThrottler::debugDescription() const noexcept {
    const std::optional<std::string>& given = name();
    return given ? *given : unnamed;
}

Task<bool> EventThrottler::throttle() {
    const auto submit = [throttler = synchronousThrottler_](auto event, auto onDeny) {
        throttler->throttle(std::move(event), std::move(onDeny));
    };
    return on(executor(), eventOutcome(submit, SourceFileContext::current()));
}

Task<> EventThrottler::reset() {
    return on(executor(), performedOnMain([throttler = synchronousThrottler_] { throttler->reset(); }));
}

Task<> EventThrottler::invalidate() {
    return on(executor(), performedOnMain([throttler = synchronousThrottler_] { throttler->invalidate(); }));
}

}  // namespace corvane
