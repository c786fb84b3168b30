#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Actor.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// A debouncer for tasks: a task submits itself, and goes on when it is known whether its turn has come.
///
///     const bool isOurTurn = co_await filter->debounce();  // as a bare condition it would crash with GCC 12
///     if (isOurTurn) show(co_await search(text));
///
/// For any thread; what counts is the order in which the submissions get to the main thread. Every submission completes
/// exactly once, also when the debouncer has ended meanwhile: what waits then still fires, so the tasks that the
/// operations return do not need it to live. Cancelling a waiting task does not end its wait.
class CORVANE_EXPORT EventDebouncer final : public Actor {
  public:
    /// `delay` is in seconds.
    explicit EventDebouncer(std::optional<std::string> name = std::nullopt, double delay = EventRegulator::usualTime);
    ~EventDebouncer();

    [[nodiscard]] const std::optional<std::string>& name() const noexcept { return synchronousDebouncer_->name(); }

    [[nodiscard]] double delay() const noexcept { return synchronousDebouncer_->delay(); }

    [[nodiscard]] std::string_view debugDescription() const noexcept;

    /// Waits until no other submission has come for the delay, and gives true; or gives false as soon as one has, or
    /// the debouncer is invalidated.
    [[nodiscard]] Task<bool> debounce();

    /// Denies the submission that waits.
    [[nodiscard]] Task<> invalidate();

  private:
    const std::shared_ptr<PreConcurrencyEventDebouncer> synchronousDebouncer_;
};

}  // namespace corvane
