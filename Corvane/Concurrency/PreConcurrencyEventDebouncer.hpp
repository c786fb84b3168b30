#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Corvane/Concurrency/EventRegulator.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// Lets an event happen once no other has been submitted for a while: typing in a filter, the last of many changes.
///
///     const auto debouncer = PreConcurrencyEventDebouncer::make("filter", 0.3);
///     debouncer->debounce([=] { show(filter); });  // again with every key
///
/// What an event submits while it fires waits in its turn. Re-arming allocates nothing for callbacks of up to 48 bytes.
/// Its decisions are logged at level debug, category "Unspecified". For the main thread only; the lifetime of events is
/// told at `EventRegulator`, and `EventDebouncer` is the form for tasks.
class CORVANE_EXPORT PreConcurrencyEventDebouncer final : public EventRegulator {
  public:
    /// `delay` is in seconds.
    [[nodiscard]] static std::shared_ptr<PreConcurrencyEventDebouncer> make(
        std::optional<std::string> name = std::nullopt, double delay = usualTime);

    ~PreConcurrencyEventDebouncer();

    [[nodiscard]] double delay() const noexcept { return time(); }

    /// Denies the event that waits and lets `event` wait for the delay, which starts over. `onDeny` of the event before
    /// is called last, so what it submits comes after `event` and replaces it.
    void debounce(Callback event, Callback onDeny = nullptr);

  private:
    PreConcurrencyEventDebouncer(std::optional<std::string> name, double delay);

    void timerFired() override;
};

}  // namespace corvane
