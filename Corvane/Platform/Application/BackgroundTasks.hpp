#pragma once

#include <functional>
#include <memory>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Application/BackgroundTaskHost.hpp>

namespace corvane {

class BackgroundTaskRegister;

/// Work that should be finished before the process goes away: begun by name, ended by identifier.
///
///     const auto task = BackgroundTasks::begin("SaveDraft", [] { giveUp(); });
///     save([task] { BackgroundTasks::end(task); });
///     ...
///     BackgroundTasks::waitForRunning(5);  // at the end of main()
///
/// All operations but `waitForRunning` may be called on any thread.
class CORVANE_EXPORT BackgroundTasks {
  public:
    using Identifier = BackgroundTaskHost::Identifier;
    static constexpr Identifier invalid = BackgroundTaskHost::invalid;

    BackgroundTasks() = delete;

    /// `BackgroundTaskHost::begin` of the host in force.
    static Identifier begin(std::string name, std::function<void()> expirationHandler);

    /// `BackgroundTaskHost::end` of the host in force.
    static bool end(Identifier identifier);

    /// Puts a host of the application's own in force, or the standard register again when it is null. To be called
    /// before the first task begins: a task must be ended with the host that began it.
    static void setHost(std::shared_ptr<BackgroundTaskHost> host);

    /// The host in force unless the application has set one of its own.
    [[nodiscard]] static BackgroundTaskRegister& standardRegister();

    /// `BackgroundTaskRegister::waitForRunning` of the standard register: lets running tasks end before the process
    /// does. For the main thread only.
    static bool waitForRunning(double seconds);
};

}  // namespace corvane
