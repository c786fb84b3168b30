#include <algorithm>
#include <string>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/RunLoopImplementation.hpp>
#include <Corvane/Platform/Dispatch/Private/ThreadIdentity.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

class RunLoop::Implementation::Pump {
  public:
    Pump(Implementation& loop, bool isStoppable)
        : loop_(loop), isNested_(loop.running_ > 0), outerIsStoppable_(loop.isStoppable_) {
        loop_.isStoppable_ = isStoppable;
        if (!isNested_) return;
        const std::lock_guard lock(loop_.mutex_);
        loop_.publish();
        ++loop_.suspended_;
    }

    ~Pump() {
        loop_.isStoppable_ = outerIsStoppable_;
        {
            const std::lock_guard lock(loop_.mutex_);
            loop_.publish();
            if (isNested_) --loop_.suspended_;
        }
        loop_.adjustDescriptor();
        ClockClients::announceChange();
    }

    Pump(const Pump&) = delete;
    Pump& operator=(const Pump&) = delete;

  private:
    Implementation& loop_;
    const bool isNested_;
    const bool outerIsStoppable_;
    /// A task may run the loop; what the loop runs is no part of it.
    const TaskContext::Absence outsideTasks_;
};

RunLoop::Implementation::Implementation(int thread) : thread_(thread) {
    ClockClients::add(*this);
}

RunLoop::Implementation::~Implementation() {
    delete descriptor_.load(std::memory_order_acquire);
}

void RunLoop::Implementation::perform(std::span<Work> blocks) {
    if (blocks.empty()) return;
    bool isFirst = false;
    {
        std::unique_lock lock(mutex_);
        if (ended_) {
            lock.unlock();
            for (Work& work : blocks)
                work = nullptr;
            return;
        }
        isFirst = queue_.empty();
        for (Work& work : blocks)
            queue_.push_back(std::move(work));
    }
    if (isFirst) wake();
}

void RunLoop::Implementation::stop() noexcept {
    stop_.store(true, std::memory_order_release);
    wakeWord_.set();
}

void RunLoop::Implementation::arm(std::shared_ptr<RunLoopDeadline> entry) {
    bool isEarliest = false;
    {
        const std::lock_guard lock(mutex_);
        if (!ended_) isEarliest = deadlines_.arm(std::exchange(entry, nullptr));
    }
    if (entry != nullptr) entry->loopEnded();
    if (isEarliest) wake();
}

void RunLoop::Implementation::hasten(RunLoopDeadline& entry) noexcept {
    bool isEarliest = false;
    {
        const std::lock_guard lock(mutex_);
        isEarliest = deadlines_.hasten(entry);
    }
    if (isEarliest) wake();
}

std::shared_ptr<RunLoopDeadline> RunLoop::Implementation::disarm(RunLoopDeadline& entry) noexcept {
    const std::lock_guard lock(mutex_);
    return deadlines_.remove(entry);
}

void RunLoop::Implementation::requireOwnThread(const char* operation) const {
    if (currentThreadID() == thread_) return;
    fatalError(std::string("RunLoop::") + operation + " was called on another thread than the loop's own");
}

void RunLoop::Implementation::run(std::optional<Date> limit) {
    const Pump pump(*this, true);
    while (!stop_.exchange(false, std::memory_order_acq_rel)) {
        SteadyInstant wakeUp = SteadyInstant::max();
        if (limit) {
            const Clock& clock = Clock::current();
            const double left = (*limit - clock.now()).count();
            if (!(left > 0)) return;
            wakeUp = deadlineAfter(left);
        }
        step();
        sleep(wakeUp);
    }
}

bool RunLoop::Implementation::runOnce() {
    const Pump pump(*this, true);
    for (;;) {
        if (stop_.exchange(false, std::memory_order_acq_rel)) return false;
        if (step()) return !stop_.exchange(false, std::memory_order_acq_rel);
        sleep(SteadyInstant::max());
    }
}

bool RunLoop::Implementation::drain() {
    const Pump pump(*this, false);
    return step();
}

bool RunLoop::Implementation::step() {
    // What is queued from here on signals anew.
    if (const RunLoopDescriptor* const descriptor = descriptor_.load(std::memory_order_acquire)) {
        descriptor->acknowledge();
    }
    bool ran = runBlocks();
    if (nextDeadline_ != SteadyInstant::max() && !isStopping()) ran |= runDeadlines();
    return ran;
}

bool RunLoop::Implementation::runBlocks() {
    bool ran = batch_ != nullptr && runBatch(*batch_);
    if (isStopping()) return ran;

    Batch batch;
    {
        const std::lock_guard lock(mutex_);
        publish();
        nextDeadline_ = deadlines_.next();
        if (queue_.empty()) return ran;
        batch.blocks = spare_.take();
        batch.blocks.swap(queue_);
        taken_ += batch.blocks.size();
    }
    Batch* const outer = std::exchange(batch_, &batch);
    ran |= runBatch(batch);
    batch_ = outer;
    finishBatch(batch);
    return ran;
}

bool RunLoop::Implementation::runBatch(Batch& batch) {
    const std::size_t first = batch.next;
    while (batch.next < batch.blocks.size()) {
        Work& work = batch.blocks[batch.next++];
        ++running_;
        [&]() noexcept {
            work();
            work = nullptr;
        }();
        --running_;
        ++completed_;
        if (isStopping()) break;
    }
    return batch.next != first;
}

void RunLoop::Implementation::finishBatch(Batch& batch) noexcept {
    if (batch.next < batch.blocks.size()) {
        // Stopped half-way: the rest is again the first in the queue.
        const std::lock_guard lock(mutex_);
        const auto rest = batch.blocks.begin() + static_cast<std::ptrdiff_t>(batch.next);
        taken_ -= static_cast<std::uint64_t>(batch.blocks.end() - rest);
        queue_.insert(queue_.begin(), std::make_move_iterator(rest), std::make_move_iterator(batch.blocks.end()));
        wakeWord_.set();
    }
    const std::size_t used = batch.blocks.size();
    batch.blocks.clear();
    spare_.giveBack(std::move(batch.blocks), used);
}

bool RunLoop::Implementation::runDeadlines() {
    // One look at the clock: a timer that keeps coming due cannot keep the blocks waiting.
    const SteadyInstant now = Clock::current().uptime();
    if (nextDeadline_ > now) return false;
    bool ran = false;
    while (!isStopping()) {
        std::shared_ptr<RunLoopDeadline> entry;
        {
            const std::lock_guard lock(mutex_);
            publish();
            entry = deadlines_.takeDue(now);
            if (entry == nullptr) return ran;
            ++taken_;
        }
        ++running_;
        RunLoopDeadline& target = *entry;
        target.fire(std::move(entry));
        --running_;
        ++completed_;
        ran = true;
    }
    return ran;
}

/// Sleeps unless something has come since the last step.
void RunLoop::Implementation::sleep(SteadyInstant limit) {
    // Whatever comes sets the wake word. To take it before the queue is looked at anew, not after, saves a vain
    // look for each time that something comes while the loop is awake.
    if (wakeWord_.take()) return;
    {
        const std::lock_guard lock(mutex_);
        publish();
        if (!queue_.empty()) return;
        limit = std::min(limit, deadlines_.next());
    }
    ClockClients::announceChange();
    if (const auto timeout = Clock::current().timeToWait(limit)) {
        if (*timeout > std::chrono::nanoseconds::zero()) wakeWord_.waitFor(*timeout);
    } else {
        wakeWord_.wait();
    }
}

/// Makes what this thread has finished visible to `activity`.
void RunLoop::Implementation::publish() noexcept {
    finished_ = completed_;
}

void RunLoop::Implementation::wake() noexcept {
    wakeWord_.set();
    if (const RunLoopDescriptor* const descriptor = descriptor_.load(std::memory_order_acquire)) {
        descriptor->signal();
    }
    ClockClients::announceChange();
}

int RunLoop::Implementation::pollDescriptor() {
    RunLoopDescriptor* descriptor = descriptor_.load(std::memory_order_acquire);
    if (descriptor == nullptr) {
        descriptor = new RunLoopDescriptor;
        descriptor_.store(descriptor, std::memory_order_release);
        // Whatever came before is found by the first `drain`.
        descriptor->signal();
    }
    return descriptor->number();
}

void RunLoop::Implementation::adjustDescriptor() noexcept {
    const RunLoopDescriptor* const descriptor = descriptor_.load(std::memory_order_acquire);
    if (descriptor == nullptr) return;
    const std::lock_guard lock(mutex_);
    descriptor->setTimeout(Clock::current().timeToWait(deadlines_.next()));
    if (!queue_.empty()) descriptor->signal();
}

void RunLoop::Implementation::end() noexcept {
    std::vector<Work> blocks;
    std::vector<std::shared_ptr<RunLoopDeadline>> entries;
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        blocks.swap(queue_);
        entries = deadlines_.takeAll();
    }
    for (const std::shared_ptr<RunLoopDeadline>& entry : entries)
        entry->loopEnded();
    entries.clear();
    blocks.clear();
    ClockClients::remove(*this);
}

ClockActivity RunLoop::Implementation::activity() const noexcept {
    const std::lock_guard lock(mutex_);
    // A block that asks is not waited for by itself, nor are those that it is nested in.
    const bool isOwnThread = currentThreadID() == thread_;
    return {deadlines_.next(), taken_ + queue_.size(), isOwnThread ? completed_ + running_ : finished_ + suspended_};
}

void RunLoop::Implementation::clockMoved() noexcept {
    wakeWord_.set();
    if (const RunLoopDescriptor* const descriptor = descriptor_.load(std::memory_order_acquire)) {
        descriptor->signal();
    }
}

bool RunLoop::Implementation::isStopping() const noexcept {
    return isStoppable_ && stop_.load(std::memory_order_relaxed);
}

}  // namespace corvane
