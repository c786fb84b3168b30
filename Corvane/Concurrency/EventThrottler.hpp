#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Concurrency/PreConcurrencyEventThrottler.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Actor.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// A throttler for tasks: a task submits itself, and goes on when it is known whether its turn has come.
///
///     const bool isOurTurn = co_await redraws->throttle();  // as a bare condition it would crash with GCC 12
///     if (isOurTurn) co_await redraw();
///
/// For any thread; what counts is the order in which the submissions get to the main thread. Every submission completes
/// exactly once, also when the throttler has ended meanwhile: what waits then still fires, so the tasks that the
/// operations return do not need it to live. Cancelling a waiting task does not end its wait.
class CORVANE_EXPORT EventThrottler final : public Actor {
  public:
    using Mode = PreConcurrencyEventThrottler::Mode;

    /// `window` is in seconds.
    EventThrottler(std::optional<std::string> name, Mode mode, double window = EventRegulator::usualTime);
    explicit EventThrottler(Mode mode, double window = EventRegulator::usualTime);
    ~EventThrottler();

    [[nodiscard]] const std::optional<std::string>& name() const noexcept { return synchronousThrottler_->name(); }

    [[nodiscard]] Mode mode() const noexcept { return synchronousThrottler_->mode(); }

    [[nodiscard]] double window() const noexcept { return synchronousThrottler_->window(); }

    [[nodiscard]] std::string_view debugDescription() const noexcept;

    /// Waits until the mode lets the submission happen, and gives true; or gives false as soon as another one has taken
    /// its place, or the throttler is invalidated.
    [[nodiscard]] Task<bool> throttle();

    /// Starts the window over, or opens one.
    [[nodiscard]] Task<> reset();

    /// Denies the submission that waits and closes the window.
    [[nodiscard]] Task<> invalidate();

  private:
    const std::shared_ptr<PreConcurrencyEventThrottler> synchronousThrottler_;
};

}  // namespace corvane
