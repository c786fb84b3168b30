#include <algorithm>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/BlockEnd.hpp>
#include <Corvane/Platform/Dispatch/Private/DelayedWork.hpp>
#include <Corvane/Platform/Dispatch/Private/QueueFrame.hpp>
#include <Corvane/Platform/Dispatch/Private/SerialQueue.hpp>

namespace corvane {

SerialQueue::SerialQueue(std::string label, DispatchQoS qos, std::shared_ptr<DispatchQueue> target) noexcept
    : DispatchQueue(std::move(label), qos),
      target_(std::move(target)),
      isOnPool_(target_->target() == nullptr && target_.get() != &DispatchQueue::main()) {}

void SerialQueue::enqueue(Work&& work, DispatchQoS qos) {
    const QoSClass wanted = std::max(qos.qosClass, this->qos().qosClass);
    {
        const std::lock_guard lock(mutex_);
        blocks_.push_back(std::move(work));
        hasBlocks_.store(true, std::memory_order_relaxed);
        const bool isLifted = state_ != State::idle && wanted > drainClass_;
        if (state_ != State::idle && !isLifted) return;
        drainClass_ = wanted;
        // A drain job that runs posts the next one itself, at the class it finds here.
        if (state_ == State::draining) return;
        // A second job at the higher class overtakes one that has not started; the later one finds nothing.
        state_ = State::scheduled;
    }
    postDrain(wanted);
}

void SerialQueue::runInPlace(Work&& work) {
    bool isFree = false;
    if (isOnPool_) {
        const std::lock_guard lock(mutex_);
        isFree = state_ == State::idle;
        if (isFree) {
            state_ = State::draining;
            drainClass_ = qos().qosClass;
        }
    }
    if (!isFree) {
        enqueue(std::move(work), {});
        return;
    }
    [&]() noexcept {
        const QueueFrame frame(this);
        work();
        work = nullptr;
    }();
    QoSClass nextClass = QoSClass::unspecified;
    {
        const std::lock_guard lock(mutex_);
        if (blocks_.empty()) {
            state_ = State::idle;
            return;
        }
        state_ = State::scheduled;
        nextClass = drainClass_;
    }
    postDrain(nextClass);
}

void SerialQueue::enqueueAt(SteadyInstant deadline, Work&& work, DispatchQoS qos) {
    DelayedWork::shared().add(deadline, shared_from_this(), std::move(work), qos);
}

bool SerialQueue::hasWaiting() const noexcept {
    return hasBlocks_.load(std::memory_order_relaxed) || target_->hasWaiting();
}

void SerialQueue::postDrain(QoSClass qosClass) {
    target_->enqueue([self = shared_from_this(), this] { drain(); }, {qosClass, 0});
}

void SerialQueue::drain() noexcept {
    const QueueFrame frame(this);
    const bool isLastJob = BlockEnd::isLastBlock();
    std::vector<Work> batch;
    std::size_t used = 0;
    {
        const std::lock_guard lock(mutex_);
        if (state_ != State::scheduled) return;
        state_ = State::draining;
        batch = spare_.take();
    }
    for (;;) {
        QoSClass runningClass = QoSClass::unspecified;
        {
            const std::lock_guard lock(mutex_);
            batch.swap(blocks_);
            hasBlocks_.store(false, std::memory_order_relaxed);
            runningClass = std::exchange(drainClass_, qos().qosClass);
        }
        for (Work& work : batch) {
            BlockEnd::announceLast(isLastJob && &work == &batch.back());
            work();
            work = nullptr;
        }
        used = std::max(used, batch.size());
        batch.clear();

        QoSClass nextClass = QoSClass::unspecified;
        {
            const std::lock_guard lock(mutex_);
            if (blocks_.empty()) {
                state_ = State::idle;
                spare_.giveBack(std::move(batch), used);
                return;
            }
            // Goes on at once while nobody else wants this thread and no block wants one of another class.
            if (drainClass_ == runningClass && !target_->hasWaiting()) continue;
            state_ = State::scheduled;
            spare_.giveBack(std::move(batch), used);
            nextClass = drainClass_;
        }
        postDrain(nextClass);
        return;
    }
}

}  // namespace corvane
