#pragma once

#include <atomic>
#include <concepts>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <source_location>
#include <type_traits>
#include <utility>
#include <variant>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/Dispatch/TaskContext.hpp>

namespace corvane {

/// A task that waits for its continuation to be resumed, as far as that does not depend on the result.
class CORVANE_EXPORT ContinuationPause : public TaskPause {
  public:
    std::coroutine_handle<> commit() noexcept override;

  protected:
    ContinuationPause() = default;
    ~ContinuationPause() = default;

    /// The result is there. The task, and this, may be gone when it returns. Any thread.
    void resume() noexcept;

    [[nodiscard]] bool isResumed() const noexcept { return phase_.load(std::memory_order_acquire) == Phase::resumed; }

  private:
    enum class Phase : unsigned char { running, suspended, resumed };

    std::atomic<Phase> phase_ = Phase::running;
};

/// What the copies of a continuation share: who resumes the task.
class CORVANE_EXPORT ContinuationTicket {
  public:
    explicit ContinuationTicket(std::source_location where) noexcept : where_(where) {}

    /// Stops the process when nobody has resumed the task.
    ~ContinuationTicket();
    ContinuationTicket(const ContinuationTicket&) = delete;
    ContinuationTicket& operator=(const ContinuationTicket&) = delete;

    /// Whether the caller is the one to resume the task.
    [[nodiscard]] bool claim() noexcept { return !isClaimed_.exchange(true, std::memory_order_acq_rel); }

    [[noreturn]] void reportSecondClaim() const;

  private:
    std::atomic<bool> isClaimed_ = false;
    std::source_location where_;
};

/// The result of a continuation on its way to the waiting task.
template <class T>
class ContinuationResult : public ContinuationPause {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    template <class... Args>
    void set(Args&&... value) {
        value_.emplace(std::forward<Args>(value)...);
        resume();
    }

    T take() {
        if constexpr (!std::is_void_v<T>) return std::move(*value_);
    }

  protected:
    ~ContinuationResult() = default;

  private:
    std::optional<Value> value_;
};

/// The right, and the duty, to let a waiting task go on, once; made by `withContinuation`. Copies stand for the same
/// task, so that it fits into a callable that is copied. Any thread.
///
/// It is a programming error to resume a task twice, or to let go of the last copy without having resumed the task,
/// which would wait for ever: the process is stopped with a message that names the place of the `withContinuation`.
template <class T>
class Continuation {
  public:
    /// Gives the waiting task its result, `T` or what `T` is made from; it goes on on its own executor, not in this
    /// call.
    template <class... Args>
        requires std::constructible_from<typename ContinuationResult<T>::Value, Args...>
    void resume(Args&&... value) const {
        if (!tryResume(std::forward<Args>(value)...)) ticket_->reportSecondClaim();
    }

    /// For callbacks that race, such as an answer and its timeout: the first resumes the task and is given true, what
    /// comes later does nothing.
    template <class... Args>
        requires std::constructible_from<typename ContinuationResult<T>::Value, Args...>
    bool tryResume(Args&&... value) const {
        if (!ticket_->claim()) return false;
        result_->set(std::forward<Args>(value)...);
        return true;
    }

  private:
    template <class U, class Body>
    friend class ContinuationBody;

    Continuation(ContinuationResult<T>& result, std::source_location where)
        : ticket_(std::make_shared<ContinuationTicket>(where)), result_(&result) {}

    std::shared_ptr<ContinuationTicket> ticket_;
    ContinuationResult<T>* result_;
};

template <class T, class Body>
class ContinuationBody final : public ContinuationResult<T> {
  public:
    ContinuationBody(Body&& body, std::source_location where) : body_(std::forward<Body>(body)), where_(where) {}

    bool isReady() {
        std::invoke(body_, Continuation<T>(*this, where_));
        return this->isResumed();
    }

  private:
    Body body_;
    std::source_location where_;
};

/// Waits for a callback: `co_await withContinuation<T>(body)` runs `body(Continuation<T>)` at once, on the task's
/// executor, suspends the task until the continuation is resumed, from whatever thread, be it before `body` has
/// returned, and gives what it was resumed with. T may be void. Whether the wait ends when the task is cancelled is for
/// `body` to arrange, with `Task<>::stopToken()`. `body` must not throw.
///
///     const bool isDenied = co_await withContinuation<bool>([&](Continuation<bool> continuation) {
///         askUser(question, [continuation](bool answer) { continuation.resume(!answer); });
///     });
template <class T, std::invocable<Continuation<T>> Body>
[[nodiscard]] ContinuationBody<T, Body> withContinuation(Body&& body,
                                                         std::source_location where = std::source_location::current()) {
    return ContinuationBody<T, Body>(std::forward<Body>(body), where);
}

}  // namespace corvane
