#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include <Corvane/Platform/HTTP/Private/DataTask.hpp>
#include <Corvane/Platform/Network/NetworkPath.hpp>

namespace corvane::http {

/// Where a session's tasks wait for the general internet. It watches the network only while a task waits.
class ConnectivityGate final : public std::enable_shared_from_this<ConnectivityGate> {
  public:
    ConnectivityGate() = default;
    ~ConnectivityGate();
    ConnectivityGate(const ConnectivityGate&) = delete;
    ConnectivityGate& operator=(const ConnectivityGate&) = delete;

    // For the network thread.

    /// Whether a request may be sent to `host` now: when the general internet can be reached, when the host is this
    /// machine or an address that can be, and when none of this can be found out.
    [[nodiscard]] bool admits(const std::string& host);

    /// Lets the network thread know (`NetworkThread::connectivityReturned`) when the general internet can be reached,
    /// at once if it can by now. False when it will not hear of it: then there is nothing to wait for.
    [[nodiscard]] bool hold(const std::shared_ptr<DataTask>& task);
    void withdraw(const DataTask& task);

  private:
    class Callback;

    /// Any thread.
    void openIfUsable();
    void stopWatching() noexcept;

    std::mutex mutex_;
    std::shared_ptr<NetworkPath> internet_;
    /// The tasks live in the network thread's books.
    std::vector<std::weak_ptr<DataTask>> held_;
};

}  // namespace corvane::http
