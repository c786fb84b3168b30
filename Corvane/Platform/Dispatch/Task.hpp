#pragma once

#include <concepts>
#include <coroutine>
#include <expected>
#include <stop_token>
#include <type_traits>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>
#include <Corvane/Platform/Dispatch/TaskPromise.hpp>

namespace corvane {

/// What the running task can ask and do; `Task<>::sleep(1)` and the like.
class CORVANE_EXPORT CurrentTask {
  public:
    /// True while the current task is not cancelled; also outside tasks. A task that awaits another one and that
    /// other one are cancelled together.
    [[nodiscard]] static bool isNotCancelled() noexcept;

    /// Tells of the cancellation of the current task; outside tasks a token that never does. Its callbacks run in the
    /// call that cancels.
    [[nodiscard]] static std::stop_token stopToken();

    /// Suspends for `seconds` on the clock in force. Gives a `CancellationError`, at once, when the task is or gets
    /// cancelled.
    ///
    /// The time is `seconds` times 1e9 as an unsigned 64-bit count of nanoseconds: a product that is not finite, not
    /// greater than -1.0 or not below 2^64 stops the process. Zero and what truncates to it sleep until the queue
    /// has had a turn; the 292 years that the clock can count are never over.
    [[nodiscard]] static Task<std::expected<void, AnyError>> sleep(double seconds);

    /// Suspends, and goes on after what waits for the executor by now. For tasks that compute for long.
    class Yield;
    [[nodiscard]] static Yield yield() noexcept;
};

/// An asynchronous operation: the return type of a coroutine that may `co_await` others.
///
///     Task<std::expected<Score, AnyError>> score(MatchID match) {
///         auto page = co_await download(match);
///         if (!page) co_return std::unexpected(page.error());
///         co_return parse(*page);
///     }
///
/// It is lazy: nothing runs before it is awaited (or handed to `spawn`), once: doing so again stops the process. One
/// that never is frees what it holds.
/// It runs where the awaiting task runs, unless `on` or `onMain` binds it to an executor; after every `co_await` a task
/// is on its own executor again. Awaiting one that is where it belongs costs no queue.
///
/// A failure is a value, `Task<std::expected<T, E>>`. An exception that leaves the coroutine's own body is thrown in
/// the task that awaits it. References and pointers among the parameters, `this` and a lambda's captures included, must
/// live until the task has ended; `spawn`, `on` and `runBlocking` take a callable and keep it that long.
///
/// Use one from one thread at a time. GCC 12 miscompiles `co_await` in a condition and in `?:`: name its value first.
template <class T>
class [[nodiscard]] Task : public CurrentTask {
  public:
    using promise_type = TaskPromise<T>;

    Task(Task&& other) noexcept : coroutine_(std::exchange(other.coroutine_, nullptr)) {}

    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            const Task ended(std::move(*this));
            coroutine_ = std::exchange(other.coroutine_, nullptr);
        }
        return *this;
    }

    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    ~Task() {
        if (coroutine_) endUnstartedTask(coroutine_);
    }

  private:
    template <class U>
    friend Task<U> on(TaskExecutor executor, Task<U> task);
    friend class TaskPromise<T>;
    friend class TaskPromiseBase;
    template <class U>
    friend class SpawnedTaskOf;

    explicit Task(std::coroutine_handle<promise_type> coroutine) noexcept : coroutine_(coroutine) {}

    /// Stops the process when there is none any more.
    [[nodiscard]] TaskPromiseBase& promise() const {
        if (!coroutine_) reportEmptyTask();
        return coroutine_.promise();
    }

    void bind(TaskExecutor executor) { promise().bind(std::move(executor)); }

    [[nodiscard]] const TaskExecutor* boundExecutor() const {
        const TaskPromiseBase& promise = this->promise();
        return promise.role_ == TaskPromiseBase::Role::bound ? &promise.context_->executor() : nullptr;
    }

    /// Makes it the task that `context` is there for.
    std::coroutine_handle<> makeRoot(TaskContext& context) noexcept {
        TaskPromiseBase& promise = coroutine_.promise();
        if (promise.role_ == TaskPromiseBase::Role::bound) promise.unbind();
        promise.context_ = &context;
        promise.role_ = TaskPromiseBase::Role::root;
        return coroutine_;
    }

    std::coroutine_handle<promise_type> coroutine_;
};

/// Awaits a task on behalf of another one. It owns the awaited task, so that the frame is gone with the full
/// expression, and the end of a long chain is not a recursion of destructors.
template <class T>
class TaskAwaiter {
  public:
    explicit TaskAwaiter(std::coroutine_handle<TaskPromise<T>> child) noexcept : child_(child) {}

    ~TaskAwaiter() { child_.destroy(); }

    TaskAwaiter(const TaskAwaiter&) = delete;
    TaskAwaiter& operator=(const TaskAwaiter&) = delete;

    bool await_ready() const noexcept { return false; }

    template <std::derived_from<TaskPromiseBase> Promise>
    bool await_suspend(std::coroutine_handle<Promise> parent) const noexcept {
        using Role = TaskPromiseBase::Role;
        TaskContext& context = parent.promise().context();
        TaskPromiseBase& child = child_.promise();
        if (child.role_ == Role::bound) [[unlikely]] {
            if (child.context_->executor() != context.executor()) {
                static_cast<BoundTaskContext*>(child.context_)->startFor(context, parent, child_);
                return true;
            }
            child.unbind();
        }
        child.context_ = &context;
        if (context.descend()) [[likely]] {
            child_.resume();
            if (child_.done()) [[likely]] {
                context.ascend();
                return false;
            }
        } else {
            context.resumeNext(child_);
        }
        child.role_ = Role::detached;
        child.parent_ = parent;
        return true;
    }

    T await_resume() const { return child_.promise().take(); }

  private:
    const std::coroutine_handle<TaskPromise<T>> child_;
};

/// `co_await Task<>::yield()`.
class CORVANE_EXPORT CurrentTask::Yield final : public TaskPause {
  public:
    [[nodiscard]] bool isReady() const noexcept { return false; }

    void take() const noexcept {}

    std::coroutine_handle<> commit() noexcept override {
        enqueueTask();
        return nullptr;
    }
};

inline CurrentTask::Yield CurrentTask::yield() noexcept {
    return {};
}

inline Task<void> TaskPromise<void>::get_return_object() noexcept {
    return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

template <class U>
TaskAwaiter<U> TaskPromiseBase::await_transform(Task<U>&& task, std::source_location where) const {
    if (!task.coroutine_) [[unlikely]]
        reportEmptyTask(where);
    return TaskAwaiter<U>(std::exchange(task.coroutine_, nullptr));
}

template <class Result>
inline constexpr bool isTask = false;
template <class T>
inline constexpr bool isTask<Task<T>> = true;

/// A callable without parameters that returns a task.
template <class Function>
concept TaskFunction = std::invocable<std::decay_t<Function>&> && isTask<std::invoke_result_t<std::decay_t<Function>&>>;

/// The task of `function`, which is kept, with its captures, until that task has ended.
template <TaskFunction Function>
std::invoke_result_t<Function&> ownedTask(Function function) {
    co_return co_await function();
}

/// Binds a task to an executor: it runs there, and the task that awaits it goes on where it was. It keeps the
/// cancellation and the priority of the task that awaits it. One that is bound already stays where it is.
template <class T>
[[nodiscard]] Task<T> on(TaskExecutor executor, Task<T> task) {
    task.bind(std::move(executor));
    return task;
}

template <TaskFunction Function>
[[nodiscard]] auto on(TaskExecutor executor, Function&& function) {
    return on(std::move(executor), ownedTask<std::decay_t<Function>>(std::forward<Function>(function)));
}

/// Binds a task to the main thread.
template <class T>
[[nodiscard]] Task<T> onMain(Task<T> task) {
    return on(DispatchQueue::main(), std::move(task));
}

template <TaskFunction Function>
[[nodiscard]] auto onMain(Function&& function) {
    return on(DispatchQueue::main(), std::forward<Function>(function));
}

}  // namespace corvane
