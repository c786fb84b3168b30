#include <pthread.h>

#include <utility>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Private/DelayedWork.hpp>
#include <Corvane/Platform/Dispatch/Private/PoolSupervisor.hpp>

namespace corvane {

DelayedWork& DelayedWork::shared() {
    static auto* const instance = new DelayedWork;
    return *instance;
}

DelayedWork::DelayedWork() {
    ClockClients::add(*this);
    PoolSupervisor::shared().requestThread([this] { run(); });
}

std::shared_ptr<DelayedWork::Entry> DelayedWork::add(SteadyInstant deadline, std::shared_ptr<DispatchQueue> queue,
                                                     Work&& work, DispatchQoS qos) {
    auto entry = std::make_shared<Entry>(std::move(queue), std::move(work), qos);
    static_cast<void>(entry->moveTo(deadline));
    bool isEarliest = false;
    {
        const std::lock_guard lock(mutex_);
        isEarliest = deadlines_.arm(entry);
    }
    if (isEarliest) wakeWord_.set();
    return entry;
}

void DelayedWork::remove(Entry& entry) noexcept {
    std::shared_ptr<Entry> removed;  // destroyed without the lock
    const std::lock_guard lock(mutex_);
    removed = deadlines_.remove(entry);
}

void DelayedWork::run() noexcept {
    ::pthread_setname_np(::pthread_self(), "corvane.delayed");
    std::uint64_t queued = 0;
    for (;;) {
        std::shared_ptr<Entry> entry;
        SteadyInstant next;
        {
            const std::lock_guard lock(mutex_);
            finished_ = queued;
            entry = deadlines_.takeDue(Clock::current().uptime());
            if (entry != nullptr) ++taken_;
            next = deadlines_.next();
        }
        if (entry != nullptr) {
            if (entry->queue != nullptr) {
                entry->queue->async(std::move(entry->work), entry->qos);
            } else {
                std::exchange(entry->work, nullptr)();
            }
            entry = nullptr;
            ++queued;
            continue;
        }
        ClockClients::announceChange();
        if (const auto timeout = Clock::current().timeToWait(next)) {
            if (*timeout > std::chrono::nanoseconds::zero()) wakeWord_.waitFor(*timeout);
        } else {
            wakeWord_.wait();
        }
    }
}

ClockActivity DelayedWork::activity() const noexcept {
    const std::lock_guard lock(mutex_);
    return {deadlines_.next(), taken_, finished_};
}

void DelayedWork::clockMoved() noexcept {
    wakeWord_.set();
}

}  // namespace corvane
