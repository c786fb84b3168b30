#pragma once

#include <memory>
#include <optional>
#include <string>

#include <Corvane/Concurrency/EventRegulator.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

/// Lets at most one event happen in each window of time. While a window is open the last event submitted waits for its
/// end, and those it replaces are denied.
///
///     const auto throttler = PreConcurrencyEventThrottler::make(PreConcurrencyEventThrottler::Mode::deferred, 1.0);
///     throttler->throttle([=] { redraw(); });
///
/// What an event submits while it fires waits for another window. Its decisions are logged at level debug, category
/// "Unspecified". For the main thread only; the lifetime of events is told at `EventRegulator`, and `EventThrottler` is
/// the form for tasks.
class CORVANE_EXPORT PreConcurrencyEventThrottler final : public EventRegulator {
  public:
    enum class Mode : unsigned char {
        /// An event fires at once when more than a window has passed since the last window closed. The very first one,
        /// before any window has closed, deliberately waits.
        immediate,
        /// Every event waits for the end of the window it opens or finds open.
        deferred,
    };

    /// `window` is in seconds.
    [[nodiscard]] static std::shared_ptr<PreConcurrencyEventThrottler> make(std::optional<std::string> name, Mode mode,
                                                                            double window = usualTime);
    [[nodiscard]] static std::shared_ptr<PreConcurrencyEventThrottler> make(Mode mode, double window = usualTime);

    ~PreConcurrencyEventThrottler();

    [[nodiscard]] Mode mode() const noexcept { return mode_; }

    [[nodiscard]] double window() const noexcept { return time(); }

    /// Fires `event` before returning, or lets it wait for the end of the window in place of the one that waits.
    void throttle(Callback event, Callback onDeny = nullptr);

  private:
    PreConcurrencyEventThrottler(std::optional<std::string> name, Mode mode, double window);

    [[nodiscard]] bool firesAtOnce() const noexcept;
    void timerFired() override;
    void forget() noexcept override;

    const Mode mode_;
    /// When the last window closed: on monotonic time, as setting the wall clock must not hold events back.
    std::optional<SteadyInstant> closed_;
};

}  // namespace corvane
