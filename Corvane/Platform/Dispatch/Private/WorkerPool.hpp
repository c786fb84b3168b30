#pragma once

#include <sys/types.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/Private/ClockClient.hpp>
#include <Corvane/Platform/Dispatch/Private/WakeWord.hpp>
#include <Corvane/Platform/Dispatch/Private/WorkRing.hpp>

namespace corvane {

class DispatchQueue;

/// The worker threads of one quality-of-service class, and the blocks that wait for them.
///
/// There are as many workers as the machine has processors; while blocks wait and none has been started for
/// a moment, the supervisor adds workers for those that are blocked, up to 64. Surplus workers leave when they find
/// nothing to do. A worker takes blocks in batches; what it has not started can be taken back from it, so that no
/// block is stuck behind one that blocks. Pools are never destroyed.
class WorkerPool final : public ClockClient {
  public:
    static constexpr std::size_t mostWorkers = 64;

    /// `queue` is the global queue that the workers' blocks run on. The class must not be `unspecified`.
    WorkerPool(QoSClass qosClass, const DispatchQueue* queue);

    /// Any thread.
    void push(Work&& work);

    /// Whether blocks wait for a worker of this pool, or of the one that the calling thread works for, as can be seen
    /// without a lock. A worker that has pushed a block without waking anybody must ask before it keeps its thread.
    [[nodiscard]] bool hasWaiting() const noexcept;

    /// For the supervisor, every few milliseconds while blocks wait: frees what is stuck and decides on new
    /// workers. Returns false when nothing waits any more.
    bool supervise();

    /// For the supervisor: starts the threads that were decided on. When the system has no more threads it gives
    /// false and wants to be supervised further.
    bool startWorkers();

    /// The class of the pool that the calling thread works for, `unspecified` on other threads.
    [[nodiscard]] static QoSClass classOfThisThread() noexcept;

    [[nodiscard]] ClockActivity activity() const noexcept override;

    void clockMoved() noexcept override {}

  private:
    static constexpr std::size_t batchLimit = 64;

    struct Worker {
        /// The blocks taken last; those from `claimed` up to `size` have not been started. Whoever moves `claimed`
        /// on owns what it moved past; `size` is written under the pool's lock.
        std::array<Work, batchLimit> batch;
        std::atomic<std::size_t> claimed = 0;
        std::size_t size = 0;
        /// `claimed` and `batchNumber` when the supervisor last looked.
        std::size_t seenClaimed = 0;
        std::uint64_t seenBatch = 0;
        /// How many batches the worker has taken.
        std::uint64_t batchNumber = 0;
        Worker* nextIdle = nullptr;
        WakeWord wakeWord;
        /// The kernel's number of the thread, 0 while there is none. Under the pool's lock.
        pid_t thread = 0;

        [[nodiscard]] std::size_t rest() const noexcept;
    };

    struct Help {
        Worker* worker = nullptr;
        bool needsSupervisor = false;
    };

    static void runThread(WorkerPool& pool, Worker& worker) noexcept;
    void serve(Worker& worker) noexcept;
    std::size_t runBatch(Worker& worker, std::size_t size) noexcept;
    [[nodiscard]] Help summon() noexcept;
    static void give(Help help) noexcept;
    void takeBatch(Worker& worker);
    void takeBack(Worker& worker);
    void takeBackFromOthers(const Worker& worker);
    void noteWaiting() noexcept;
    void grow(bool isComputing);

    static thread_local const WorkerPool* poolOfThisThread;
    static thread_local const Worker* workerOfThisThread;

    const QoSClass qosClass_;
    const DispatchQueue* const queue_;
    const std::size_t baseWorkers_;

    mutable std::mutex mutex_;
    WorkRing waiting_;
    std::uint64_t taken_ = 0;
    std::uint64_t finished_ = 0;
    std::vector<std::unique_ptr<Worker>> workers_;
    std::vector<Worker*> gone_;
    Worker* idle_ = nullptr;
    /// Whether an idle worker was woken and has not come yet.
    bool isWaking_ = false;
    std::size_t workerCount_ = 0;
    std::size_t toStart_ = 0;
    bool isSupervised_ = false;
    bool wasSeen_ = false;
    std::uint64_t seenStarted_ = 0;
    unsigned looksWhileBusy_ = 0;

    std::atomic<bool> hasWaiting_ = false;
};

}  // namespace corvane
