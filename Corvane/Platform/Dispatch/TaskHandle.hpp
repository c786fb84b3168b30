#pragma once

#include <atomic>
#include <concepts>
#include <cstdint>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>
#include <Corvane/Platform/Dispatch/Work.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// How to start an unstructured task.
struct SpawnOptions {
    /// Where it runs unless it is bound to an executor: the shared pool unless chosen.
    TaskExecutor executor = {};
    /// The class of the pool; a higher class than an executor's own lifts the task there.
    QoSClass priority = QoSClass::unspecified;
};

/// An unstructured task, shared by its handles and by itself until it has ended.
class CORVANE_EXPORT SpawnedTask : public TaskContext {
  public:
    void retain() noexcept { owners_.fetch_add(1, std::memory_order_relaxed); }

    void release() noexcept {
        if (owners_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
    }

    [[nodiscard]] bool isEnded() const noexcept { return isEnded_.load(std::memory_order_acquire); }

    void whenEnded(Work callback);

    /// Pumps the main run loop until the task has ended. Main thread only.
    void waitOnMainRunLoop();

    std::coroutine_handle<> commit() noexcept final;

  protected:
    /// `bound` is the executor that the task is bound to, or null.
    SpawnedTask(const TaskExecutor* bound, SpawnOptions&& options) noexcept;

    virtual ~SpawnedTask();

    /// Takes the result out of the frame and ends the frame, with all that the coroutine was given.
    virtual void collect() = 0;

    void rethrowFailure();

    void keepFailure(std::exception_ptr failure) noexcept { failure_ = std::move(failure); }

  private:
    /// The handle that `spawn` gives, and the task itself.
    std::atomic<std::uint32_t> owners_ = 2;
    std::atomic<bool> isEnded_ = false;
    std::atomic<bool> isFailureKnown_ = false;
    UnfairLock lock_;
    std::vector<Work> callbacks_;
    std::exception_ptr failure_;
    TaskCancellation cancellation_;
};

template <class T>
class SpawnedTaskOf final : public SpawnedTask {
  public:
    SpawnedTaskOf(Task<T>&& task, SpawnOptions&& options)
        : SpawnedTask(task.boundExecutor(), std::move(options)), task_(std::move(task)) {}

    void start() noexcept { enqueue(task_.makeRoot(*this)); }

    /// The result of the task, which has ended. What cannot be copied is given once.
    T result() {
        rethrowFailure();
        if constexpr (std::copy_constructible<T>) {
            return *value_;
        } else if constexpr (!std::is_void_v<T>) {
            return std::move(*value_);
        }
    }

  private:
    void collect() override {
        const Task<T> ended(std::move(task_));
        try {
            TaskPromise<T>& promise = ended.coroutine_.promise();
            if constexpr (std::is_void_v<T>) {
                promise.take();
            } else {
                value_.emplace(promise.take());
            }
        } catch (...) {
            keepFailure(std::current_exception());
        }
    }

    Task<T> task_;
    [[no_unique_address]] std::conditional_t<std::is_void_v<T>, std::monostate, std::optional<T>> value_;
};

/// An unstructured task as those see it who started it: made by `spawn`. Copies stand for the same task. Dropping
/// them neither cancels the task nor waits for it. Any thread.
template <class T = void>
class TaskHandle {
  public:
    /// Stands for no task: there is nothing to be cancelled, and to wait for its end stops the process.
    TaskHandle() noexcept = default;

    TaskHandle(const TaskHandle& other) noexcept : task_(other.task_) {
        if (task_ != nullptr) task_->retain();
    }

    TaskHandle(TaskHandle&& other) noexcept : task_(std::exchange(other.task_, nullptr)) {}

    TaskHandle& operator=(TaskHandle other) noexcept {
        std::swap(task_, other.task_);
        return *this;
    }

    ~TaskHandle() {
        if (task_ != nullptr) task_->release();
    }

    explicit operator bool() const noexcept { return task_ != nullptr; }

    /// Asks the task to end early. The task notices by `Task<>::isNotCancelled()`, by its stop token, whose callbacks
    /// run in this call, and by a sleep that fails.
    void cancel() const noexcept {
        if (task_ != nullptr) task_->cancellation().cancel();
    }

    [[nodiscard]] bool isCancelled() const noexcept { return task_ != nullptr && task_->cancellation().isCancelled(); }

    /// Whether the task has ended and its value is there.
    [[nodiscard]] bool isEnded() const noexcept { return task_ != nullptr && task_->isEnded(); }

    /// `co_await handle.value()` waits for the end of the task and gives what it has returned, or throws the exception
    /// that has left it; that one ends the process when nobody has taken notice of it before the last handle is gone.
    /// A copy, to everybody who asks; a value that cannot be copied is moved out, and must be asked for once.
    /// Cancelling the task that waits does not end the wait.
    [[nodiscard]] Task<T> value() const { return valueOf(*this); }

    /// Has `callback` run on the task's executor, outside the task, when that has ended. Callbacks run in the order in
    /// which they were given; on a pool, one given after the end may run beside earlier ones.
    void onCompletion(Work callback) const { task().whenEnded(std::move(callback)); }

  private:
    template <class U>
    friend TaskHandle<U> spawn(Task<U> task, SpawnOptions options);
    template <class U>
    friend U runBlocking(Task<U> task);

    explicit TaskHandle(SpawnedTaskOf<T>* task) noexcept : task_(task) {}

    [[nodiscard]] SpawnedTaskOf<T>& task() const {
        if (task_ == nullptr) reportEmptyTask();
        return *task_;
    }

    static Task<T> valueOf(TaskHandle handle) {
        if (!handle.isEnded()) {
            co_await withContinuation<void>(
                [&](const Continuation<void>& ended) { handle.onCompletion([ended] { ended.resume(); }); });
        }
        co_return handle.task_->result();
    }

    SpawnedTaskOf<T>* task_ = nullptr;
};

/// Starts a task that nobody needs to await. It is queued to its executor and runs on its own; it inherits neither
/// executor nor cancellation nor priority from the task that starts it.
///
///     const TaskHandle<Score> score = spawn(downloadScore(match), {.priority = QoSClass::userInitiated});
template <class T>
TaskHandle<T> spawn(Task<T> task, SpawnOptions options = {}) {
    auto* const spawned = new SpawnedTaskOf<T>(std::move(task), std::move(options));
    spawned->start();
    return TaskHandle<T>(spawned);
}

/// The same for a callable that returns a task; it is kept, with its captures, until that task has ended.
///
///     spawn([self = shared_from_this()]() -> Task<> { co_await self->refresh(); });
template <TaskFunction Function>
auto spawn(Function&& function, SpawnOptions options = {}) {
    return spawn(ownedTask<std::decay_t<Function>>(std::forward<Function>(function)), std::move(options));
}

/// Runs `task` on the main thread (unless it is bound elsewhere) until it has ended, and gives what it returns or
/// throws what leaves it. The main run loop is pumped meanwhile. For `main` and for tests; main thread only. A `stop`
/// of the main run loop during that time is left to the `run` around this.
template <class T>
T runBlocking(Task<T> task) {
    const TaskHandle<T> handle = spawn(std::move(task), {.executor = DispatchQueue::main()});
    handle.task_->waitOnMainRunLoop();
    return handle.task_->result();
}

/// The same for a callable that returns a task.
template <TaskFunction Function>
auto runBlocking(Function&& function) {
    return runBlocking(ownedTask<std::decay_t<Function>>(std::forward<Function>(function)));
}

}  // namespace corvane
