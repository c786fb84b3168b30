#pragma once

#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include <Corvane/Concurrency/CommandContext.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>
#include <Corvane/Platform/UniqueFunction.hpp>

namespace corvane {

template <class T = void>
class CommandWith;

/// What a command without an argument is performed with.
using NoArgument = std::monostate;

template <class T>
using CommandArgument = std::conditional_t<std::is_void_v<T>, NoArgument, T>;

/// An action with what accompanies it; the copies of a command share one, as do the performances that are running.
template <class Result, class T>
struct CommandBody {
    CommandContext context;
    UniqueFunction<Result(const CommandArgument<T>&)> action;
};

template <class T>
using SyncCommandBody = std::shared_ptr<CommandBody<void, T>>;

template <class T>
using AsyncCommandBody = std::shared_ptr<CommandBody<Task<>, T>>;

/// A command's action together with where it has to run.
template <class T>
class CommandByIsolationType {
  public:
    using Body = std::variant<SyncCommandBody<T>, AsyncCommandBody<T>>;

    /// A callback that may be called on any thread.
    [[nodiscard]] static CommandByIsolationType sendable(SyncCommandBody<T> body) { return {std::move(body), false}; }

    /// A callback for the main thread.
    [[nodiscard]] static CommandByIsolationType mainActor(SyncCommandBody<T> body) { return {std::move(body), true}; }

    /// A coroutine on the shared pool.
    [[nodiscard]] static CommandByIsolationType asyncOnCooperativePool(AsyncCommandBody<T> body) {
        return {std::move(body), false};
    }

    /// A coroutine on the main thread.
    [[nodiscard]] static CommandByIsolationType asyncOnMainActor(AsyncCommandBody<T> body) {
        return {std::move(body), true};
    }

    [[nodiscard]] bool isSendable() const noexcept { return !isAsync() && !isOnMain_; }

    [[nodiscard]] bool isMainActor() const noexcept { return !isAsync() && isOnMain_; }

    [[nodiscard]] bool isAsyncOnCooperativePool() const noexcept { return isAsync() && !isOnMain_; }

    [[nodiscard]] bool isAsyncOnMainActor() const noexcept { return isAsync() && isOnMain_; }

    [[nodiscard]] const CommandContext& context() const noexcept {
        return std::visit([](const auto& body) -> const CommandContext& { return body->context; }, body_);
    }

    /// The name of the case.
    [[nodiscard]] std::string_view description() const noexcept {
        if (isAsync()) return isOnMain_ ? "asyncOnMainActor" : "asyncOnCooperativePool";
        return isOnMain_ ? "mainActor" : "sendable";
    }

  private:
    template <class U>
    friend class CommandWith;

    CommandByIsolationType(Body body, bool isOnMain) noexcept : body_(std::move(body)), isOnMain_(isOnMain) {}

    [[nodiscard]] bool isAsync() const noexcept { return std::holds_alternative<AsyncCommandBody<T>>(body_); }

    Body body_;
    bool isOnMain_;
};

}  // namespace corvane
