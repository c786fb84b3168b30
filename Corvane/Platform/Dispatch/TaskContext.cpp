#include <mutex>

#include <Corvane/Platform/Dispatch/Private/BlockEnd.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>

namespace corvane {

namespace {

constinit thread_local TaskContext* contextOfThisThread = nullptr;

}  // namespace

void TaskCancellation::cancel() noexcept {
    std::optional<std::stop_source> source;
    {
        const std::lock_guard lock(lock_);
        isCancelled_.store(true, std::memory_order_release);
        source = source_;
    }
    if (source) source->request_stop();
}

std::stop_token TaskCancellation::token() {
    const std::lock_guard lock(lock_);
    if (!source_) {
        source_.emplace();
        // Nobody has the token yet, so no callback runs under the lock.
        if (isCancelled()) source_->request_stop();
    }
    return source_->get_token();
}

TaskContext* TaskContext::current() noexcept {
    return contextOfThisThread;
}

void TaskContext::enqueue(std::coroutine_handle<> task) noexcept {
    // A copy: the task may end, and let go of its queue, before `async` returns.
    const TaskExecutor executor = executor_;
    executor.queue().async([this, task] { run(task); }, {priority_, 0});
}

void TaskContext::run(std::coroutine_handle<> task) noexcept {
    TaskContext* const outer = std::exchange(contextOfThisThread, this);
    while (task) {
        depth_ = 0;
        task.resume();
        task = std::exchange(next_, nullptr);
        // Gives null when this context may be gone.
        if (!task) task = std::exchange(suspension_, nullptr)->commit();
    }
    contextOfThisThread = outer;
}

std::coroutine_handle<> BoundTaskContext::commit() noexcept {
    const BlockEnd::Near ends;
    if (child_) {
        enqueue(std::exchange(child_, nullptr));
    } else {
        awaiting_->enqueue(parent_);
    }
    return nullptr;
}

TaskContext::Absence::Absence() noexcept : context_(std::exchange(contextOfThisThread, nullptr)) {}

TaskContext::Absence::~Absence() {
    contextOfThisThread = context_;
}

}  // namespace corvane
