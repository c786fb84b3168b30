#pragma once

#include <atomic>
#include <coroutine>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/TaskExecutor.hpp>
#include <Corvane/Platform/Dispatch/TaskFrames.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

// What tasks are made of. Users of tasks need nothing of it by name.

namespace corvane {

/// What a task does once it has stopped running. Whatever lets another thread go on with it waits until the thread
/// that ran it has come back to `TaskContext::run`, so nothing on that thread's stack uses the task any more.
class CORVANE_EXPORT TaskSuspension {
  public:
    /// Gives what shall be resumed on this thread right away, or null; then the task may be gone already.
    virtual std::coroutine_handle<> commit() noexcept = 0;

  protected:
    TaskSuspension() = default;
    TaskSuspension(const TaskSuspension&) = default;
    TaskSuspension& operator=(const TaskSuspension&) = default;
    ~TaskSuspension() = default;
};

/// Whether an unstructured task was cancelled: one for the task and everything that it awaits.
class CORVANE_EXPORT TaskCancellation {
  public:
    /// Any thread; the callbacks of the token run in it.
    void cancel() noexcept;

    [[nodiscard]] bool isCancelled() const noexcept { return isCancelled_.load(std::memory_order_acquire); }

    /// The token is made when somebody asks for it: most tasks live without.
    [[nodiscard]] std::stop_token token();

  private:
    std::atomic<bool> isCancelled_ = false;
    UnfairLock lock_;
    std::optional<std::stop_source> source_;
};

/// A chain of tasks that await each other on one executor. It is run by one thread at a time.
///
/// A task that is awaited runs at once, on the awaiting task's stack, to its first suspension. Most have a result by
/// then, and the awaiting task just goes on. From a certain depth on the awaiting task suspends instead, and so
/// does one whose awaited task has suspended: all of them return to `run`, which resumes what is next. So the stack is
/// bounded, whether or not the compiler turns calls in tail position into jumps.
class CORVANE_EXPORT TaskContext : public TaskSuspension {
  public:
    TaskContext(const TaskContext&) = delete;
    TaskContext& operator=(const TaskContext&) = delete;

    /// The context of the task that the calling thread runs, null outside tasks.
    [[nodiscard]] static TaskContext* current() noexcept;

    [[nodiscard]] const TaskExecutor& executor() const noexcept { return executor_; }

    [[nodiscard]] TaskCancellation& cancellation() const noexcept { return *cancellation_; }

    /// Has `task` resumed on the executor. Any thread. The context may be gone when this returns.
    void enqueue(std::coroutine_handle<> task) noexcept;

    // For the task that runs, which is about to suspend, or to await another one.

    /// `suspension` tells what to do when the task has suspended.
    void suspend(TaskSuspension& suspension) noexcept { suspension_ = &suspension; }

    /// When the task has suspended `task` shall go on.
    void resumeNext(std::coroutine_handle<> task) noexcept { next_ = task; }

    /// Whether an awaited task may run on the stack of the one that awaits it; if so, and it ends there, `ascend`.
    [[nodiscard]] bool descend() noexcept {
        constexpr std::uint32_t depthLimit = 32;
        if (depth_ == depthLimit) return false;
        ++depth_;
        return true;
    }

    void ascend() noexcept { --depth_; }

    static void* operator new(std::size_t size) { return TaskFrames::take(size); }

    static void operator delete(void* memory, std::size_t size) noexcept { TaskFrames::giveBack(memory, size); }

    class Absence;

  protected:
    TaskContext(TaskExecutor executor, TaskCancellation* cancellation, QoSClass priority) noexcept
        : executor_(std::move(executor)), cancellation_(cancellation), priority_(priority) {}

    ~TaskContext() = default;

    /// Takes cancellation and priority over from the context of the task that awaits this one's.
    void inherit(const TaskContext& awaiting) noexcept {
        cancellation_ = awaiting.cancellation_;
        priority_ = awaiting.priority_;
    }

  private:
    void run(std::coroutine_handle<> task) noexcept;

    TaskExecutor executor_;
    TaskCancellation* cancellation_;
    /// What `run` resumes next.
    std::coroutine_handle<> next_;
    TaskSuspension* suspension_ = nullptr;
    /// Tasks that run on the stack of the one that `run` has resumed.
    std::uint32_t depth_ = 0;
    QoSClass priority_;
};

/// The context of a task that is bound to an executor, awaited by a task of another context.
class CORVANE_EXPORT BoundTaskContext final : public TaskContext {
  public:
    explicit BoundTaskContext(TaskExecutor executor) noexcept
        : TaskContext(std::move(executor), nullptr, QoSClass::unspecified) {}

    /// `child`, the bound task, is awaited by `parent`, a task of the context `awaiting`: start it there when `parent`
    /// has stopped, with the other's priority and cancellation.
    void startFor(TaskContext& awaiting, std::coroutine_handle<> parent, std::coroutine_handle<> child) noexcept {
        inherit(awaiting);
        awaiting_ = &awaiting;
        parent_ = parent;
        child_ = child;
        awaiting.suspend(*this);
    }

    /// First when the awaiting task has stopped, then when the bound one has ended.
    std::coroutine_handle<> commit() noexcept override;

  private:
    TaskContext* awaiting_ = nullptr;
    std::coroutine_handle<> parent_;
    std::coroutine_handle<> child_;
};

/// While it lives the calling thread counts as being outside tasks.
class CORVANE_EXPORT TaskContext::Absence {
  public:
    Absence() noexcept;
    ~Absence();
    Absence(const Absence&) = delete;
    Absence& operator=(const Absence&) = delete;

  private:
    TaskContext* context_;
};

/// A task that waits for something other than a task. Derive from it with `isReady`, asked first, and `take`, the
/// result of the `co_await`.
class CORVANE_EXPORT TaskPause : public TaskSuspension {
  public:
    TaskPause(const TaskPause&) = delete;
    TaskPause& operator=(const TaskPause&) = delete;

    void begin(TaskContext& context, std::coroutine_handle<> task) noexcept {
        context_ = &context;
        task_ = task;
        context.suspend(*this);
    }

  protected:
    TaskPause() = default;
    ~TaskPause() = default;

    [[nodiscard]] std::coroutine_handle<> task() const noexcept { return task_; }

    /// The task may be gone when this returns.
    void enqueueTask() noexcept { context_->enqueue(task_); }

  private:
    TaskContext* context_ = nullptr;
    std::coroutine_handle<> task_;
};

}  // namespace corvane
