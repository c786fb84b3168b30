#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include <Corvane/Platform/Private/FileDescriptor.hpp>
#include <Corvane/Testing/Private/LoopbackConnection.hpp>
#include <Corvane/Testing/Private/LoopbackListener.hpp>
#include <Corvane/Testing/Private/LoopbackLog.hpp>
#include <Corvane/Testing/Private/LoopbackRoutes.hpp>

namespace corvane::testing {

/// The server's loop: one thread that waits on the listener, the connections and a wake-up. Shared by the
/// server and the exchanges it handed out, which may outlive the server. What is not said otherwise is for
/// any thread.
class LoopbackEngine final : public std::enable_shared_from_this<LoopbackEngine>, private LoopbackConnection::Host {
  public:
    using Action = std::function<void(LoopbackConnection&)>;

    LoopbackEngine();

    /// Serves until `stop`; the server's thread.
    void run();
    void stop();

    /// Has `action` done on the loop's thread to a connection whose exchange `exchange` is held back; nothing
    /// happens when that is not so any more.
    void perform(std::uint64_t connection, std::uint64_t exchange, Action action);

    void closeIdleConnections();
    void failNextConnection(LoopbackFault fault);
    void setListening(bool isListening);

    [[nodiscard]] std::uint16_t port() const noexcept { return port_; }

    [[nodiscard]] LoopbackRoutes& routes() noexcept { return routes_; }

    [[nodiscard]] LoopbackLog& log() noexcept { return log_; }

  private:
    LoopbackResponse answer(const LoopbackRequest& request, std::uint64_t exchange) override;

    void post(std::function<void()> command);
    void wake() noexcept;
    void watch(int descriptor, std::uint64_t tag, std::uint32_t interest, int operation) noexcept;
    void acceptWaiting();
    void runCommands();
    void serve(std::uint64_t number, std::uint32_t events);
    /// Takes note of what `connection` now waits for, or destroys it when it is over.
    void settle(std::uint64_t number, LoopbackConnection& connection);

    LoopbackRoutes routes_;
    LoopbackLog log_;
    FileDescriptor poll_;
    FileDescriptor wakeUp_;

    std::mutex mutex_;
    LoopbackListener listener_;
    std::deque<LoopbackFault> faults_;
    std::vector<std::function<void()>> commands_;
    bool isStopping_ = false;

    const std::uint16_t port_;
    /// The loop's thread only.
    std::unordered_map<std::uint64_t, LoopbackConnection> connections_;
    std::uint64_t lastConnection_ = 0;
};

}  // namespace corvane::testing
