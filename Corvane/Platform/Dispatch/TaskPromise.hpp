#pragma once

#include <concepts>
#include <coroutine>
#include <cstddef>
#include <exception>
#include <optional>
#include <source_location>
#include <type_traits>
#include <utility>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>

// What the coroutines of tasks are made of. Users of tasks need nothing of it by name.

namespace corvane {

class Actor;
template <class T = void>
class Task;
template <class T>
class TaskAwaiter;

/// Stops the process: a task is used that was moved from, awaited or started before.
[[noreturn]] CORVANE_EXPORT void reportEmptyTask(std::source_location where = std::source_location::current());

/// Ends a task that was never started, and the tasks that it was given, on a bounded stack, however long the chain.
CORVANE_EXPORT void endUnstartedTask(std::coroutine_handle<> task) noexcept;

/// What the promises of all tasks share.
class CORVANE_EXPORT TaskPromiseBase {
  public:
    TaskPromiseBase() = default;

    /// A coroutine whose first parameter is an actor, be it `*this`, runs on that actor.
    template <class First, class... Others>
        requires requires { sizeof(std::remove_cvref_t<First>); } &&
                 std::derived_from<std::remove_cvref_t<First>, Actor>
    explicit TaskPromiseBase(const First& actor, const Others&...) {
        bind(actor.executor());
    }

    TaskPromiseBase(const TaskPromiseBase&) = delete;
    TaskPromiseBase& operator=(const TaskPromiseBase&) = delete;

    static void* operator new(std::size_t size) { return TaskFrames::take(size); }

    static void operator delete(void* frame, std::size_t size) noexcept { TaskFrames::giveBack(frame, size); }

    std::suspend_always initial_suspend() const noexcept { return {}; }

    struct End : std::suspend_always {
        template <std::derived_from<TaskPromiseBase> Promise>
        void await_suspend(std::coroutine_handle<Promise> task) const noexcept {
            static_cast<TaskPromiseBase&>(task.promise()).end();
        }
    };

    End final_suspend() const noexcept { return {}; }

    template <class Pause>
    class PauseAwaiter {
      public:
        explicit PauseAwaiter(Pause& pause) noexcept : pause_(&pause) {}

        bool await_ready() const { return pause_->isReady(); }

        template <std::derived_from<TaskPromiseBase> Promise>
        void await_suspend(std::coroutine_handle<Promise> task) const noexcept {
            pause_->begin(task.promise().context(), task);
        }

        decltype(auto) await_resume() const { return pause_->take(); }

      private:
        Pause* pause_;
    };

    void unhandled_exception() noexcept { failure_ = std::current_exception(); }

    template <class U>
    TaskAwaiter<U> await_transform(Task<U>&& task, std::source_location where = std::source_location::current()) const;

    /// Other awaitables would resume a task on a thread that is not its executor's: bridge them with
    /// `withContinuation`.
    template <std::derived_from<TaskPause> Pause>
    // NOLINTNEXTLINE(cppcoreguidelines-missing-std-forward): it lives in the frame until the task goes on.
    auto await_transform(Pause&& pause) const noexcept {
        return PauseAwaiter<Pause>(pause);
    }

    [[nodiscard]] TaskContext& context() const noexcept { return *context_; }

  protected:
    ~TaskPromiseBase() {
        if (role_ == Role::bound) delete static_cast<BoundTaskContext*>(context_);
    }

    void rethrowFailure() const {
        if (failure_) [[unlikely]]
            std::rethrow_exception(failure_);
    }

  private:
    template <class T>
    friend class Task;
    template <class T>
    friend class TaskAwaiter;

    /// Who goes on when the task has ended.
    enum class Role : unsigned char {
        /// The awaiting task, on whose stack this one runs.
        inlined,
        /// The awaiting task, which has suspended.
        detached,
        /// The awaiting task of another context. The promise owns the context.
        bound,
        /// Nobody: the context ends with the task.
        root,
    };

    void bind(TaskExecutor executor) {
        if (role_ == Role::bound) return;
        context_ = new BoundTaskContext(executor ? std::move(executor) : DispatchQueue::global());
        role_ = Role::bound;
    }

    void unbind() noexcept {
        role_ = Role::inlined;
        delete static_cast<BoundTaskContext*>(std::exchange(context_, nullptr));
    }

    void end() noexcept {
        if (role_ == Role::inlined) [[likely]]
            return;
        if (role_ == Role::detached) {
            context_->resumeNext(parent_);
        } else {
            context_->suspend(*context_);
        }
    }

    TaskContext* context_ = nullptr;
    std::coroutine_handle<> parent_;
    std::exception_ptr failure_;
    Role role_ = Role::inlined;
};

template <class T>
class TaskPromise final : public TaskPromiseBase {
    static_assert(std::is_object_v<T>, "return a value: a reference may not outlive what it refers to");

  public:
    using TaskPromiseBase::TaskPromiseBase;

    Task<T> get_return_object() noexcept { return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this)); }

    template <class U = T>
        requires std::constructible_from<T, U>
    void return_value(U&& value) {
        value_.emplace(std::forward<U>(value));
    }

    T take() {
        rethrowFailure();
        return std::move(*value_);
    }

  private:
    std::optional<T> value_;
};

template <>
class TaskPromise<void> final : public TaskPromiseBase {
  public:
    using TaskPromiseBase::TaskPromiseBase;

    Task<void> get_return_object() noexcept;

    void return_void() const noexcept {}

    void take() const { rethrowFailure(); }
};

}  // namespace corvane
