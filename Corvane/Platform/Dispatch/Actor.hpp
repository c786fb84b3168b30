#pragma once

#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dispatch/DispatchQoS.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

namespace corvane {

/// Base of a class whose operations run one at a time, on a serial executor of its own.
///
/// Each coroutine that is a member of the class, or whose first parameter is a reference to an actor, is bound to the
/// actor's executor, wherever it is awaited. The state needs no lock then:
///
///     class Tally : public Actor {
///       public:
///         Tally() : Actor("tally") {}
///         Task<int> add(int points) { co_return total_ += points; }
///
///       private:
///         int total_ = 0;
///     };
///
/// While an operation is suspended in a `co_await` another one may run, so what it knew of the state may have changed
/// after it. An operation that awaits another one of the same actor goes on directly, without a turn of the queue.
/// What a member shall do outside the actor goes into a lambda or a static function.
///
/// The actor must live until its operations have ended; the executor lives as long as somebody needs it.
class CORVANE_EXPORT Actor {
  public:
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

    [[nodiscard]] const TaskExecutor& executor() const noexcept { return executor_; }

  protected:
    /// `label` names the queue. An operation awaited by a task of a higher class than `qosClass` is lifted to it.
    explicit Actor(std::string label, QoSClass qosClass = QoSClass::unspecified)
        : executor_(DispatchQueue::serial(std::move(label), {qosClass, 0})) {}

    /// Runs the operations on `executor`, which may be shared with other actors.
    explicit Actor(TaskExecutor executor) noexcept : executor_(std::move(executor)) {}

    ~Actor() = default;

  private:
    TaskExecutor executor_;
};

}  // namespace corvane
