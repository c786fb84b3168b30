#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <Corvane/Core/IncrementCounter.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>

namespace corvane {

/// Calls back once a period until it is stopped, its limit is reached, or its last owner lets go.
///
///     const auto scheduler = PeriodicalRepeatScheduler::make(30.0);
///     scheduler->start([=] { reload(); });
///
/// The timer holds it weakly and runs on the run loop of the thread that called `start`, which is the thread for all
/// operations: the main thread in practice. It costs nothing between two beats. The callback may stop, start and drop
/// its scheduler; it must not throw.
class CORVANE_EXPORT PeriodicalRepeatScheduler final : public std::enable_shared_from_this<PeriodicalRepeatScheduler> {
  public:
    /// `period` is in seconds: one of zero or less, or that is no number, counts as 0.1 ms, an infinite one never ends.
    /// With `shouldRepeatOnStart` the first call comes within `start`. The repeat that reaches `repeatLimit` is the
    /// last; with a limit of zero or less that is the first of every start. A negative limit is deliberately the
    /// starting count as well.
    [[nodiscard]] static std::shared_ptr<PeriodicalRepeatScheduler> make(
        double period, bool shouldRepeatOnStart = false, std::optional<std::int64_t> repeatLimit = std::nullopt);

    ~PeriodicalRepeatScheduler();
    PeriodicalRepeatScheduler(const PeriodicalRepeatScheduler&) = delete;
    PeriodicalRepeatScheduler& operator=(const PeriodicalRepeatScheduler&) = delete;

    [[nodiscard]] double period() const noexcept { return period_; }

    [[nodiscard]] bool shouldRepeatOnStart() const noexcept { return shouldRepeatOnStart_; }

    [[nodiscard]] bool isStarted() const noexcept { return isStarted_; }

    /// The count goes on from one start to the next.
    [[nodiscard]] const IncrementCounter& repeatCounter() const noexcept { return repeatCounter_; }

    /// Starts, or starts over, with a new period from now. `onRepeat`, which may be empty, is kept until the next
    /// start. It stays stopped if the call within `start` stops it or reaches the limit.
    void start(std::function<void()> onRepeat);

    void stop();

    /// Counts from zero again.
    void reset() noexcept { repeatCounter_.reset(); }

  private:
    PeriodicalRepeatScheduler(double period, bool shouldRepeatOnStart, std::optional<std::int64_t> repeatLimit);

    void repeat();

    const double period_;
    const bool shouldRepeatOnStart_;
    bool isStarted_ = false;
    std::shared_ptr<Timer> timer_;
    /// Shared with the call that is running, which may replace it.
    std::shared_ptr<const std::function<void()>> onRepeat_;
    IncrementCounter repeatCounter_;
};

}  // namespace corvane
