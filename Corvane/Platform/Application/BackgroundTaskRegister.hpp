#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Application/BackgroundTaskHost.hpp>

namespace corvane {

/// The background tasks that are running, and the wait for their end. A task once begun stays listed until it is
/// ended or expires.
///
/// All operations but `waitForRunning` may be called on any thread.
class CORVANE_EXPORT BackgroundTaskRegister final : public BackgroundTaskHost {
  public:
    Identifier begin(std::string name, std::function<void()> expirationHandler) override;
    bool end(Identifier identifier) override;

    /// The names of the tasks running now, in the order they were begun.
    [[nodiscard]] std::vector<std::string> runningNames() const;

    /// Runs the main run loop until no task is running, those begun meanwhile included, but not longer than `seconds`
    /// on the clock in force, and not beyond a `RunLoop::stop` of that loop. The tasks left then expire: each is called
    /// to stop, in the order they were begun, and counts as ended afterwards. Returns whether all ended by themselves.
    /// For the main thread only, when the application is about to exit.
    bool waitForRunning(double seconds);

  private:
    struct Task {
        std::string name;
        std::function<void()> expirationHandler;
    };

    [[nodiscard]] bool isEmpty() const;
    void expireAll();

    mutable std::mutex mutex_;
    std::map<Identifier, Task> tasks_;
    Identifier last_ = invalid;
    int waits_ = 0;
};

}  // namespace corvane
