#pragma once

#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

/// What `PreConcurrencyEventDebouncer` and `PreConcurrencyEventThrottler` share: at most one event that waits, and the
/// timer it waits for.
///
/// For the main thread only. The timer runs on the main run loop and holds its owner strongly until it has fired or is
/// invalidated, so an event that waits when the last owner lets go still fires. It counts on the clock in force; a time
/// of zero or less, or that is no number, counts as 0.1 ms, and an infinite one never passes.
///
/// Of the two callbacks of a submission exactly one is called, once, and both are destroyed then: the event, or
/// `onDeny` when another event took its place or the regulator was invalidated. Either may be empty and may do anything
/// with its regulator, dropping it included: it is taken out before it is called, and what it submits is a submission
/// like any other. Callbacks must not throw.
class CORVANE_EXPORT EventRegulator : public std::enable_shared_from_this<EventRegulator> {
  public:
    using Callback = UniqueFunction<void()>;

    /// The delay or window of one that is made without, in seconds.
    static constexpr double usualTime = 0.3;

    EventRegulator(const EventRegulator&) = delete;
    EventRegulator& operator=(const EventRegulator&) = delete;

    [[nodiscard]] const std::optional<std::string>& name() const noexcept { return name_; }

    /// The name, or else a text that says what it is; in log lines it stands for this object.
    [[nodiscard]] std::string_view debugDescription() const noexcept { return name_ ? *name_ : unnamed_; }

    /// Starts the timer over, or starts it when it does not run. An event that waits goes on waiting.
    void reset();

    /// Stops the timer, denies the event that waits and forgets what has been.
    void invalidate();

  protected:
    struct Submission {
        Callback event;
        Callback onDeny;
    };

    EventRegulator(std::optional<std::string> name, std::string_view unnamed, double time);

    /// Denies what waits, and logs.
    ~EventRegulator();

    [[nodiscard]] double time() const noexcept { return time_; }

    void restartTimer();

    [[nodiscard]] bool isTimerRunning() const noexcept { return timer_ != nullptr && timer_->isValid(); }

    [[nodiscard]] bool isWaiting() const noexcept { return waiting_.has_value(); }

    [[nodiscard]] std::optional<Submission> takeWaiting() noexcept;

    /// Puts `submission` in the place of the one that waits, which is given back to be denied.
    [[nodiscard]] std::optional<Submission> letWait(Submission submission) noexcept;

    /// May end this object.
    static void fire(Callback event);
    static void deny(std::optional<Submission> submission);

    /// At level debug, behind the description of this object.
    void log(std::string_view decision, std::source_location where = std::source_location::current()) const noexcept;

  private:
    /// Called while the timer's hold keeps this object; the timer does not run any more.
    virtual void timerFired() = 0;

    virtual void forget() noexcept {}

    const std::optional<std::string> name_;
    const std::string_view unnamed_;
    const double time_;
    std::shared_ptr<Timer> timer_;
    std::optional<Submission> waiting_;
};

}  // namespace corvane
