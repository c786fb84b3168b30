#include <algorithm>
#include <array>
#include <utility>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Private/DelayedWork.hpp>
#include <Corvane/Platform/Dispatch/Private/MainQueueBatch.hpp>
#include <Corvane/Platform/Dispatch/Private/QueueFrame.hpp>
#include <Corvane/Platform/Dispatch/Private/RunLoopImplementation.hpp>
#include <Corvane/Platform/Dispatch/Private/SerialQueue.hpp>
#include <Corvane/Platform/Dispatch/Private/WorkerPool.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

namespace {

/// A delayed block of the main queue.
class MainQueueDeadline final : public RunLoopDeadline {
  public:
    explicit MainQueueDeadline(Work&& work) noexcept : work_(std::move(work)) {}

    void fire(std::shared_ptr<RunLoopDeadline>) noexcept override { std::exchange(work_, nullptr)(); }

    void loopEnded() noexcept override {}

  private:
    Work work_;
};

class MainQueue final : public DispatchQueue {
  public:
    MainQueue() noexcept : DispatchQueue("corvane.main", {QoSClass::userInteractive, 0}) {}

  private:
    void enqueue(Work&& work, DispatchQoS) override {
        if (MainQueueBatch* const batch = MainQueueBatch::current()) {
            batch->add(std::move(work));
        } else {
            RunLoop::main().implementation()->perform({&work, 1});
        }
    }

    void enqueueAt(SteadyInstant deadline, Work&& work, DispatchQoS) override {
        auto entry = std::make_shared<MainQueueDeadline>(std::move(work));
        static_cast<void>(entry->moveTo(deadline));
        RunLoop::main().implementation()->arm(std::move(entry));
    }

    [[nodiscard]] bool hasWaiting() const noexcept override { return true; }
};

class GlobalQueue final : public DispatchQueue {
  public:
    explicit GlobalQueue(QoSClass qosClass)
        : DispatchQueue("corvane.global." + std::string(corvane::description(qosClass)), {qosClass, 0}),
          pool_(qosClass, this) {}

    [[nodiscard]] static GlobalQueue& ofClass(QoSClass qosClass);

    [[nodiscard]] WorkerPool& pool() noexcept { return pool_; }

  private:
    void enqueue(Work&& work, DispatchQoS qos) override {
        if (qos.qosClass <= this->qos().qosClass) {
            pool_.push(std::move(work));
            return;
        }
        ofClass(qos.qosClass).pool_.push([this, work = std::move(work)]() mutable {
            const QueueFrame frame(this);
            work();
            work = nullptr;
        });
    }

    void enqueueAt(SteadyInstant deadline, Work&& work, DispatchQoS qos) override {
        DelayedWork::shared().add(deadline, shared_from_this(), std::move(work), qos);
    }

    [[nodiscard]] bool hasWaiting() const noexcept override { return pool_.hasWaiting(); }

    WorkerPool pool_;
};

/// The global queue of a class, made on first use and never given up.
template <QoSClass qosClass>
GlobalQueue& globalQueue() {
    static const auto& queue = *new auto(std::make_shared<GlobalQueue>(qosClass));
    return *queue;
}

GlobalQueue& GlobalQueue::ofClass(QoSClass qosClass) {
    switch (qosClass) {
        case QoSClass::background:
            return globalQueue<QoSClass::background>();
        case QoSClass::utility:
            return globalQueue<QoSClass::utility>();
        case QoSClass::userInitiated:
            return globalQueue<QoSClass::userInitiated>();
        case QoSClass::userInteractive:
            return globalQueue<QoSClass::userInteractive>();
        case QoSClass::default_:
        case QoSClass::unspecified:
            break;
    }
    return globalQueue<QoSClass::default_>();
}

}  // namespace

void MainQueueBatch::flush() {
    RunLoop::main().implementation()->perform(std::span(blocks_).first(std::exchange(size_, 0)));
}

DispatchQueue& DispatchQueue::main() noexcept {
    static const auto& queue = *new auto(std::make_shared<MainQueue>());
    return *queue;
}

DispatchQueue& DispatchQueue::global(QoSClass qosClass) noexcept {
    return GlobalQueue::ofClass(qosClass);
}

std::shared_ptr<DispatchQueue> DispatchQueue::serial(std::string label, DispatchQoS qos,
                                                     std::shared_ptr<DispatchQueue> target) {
    if (target == nullptr) target = global(qos.qosClass).shared_from_this();
    return std::make_shared<SerialQueue>(std::move(label), qos, std::move(target));
}

DispatchQueue::DispatchQueue(std::string label, DispatchQoS qos) noexcept : label_(std::move(label)), qos_(qos) {}

DispatchQueue::~DispatchQueue() = default;

bool DispatchQueue::isCurrent() const noexcept {
    return QueueFrame::contains(QueueFrame::current(), this) || (this == &main() && Thread::isMainThread());
}

void DispatchQueue::async(Work work, DispatchQoS qos) {
    enqueue(std::move(work), qos);
}

void DispatchQueue::asyncAfter(double seconds, Work work, DispatchQoS qos) {
    if (seconds > 0) {
        enqueueAt(deadlineAfter(seconds), std::move(work), qos);
    } else {
        enqueue(std::move(work), qos);  // not-a-number included
    }
}

void DispatchQueue::runAndWait(void (*body)(void*), void* context) {
    if (dynamic_cast<const GlobalQueue*>(this) != nullptr) {
        const QueueFrame frame(this);
        body(context);
        return;
    }

    std::optional<QueueFrame> mainFrame;
    if (Thread::isMainThread()) mainFrame.emplace(&main());
    const QueueFrame* const waiter = QueueFrame::current();
    // A queue is held up by what holds up its target; a global queue has other workers.
    for (const DispatchQueue* queue = this; queue != nullptr; queue = queue->target()) {
        if (dynamic_cast<const GlobalQueue*>(queue) != nullptr || !QueueFrame::isHeldUp(waiter, queue)) continue;
        fatalError("sync was called on the queue \"" + label_ + "\" by a block that the queue waits for");
    }

    WakeWord done;
    // Whoever waits should not wait for a worker of a lower class than its own.
    const QoSClass qosClass = mainFrame ? QoSClass::userInteractive : WorkerPool::classOfThisThread();
    enqueue(
        [=, &done] {
            {
                const QueueFrame frame(nullptr, waiter);
                body(context);
            }
            done.set();
        },
        {qosClass, 0});
    done.wait();
}

}  // namespace corvane
