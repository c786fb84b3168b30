#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>
#include <thread>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/BlockEnd.hpp>
#include <Corvane/Platform/Dispatch/Private/PoolSupervisor.hpp>
#include <Corvane/Platform/Dispatch/Private/QueueFrame.hpp>
#include <Corvane/Platform/Dispatch/Private/ThreadIdentity.hpp>
#include <Corvane/Platform/Dispatch/Private/WorkerPool.hpp>

namespace corvane {

namespace {

struct ClassTraits {
    /// Added to the process's nice value.
    int nice;
    /// At most 15 characters, the kernel's limit.
    const char* threadName;
};

constexpr ClassTraits traits(QoSClass qosClass) noexcept {
    switch (qosClass) {
        case QoSClass::userInteractive:
            return {0, "corvane.uiactiv"};
        case QoSClass::userInitiated:
            return {1, "corvane.uinitia"};
        case QoSClass::utility:
            return {8, "corvane.utility"};
        case QoSClass::background:
            return {15, "corvane.backgr"};
        case QoSClass::default_:
        case QoSClass::unspecified:
            break;
    }
    return {2, "corvane.default"};
}

void dressThread(QoSClass qosClass) noexcept {
    const ClassTraits wanted = traits(qosClass);
    ::pthread_setname_np(::pthread_self(), wanted.threadName);
    constexpr int highest = 19;
    const int processNice = ::getpriority(PRIO_PROCESS, static_cast<id_t>(mainThreadID()));
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(currentThreadID()), std::min(processNice + wanted.nice, highest));
}

/// Whether a thread would run if it had a processor to itself; false for one that waits or is gone.
bool isRunnable(pid_t thread) noexcept {
    std::array<char, 48> path{};
    std::snprintf(path.data(), path.size(), "/proc/self/task/%d/stat", static_cast<int>(thread));
    const int file = ::open(path.data(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    // "NUMBER (NAME) STATE ...", and the name may have anything in it.
    std::array<char, 64> text{};
    const auto size = std::max<ssize_t>(::read(file, text.data(), text.size()), 0);
    ::close(file);
    const std::string_view line(text.data(), static_cast<std::size_t>(size));
    const std::size_t nameEnd = line.rfind(") ");
    return nameEnd != std::string_view::npos && nameEnd + 2 < line.size() && line[nameEnd + 2] == 'R';
}

}  // namespace

constinit thread_local const WorkerPool* WorkerPool::poolOfThisThread = nullptr;
constinit thread_local const WorkerPool::Worker* WorkerPool::workerOfThisThread = nullptr;

std::size_t WorkerPool::Worker::rest() const noexcept {
    const std::size_t started = claimed.load(std::memory_order_acquire);
    return started < size ? size - started : 0;
}

WorkerPool::WorkerPool(QoSClass qosClass, const DispatchQueue* queue)
    : qosClass_(qosClass), queue_(queue), baseWorkers_(std::clamp(std::thread::hardware_concurrency(), 2U, 64U)) {
    ClockClients::add(*this);
    PoolSupervisor::shared().add(*this);
}

QoSClass WorkerPool::classOfThisThread() noexcept {
    return poolOfThisThread != nullptr ? poolOfThisThread->qosClass_ : QoSClass::unspecified;
}

void WorkerPool::push(Work&& work) {
    Help help;
    {
        const std::lock_guard lock(mutex_);
        waiting_.pushBack(std::move(work));
        noteWaiting();
        if (poolOfThisThread != this || !BlockEnd::isAtHand()) help = summon();
    }
    give(help);
}

/// Decides who shall look after blocks that wait, in the queue or in a batch. One idle worker is woken at a time: it
/// summons the next itself when it leaves something, and often it does not have to.
WorkerPool::Help WorkerPool::summon() noexcept {
    if (idle_ != nullptr) {
        if (isWaking_) return {};
        isWaking_ = true;
        return {.worker = std::exchange(idle_, idle_->nextIdle)};
    }
    if (workerCount_ < baseWorkers_) {
        ++workerCount_;
        ++toStart_;
        return {.needsSupervisor = true};
    }
    return {.needsSupervisor = !std::exchange(isSupervised_, true)};
}

void WorkerPool::give(Help help) noexcept {
    if (help.worker != nullptr) help.worker->wakeWord.set();
    if (help.needsSupervisor) PoolSupervisor::shared().attend();
}

bool WorkerPool::hasWaiting() const noexcept {
    if (hasWaiting_.load(std::memory_order_relaxed)) return true;
    // A block that was lifted runs in another pool than this one.
    const WorkerPool* const calling = poolOfThisThread;
    return calling != nullptr &&
           (calling->hasWaiting_.load(std::memory_order_relaxed) || workerOfThisThread->rest() > 0);
}

void WorkerPool::noteWaiting() noexcept {
    const bool now = !waiting_.empty();
    if (hasWaiting_.load(std::memory_order_relaxed) != now) hasWaiting_.store(now, std::memory_order_relaxed);
}

void WorkerPool::runThread(WorkerPool& pool, Worker& worker) noexcept {
    dressThread(pool.qosClass_);
    poolOfThisThread = &pool;
    workerOfThisThread = &worker;
    const QueueFrame frame(pool.queue_);
    pool.serve(worker);
}

void WorkerPool::serve(Worker& worker) noexcept {
    std::unique_lock lock(mutex_);
    worker.thread = currentThreadID();
    for (;;) {
        if (waiting_.empty()) takeBackFromOthers(worker);
        if (waiting_.empty()) {
            waiting_.rest();
            if (workerCount_ > baseWorkers_) {
                --workerCount_;
                worker.thread = 0;
                gone_.push_back(&worker);
                lock.unlock();
                ClockClients::announceChange();
                return;
            }
            worker.nextIdle = std::exchange(idle_, &worker);
            lock.unlock();
            ClockClients::announceChange();
            worker.wakeWord.wait();
            lock.lock();
            isWaking_ = false;
            continue;
        }
        takeBatch(worker);
        const std::size_t size = worker.size;
        const Help help = size > 1 || !waiting_.empty() ? summon() : Help();
        lock.unlock();
        give(help);
        const std::size_t ran = runBatch(worker, size);
        lock.lock();
        worker.size = 0;
        finished_ += ran;
    }
}

std::size_t WorkerPool::runBatch(Worker& worker, std::size_t size) noexcept {
    std::size_t ran = 0;
    for (;;) {
        const std::size_t index = worker.claimed.fetch_add(1, std::memory_order_acq_rel);
        if (index >= size) break;
        Work& work = worker.batch[index];
        BlockEnd::announceLast(index + 1 == size);
        work();
        work = nullptr;
        ++ran;
    }
    return ran;
}

void WorkerPool::takeBatch(Worker& worker) {
    const std::size_t count = std::clamp<std::size_t>(waiting_.size() / 2, 1, batchLimit);
    for (std::size_t index = 0; index < count; ++index)
        worker.batch[index] = waiting_.popFront();
    noteWaiting();
    worker.size = count;
    ++worker.batchNumber;
    worker.claimed.store(0, std::memory_order_release);
    taken_ += count;
}

/// Puts what `worker` has not started back in front of the others.
void WorkerPool::takeBack(Worker& worker) {
    if (worker.rest() == 0) return;
    const std::size_t first = worker.claimed.exchange(worker.size, std::memory_order_acq_rel);
    for (std::size_t index = worker.size; index > first; --index) {
        waiting_.pushFront(std::move(worker.batch[index - 1]));
        --taken_;
    }
    noteWaiting();
}

void WorkerPool::takeBackFromOthers(const Worker& worker) {
    for (const std::unique_ptr<Worker>& other : workers_) {
        if (other.get() != &worker) takeBack(*other);
    }
}

bool WorkerPool::supervise() {
    std::unique_lock lock(mutex_);
    if (!isSupervised_) return false;

    std::uint64_t started = taken_;
    bool isWaiting = !waiting_.empty();
    for (const std::unique_ptr<Worker>& worker : workers_) {
        const std::size_t claimed = worker->claimed.load(std::memory_order_acquire);
        const bool hasStood = wasSeen_ && worker->seenBatch == worker->batchNumber && worker->seenClaimed == claimed;
        worker->seenBatch = worker->batchNumber;
        worker->seenClaimed = claimed;
        const std::size_t rest = worker->rest();
        started -= rest;
        isWaiting |= rest > 0;
        // A batch whose block has run since the last look may be stuck: others shall have the rest.
        if (hasStood && rest > 0) takeBack(*worker);
    }
    if (!isWaiting) {
        isSupervised_ = false;
        wasSeen_ = false;
        return false;
    }
    const bool isStuck = wasSeen_ && started == seenStarted_;
    seenStarted_ = started;
    wasSeen_ = true;
    looksWhileBusy_ = isStuck ? looksWhileBusy_ : 0;
    if (isStuck) {
        std::vector<pid_t> threads;
        for (const std::unique_ptr<Worker>& worker : workers_) {
            if (worker->thread != 0) threads.push_back(worker->thread);
        }
        lock.unlock();
        const bool isComputing = std::cmp_greater_equal(std::ranges::count_if(threads, isRunnable), baseWorkers_);
        lock.lock();
        grow(isComputing);
    }
    return true;
}

/// Adds workers to those that are stuck. Blocked ones are doubled, so that sixty-three are passed in a few looks.
/// While the workers have work for all processors more of them would only get in each other's way; now and then one
/// is added all the same, in case they compute until another block has run.
void WorkerPool::grow(bool isComputing) {
    constexpr unsigned patience = 50;
    if (isComputing && ++looksWhileBusy_ < patience) return;
    looksWhileBusy_ = 0;
    const std::size_t wanted = isComputing ? 1 : std::max<std::size_t>(workerCount_, 1);
    const std::size_t more = std::min({wanted, mostWorkers - workerCount_, waiting_.size()});
    workerCount_ += more;
    toStart_ += more;
}

bool WorkerPool::startWorkers() {
    for (;;) {
        Worker* worker = nullptr;
        {
            const std::lock_guard lock(mutex_);
            if (toStart_ == 0) return true;
            --toStart_;
            if (gone_.empty()) {
                workers_.push_back(std::make_unique<Worker>());
                worker = workers_.back().get();
            } else {
                worker = gone_.back();
                gone_.pop_back();
            }
        }
        if (PoolSupervisor::startThread([this, worker] { runThread(*this, *worker); })) continue;
        const std::lock_guard lock(mutex_);
        gone_.push_back(worker);
        --workerCount_;
        isSupervised_ = true;
        return false;
    }
}

ClockActivity WorkerPool::activity() const noexcept {
    const std::lock_guard lock(mutex_);
    return {SteadyInstant::max(), taken_ + waiting_.size(), finished_};
}

}  // namespace corvane
