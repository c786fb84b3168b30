#pragma once

#include <functional>
#include <memory>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace corvane {

/// A one-shot or repeating timer on a run loop.
///
/// The run loop holds a scheduled timer until it has fired (one-shot) or is invalidated, and the timer holds its
/// block just as long; both are let go before `invalidate` returns and before a one-shot block that has run is
/// forgotten. The block is called on the run loop's thread and may invalidate, re-arm or drop any timer,
/// its own included. An interval of zero or less counts as 0.1 ms; deadlines saturate instead of overflowing.
/// A repeating timer that could not run in time skips the missed beats and keeps its phase. Equal deadlines of one
/// run loop come in the order in which the timers were made and the main queue's delayed blocks were given.
///
/// All operations may be called on any thread. Once `invalidate` has returned on the run loop's thread the block
/// is not called again; called elsewhere, it may be running at that moment.
class CORVANE_EXPORT Timer : public std::enable_shared_from_this<Timer> {
  public:
    using Block = std::function<void(Timer&)>;

    /// Makes a timer that first fires `interval` seconds from now and arms it on `loop`.
    [[nodiscard]] static std::shared_ptr<Timer> scheduled(double interval, bool repeats, Block block,
                                                          RunLoop& loop = RunLoop::main());

    ~Timer();
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Takes the timer off its loop for good and lets its block go.
    void invalidate() noexcept;

    /// Whether the timer may still fire: false after `invalidate` and after a one-shot timer has fired (it turns
    /// false after its block has returned).
    [[nodiscard]] bool isValid() const noexcept;

    /// Moves the next firing to `interval` seconds from now, however often it is called: this moves a number and
    /// leaves the loop alone unless the new deadline is earlier than the armed one. Does nothing on a timer that
    /// is no longer valid.
    void restart(double interval) noexcept;

    /// The interval of a repeating timer in seconds, 0 for a one-shot timer.
    [[nodiscard]] double interval() const noexcept;

    class Implementation;

  private:
    explicit Timer(std::unique_ptr<Implementation> implementation) noexcept;

    std::unique_ptr<Implementation> implementation_;
};

}  // namespace corvane
