#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <Corvane/Concurrency/CommandByIsolationType.hpp>
#include <Corvane/Concurrency/CommandContext.hpp>
#include <Corvane/Concurrency/CommandID.hpp>
#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>

namespace corvane {

/// An action that takes a `T`, or nothing for `CommandWith<>`, with the thread it has to run on, an identity, and the
/// place where it was declared. Views keep it instead of a bare callback: two commands are equal when their identities
/// are, so a view can tell whether the action bound to it has changed, and each performance leaves a log line.
///
///     const CommandWith<> reload = commandOnMain({.name = "reload"}, [=] { page->reload(); });
///     const auto open = command<MatchID>([](const MatchID& match) -> Task<> { co_await load(match); });
///     open.perform(match);
///
/// An action that returns nothing is called; one that returns a `Task<>` is awaited. It gets the value as
/// `const T&`, valid until it has returned or its task has ended, and is itself kept until then, whatever becomes of
/// the command. An action for any thread may be called on several at once. Actions must not throw.
///
/// An immutable value whose copies share the action; any thread.
template <class T>
class CommandWith {
  public:
    using ID = CommandID;
    using Argument = CommandArgument<T>;

    /// A command whose action may run on any thread. Called with a name it is identified by that, and otherwise by the
    /// place of this call.
    template <class Action>
    [[nodiscard]] static CommandWith command(CommandOptions options, Action&& action,
                                             SourceFileContext source = SourceFileContext::current()) {
        return make<false>(std::move(options), std::forward<Action>(action), source);
    }

    template <class Action>
    [[nodiscard]] static CommandWith command(Action&& action, SourceFileContext source = SourceFileContext::current()) {
        return make<false>({}, std::forward<Action>(action), source);
    }

    /// A command whose action runs on the main thread.
    template <class Action>
    [[nodiscard]] static CommandWith commandOnMain(CommandOptions options, Action&& action,
                                                   SourceFileContext source = SourceFileContext::current()) {
        return make<true>(std::move(options), std::forward<Action>(action), source);
    }

    template <class Action>
    [[nodiscard]] static CommandWith commandOnMain(Action&& action,
                                                   SourceFileContext source = SourceFileContext::current()) {
        return make<true>({}, std::forward<Action>(action), source);
    }

    /// `command` without its argument: the same identity, place and thread, with `value` for every performance.
    template <class U>
        requires(std::is_void_v<T> && !std::is_void_v<U>)
    [[nodiscard]] static CommandWith wrapAction(const CommandWith<U>& command, std::type_identity_t<U> value) {
        const auto& isolation = command.commandWithIsolation_;
        return std::visit(
            [&](const auto& body) { return CommandWith({wrap(body, std::move(value)), isolation.isOnMain_}); },
            isolation.body_);
    }

    /// No command for none.
    template <class U>
        requires(std::is_void_v<T> && !std::is_void_v<U>)
    [[nodiscard]] static std::optional<CommandWith> wrapAction(const std::optional<CommandWith<U>>& command,
                                                               std::type_identity_t<U> value) {
        if (!command) return std::nullopt;
        return wrapAction(*command, std::move(value));
    }

    [[nodiscard]] const ID& id() const noexcept { return id_; }

    /// Where the command was declared.
    [[nodiscard]] const SourceFileContext& source() const noexcept { return commandWithIsolation_.context().source; }

    [[nodiscard]] const CommandByIsolationType<T>& commandWithIsolation() const noexcept {
        return commandWithIsolation_;
    }

    /// Starts the action and forgets it. An action for any thread that is no coroutine runs before this returns, and so
    /// does one for the main thread when this is called there; what remains is queued to where it runs.
    void perform(Argument value, SourceFileContext performedAt = SourceFileContext::current()) const
        requires(!std::is_void_v<T>)
    {
        start(std::move(value), performedAt);
    }

    void perform(SourceFileContext performedAt = SourceFileContext::current()) const
        requires std::is_void_v<T>
    {
        start({}, performedAt);
    }

    /// Runs the action where it belongs, on the awaiting task's executor if that may be any, and waits for its end.
    /// Cancelling the awaiting task cancels that of the action.
    [[nodiscard]] Task<> performAndWait(Argument value,
                                        SourceFileContext performedAt = SourceFileContext::current()) const
        requires(!std::is_void_v<T>)
    {
        return await(std::move(value), performedAt);
    }

    [[nodiscard]] Task<> performAndWait(SourceFileContext performedAt = SourceFileContext::current()) const
        requires std::is_void_v<T>
    {
        return await({}, performedAt);
    }

    [[nodiscard]] std::string debugDescription() const {
        return "Command with ID: " + id_.description() + ", declared in " + source().description();
    }

    /// Deliberately compares the identities alone.
    friend bool operator==(const CommandWith& a, const CommandWith& b) { return a.id_ == b.id_; }

  private:
    template <class U>
    friend class CommandWith;

    using Isolation = CommandByIsolationType<T>;
    using Road = detail::CommandRoad;

    explicit CommandWith(Isolation isolation)
        : id_(isolation.context().id()), commandWithIsolation_(std::move(isolation)) {}

    template <bool isOnMain, class Action>
    static CommandWith make(CommandOptions options, Action&& action, const SourceFileContext& source) {
        using Callable = std::decay_t<Action>;
        constexpr bool isCallable =
            std::is_void_v<T> ? std::is_invocable_v<Callable&> : std::is_invocable_v<Callable&, const Argument&>;
        static_assert(isCallable,
                      "A command's action is called with the command's argument, as const T&, or with "
                      "nothing if the command takes none");
        if constexpr (isCallable) {
            Callable given(std::forward<Action>(action));
            auto unified = [callable =
                                std::move(given)]([[maybe_unused]] const Argument& value) mutable -> decltype(auto) {
                if constexpr (std::is_void_v<T>) {
                    return callable();
                } else {
                    return std::invoke(callable, value);
                }
            };
            using Result = std::invoke_result_t<decltype(unified)&, const Argument&>;
            constexpr bool isAsync = std::is_same_v<Result, Task<>>;
            static_assert(isAsync || std::is_void_v<Result>,
                          "A command's action returns nothing (void), or a Task<> to be awaited");
            if constexpr (isAsync || std::is_void_v<Result>) {
                return CommandWith(
                    {std::make_shared<CommandBody<Result, T>>(
                         CommandContext{std::move(options.name), options.isSilent, source}, std::move(unified)),
                     isOnMain});
            }
        }
    }

    template <class Result, class U>
    static std::shared_ptr<CommandBody<Result, void>> wrap(const std::shared_ptr<CommandBody<Result, U>>& body,
                                                           U value) {
        return std::make_shared<CommandBody<Result, void>>(
            body->context, [body, value = std::move(value)](const NoArgument&) { return body->action(value); });
    }

    // What runs holds what it needs: the command may end meanwhile.

    static void run(Road road, const SyncCommandBody<T>& body, const Argument& value, const SourceFileContext& site) {
        detail::logUnlessSilent(road, body->context, site);
        body->action(value);
    }

    static Task<> drive(Road road, SyncCommandBody<T> body, Argument value, SourceFileContext site) {
        run(road, body, value, site);
        co_return;
    }

    static Task<> drive(Road road, AsyncCommandBody<T> body, Argument value, SourceFileContext site) {
        detail::logUnlessSilent(road, body->context, site);
        co_await body->action(value);
    }

    void start(Argument&& value, const SourceFileContext& site) const {
        const auto& [bodyOfAnyKind, isOnMain] = commandWithIsolation_;
        if (const auto* async = std::get_if<AsyncCommandBody<T>>(&bodyOfAnyKind)) {
            spawn(drive(isOnMain ? Road::atMainActorTask : Road::atCooperativeTask, *async, std::move(value), site),
                  {.executor = isOnMain ? TaskExecutor(DispatchQueue::main()) : TaskExecutor()});
            return;
        }
        const SyncCommandBody<T> body = std::get<SyncCommandBody<T>>(bodyOfAnyKind);
        if (!isOnMain) {
            run(Road::sendable, body, value, site);
        } else if (Thread::isMainThread()) {
            Thread::assumeMainExecutor();
            run(Road::directlyOnMainThread, body, value, site);
        } else {
            DispatchQueue::main().async(
                [body, value = std::move(value), site] { run(Road::dispatchedToMainThread, body, value, site); });
        }
    }

    [[nodiscard]] Task<> await(Argument&& value, const SourceFileContext& site) const {
        const auto& [bodyOfAnyKind, isOnMain] = commandWithIsolation_;
        return std::visit(
            [&, onMainThread = isOnMain]<class Body>(const Body& body) {
                constexpr bool isAsync = std::is_same_v<Body, AsyncCommandBody<T>>;
                constexpr Road anywhere = isAsync ? Road::atCooperativePool : Road::sendable;
                Task<> task = drive(onMainThread ? Road::atMainActor : anywhere, body, std::move(value), site);
                if (onMainThread) return onMain(std::move(task));
                return isAsync ? on(TaskExecutor(), std::move(task)) : std::move(task);
            },
            bodyOfAnyKind);
    }

    ID id_;
    Isolation commandWithIsolation_;
};

/// A command whose action takes nothing.
using Command = CommandWith<>;

/// `CommandWith<T>::command`.
template <class T = void, class Action>
[[nodiscard]] CommandWith<T> command(CommandOptions options, Action&& action,
                                     SourceFileContext source = SourceFileContext::current()) {
    return CommandWith<T>::command(std::move(options), std::forward<Action>(action), source);
}

template <class T = void, class Action>
[[nodiscard]] CommandWith<T> command(Action&& action, SourceFileContext source = SourceFileContext::current()) {
    return CommandWith<T>::command(std::forward<Action>(action), source);
}

/// `CommandWith<T>::commandOnMain`.
template <class T = void, class Action>
[[nodiscard]] CommandWith<T> commandOnMain(CommandOptions options, Action&& action,
                                           SourceFileContext source = SourceFileContext::current()) {
    return CommandWith<T>::commandOnMain(std::move(options), std::forward<Action>(action), source);
}

template <class T = void, class Action>
[[nodiscard]] CommandWith<T> commandOnMain(Action&& action, SourceFileContext source = SourceFileContext::current()) {
    return CommandWith<T>::commandOnMain(std::forward<Action>(action), source);
}

}  // namespace corvane
