#include <mutex>
#include <string>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/FatalError.hpp>

namespace corvane {

namespace {

std::string description(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "an exception of an unknown type";
    }
}

TaskExecutor executorFor(const TaskExecutor* bound, SpawnOptions& options) noexcept {
    if (bound != nullptr) return *bound;
    if (options.executor) return std::move(options.executor);
    return DispatchQueue::global(options.priority);
}

}  // namespace

SpawnedTask::SpawnedTask(const TaskExecutor* bound, SpawnOptions&& options) noexcept
    : TaskContext(executorFor(bound, options), &cancellation_, options.priority) {}

SpawnedTask::~SpawnedTask() {
    if (failure_ && !isFailureKnown_.load(std::memory_order_relaxed)) {
        fatalError("a task that nobody awaited has ended with an exception: " + description(failure_));
    }
}

void SpawnedTask::rethrowFailure() {
    if (!failure_) return;
    isFailureKnown_.store(true, std::memory_order_relaxed);
    std::rethrow_exception(failure_);
}

void SpawnedTask::whenEnded(Work callback) {
    {
        const std::lock_guard lock(lock_);
        if (!isEnded()) {
            callbacks_.push_back(std::move(callback));
            return;
        }
    }
    const TaskExecutor there = executor();
    there.queue().async(std::move(callback));
}

std::coroutine_handle<> SpawnedTask::commit() noexcept {
    collect();
    std::vector<Work> callbacks;
    {
        const std::lock_guard lock(lock_);
        isEnded_.store(true, std::memory_order_release);
        callbacks.swap(callbacks_);
    }
    {
        const Absence outsideTasks;
        for (Work& callback : callbacks) {
            callback();
            callback = nullptr;
        }
    }
    release();
    return nullptr;
}

void SpawnedTask::waitOnMainRunLoop() {
    if (!Thread::isMainThread()) fatalError("runBlocking was called on another thread than the main one");
    bool isOver = false;
    whenEnded([&isOver] { DispatchQueue::main().async([&isOver] { isOver = true; }); });
    bool wasStopped = false;
    while (!isOver)
        wasStopped |= !RunLoop::main().runOnce();
    if (wasStopped) RunLoop::main().stop();
}

}  // namespace corvane
