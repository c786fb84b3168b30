#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// Who keeps the process alive while work is being finished: `BackgroundTaskRegister`, unless the application has a
/// way of its own, such as an inhibitor lock of the session.
class CORVANE_EXPORT BackgroundTaskHost {
  public:
    /// Names one running background task; never given twice.
    using Identifier = std::uint64_t;

    /// The answer of a host that cannot begin a task now. Nothing has to be ended then.
    static constexpr Identifier invalid = 0;

    BackgroundTaskHost() = default;
    virtual ~BackgroundTaskHost() = default;
    BackgroundTaskHost(const BackgroundTaskHost&) = delete;
    BackgroundTaskHost& operator=(const BackgroundTaskHost&) = delete;

    /// Begins a task. `expirationHandler`, which may be empty, is called on the main thread, at most once, when the
    /// process cannot wait any longer for a task that has not ended; it should stop the work and end the task.
    virtual Identifier begin(std::string name, std::function<void()> expirationHandler) = 0;

    /// Ends a task; false for one that has ended already or was never begun.
    virtual bool end(Identifier identifier) = 0;
};

}  // namespace corvane
