#pragma once

#include <memory>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>

namespace corvane {

/// The loop that runs a thread's timers and the blocks handed to that thread.
///
/// There is at most one per thread. The main run loop belongs to the process's first thread, services the main
/// queue and is never destroyed. It can be run (`run`), pumped (`runUntil`, `runOnce`), or driven by another
/// loop, which polls `pollDescriptor` for reading and calls `drain` when it is ready. A loop with nothing to do
/// sleeps in the kernel without waking up.
///
/// `perform` and `stop` may be called on any thread, everything else only on the loop's own thread.
class CORVANE_EXPORT RunLoop {
  public:
    /// The loop of the process's first thread. May be asked for on any thread, before that thread runs it.
    [[nodiscard]] static RunLoop& main() noexcept;

    /// The loop of the calling thread, made on first use; on a thread other than the first it lives as long as
    /// the thread, and blocks it still holds then are destroyed unrun.
    [[nodiscard]] static RunLoop& current();

    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// Runs blocks and timers until `stop` is called; may be nested inside a block.
    void run();

    /// Runs blocks and timers until the wall clock has advanced to `limit` or `stop` is called, whichever is first.
    /// With a virtual clock in force it lasts until a block or another thread has moved that clock to `limit`.
    void runUntil(Date limit);

    /// Waits until there is something to do and does it: the blocks queued by then and the timers due.
    /// Returns false when `stop` was called, before the wait, during it or by what ran.
    bool runOnce();

    /// Does what is due now without waiting; returns whether anything ran.
    bool drain();

    /// Ends the innermost `run`, `runUntil` or `runOnce`, at once or, when none is active, as soon as it starts.
    void stop() noexcept;

    /// A descriptor that is readable whenever `drain` has something to do, for a foreign loop's poll, epoll or
    /// the like. It belongs to the loop, which closes it.
    [[nodiscard]] int pollDescriptor();

    /// Queues `work` to run on the loop's thread after everything queued before it.
    void perform(Work work);

    class Implementation;

    [[nodiscard]] const std::shared_ptr<Implementation>& implementation() const noexcept { return implementation_; }

  private:
    explicit RunLoop(std::shared_ptr<Implementation> implementation) noexcept;

    std::shared_ptr<Implementation> implementation_;
};

}  // namespace corvane
