#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>
#include <Corvane/Platform/Dispatch/Private/DeadlineHeap.hpp>
#include <Corvane/Platform/Dispatch/Private/RunLoopDescriptor.hpp>
#include <Corvane/Platform/Dispatch/Private/SpareBlocks.hpp>
#include <Corvane/Platform/Dispatch/Private/WakeWord.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>

namespace corvane {

/// Something that a run loop does at a deadline: a timer, a delayed block. The loop never calls it under its lock.
class RunLoopDeadline : public Deadline {
  public:
    virtual ~RunLoopDeadline() = default;

    /// The deadline has come: called on the loop's thread, with the loop's hold on the entry.
    virtual void fire(std::shared_ptr<RunLoopDeadline> self) noexcept = 0;

    /// The loop is gone and has let the entry go; or it was gone when the entry was to be armed.
    virtual void loopEnded() noexcept = 0;
};

/// What a run loop is made of; outlives the loop's thread in the hands of timers.
class RunLoop::Implementation final : public ClockClient {
  public:
    /// `thread` is the kernel's number of the thread that the loop belongs to.
    explicit Implementation(int thread);
    ~Implementation() override;

    /// Queues the blocks in their order, and moves them out.
    void perform(std::span<Work> blocks);
    void stop() noexcept;

    /// Arms an entry that has been moved to its deadline.
    void arm(std::shared_ptr<RunLoopDeadline> entry);
    /// Heeds `Deadline::moveTo`.
    void hasten(RunLoopDeadline& entry) noexcept;
    std::shared_ptr<RunLoopDeadline> disarm(RunLoopDeadline& entry) noexcept;

    // The loop's thread only; `operation` names the caller in the message about a wrong thread.
    void requireOwnThread(const char* operation) const;
    /// Runs until stopped or until the wall clock has reached `limit`.
    void run(std::optional<Date> limit);
    bool runOnce();
    bool drain();
    int pollDescriptor();
    /// The thread ends: what is queued is destroyed, and what comes later, too.
    void end() noexcept;

    [[nodiscard]] ClockActivity activity() const noexcept override;
    void clockMoved() noexcept override;

  private:
    /// Blocks taken off the queue together. A block that pumps the loop continues its own batch before anything
    /// newer, so the batch stays where it is until it is through.
    struct Batch {
        std::vector<Work> blocks;
        std::size_t next = 0;
    };

    /// One active `run`, `runOnce` or `drain`.
    class Pump;

    bool step();
    bool runBlocks();
    bool runBatch(Batch& batch);
    bool runDeadlines();
    void finishBatch(Batch& batch) noexcept;
    void sleep(SteadyInstant limit);
    void publish() noexcept;
    void wake() noexcept;
    void adjustDescriptor() noexcept;
    [[nodiscard]] bool isStopping() const noexcept;

    mutable std::mutex mutex_;
    std::vector<Work> queue_;
    mutable DeadlineHeap<RunLoopDeadline> deadlines_;
    std::uint64_t taken_ = 0;
    std::uint64_t finished_ = 0;
    /// Blocks that pump the loop. They wait for the loop, so the loop need not wait for them to be idle.
    std::uint64_t suspended_ = 0;
    bool ended_ = false;

    WakeWord wakeWord_;
    std::atomic<bool> stop_ = false;
    std::atomic<RunLoopDescriptor*> descriptor_ = nullptr;

    // The loop's thread only.
    const int thread_;
    Batch* batch_ = nullptr;
    SpareBlocks spare_;
    /// The earliest deadline when the loop last looked at its queue.
    SteadyInstant nextDeadline_ = SteadyInstant::max();
    std::uint64_t completed_ = 0;
    unsigned running_ = 0;
    bool isStoppable_ = false;
};

}  // namespace corvane
