#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include <Corvane/Testing/LoopbackExchange.hpp>
#include <Corvane/Testing/LoopbackRequest.hpp>

namespace corvane::testing {

/// What happened at a server, and waiting for it to happen. Thread-safe; the waits give up after `patience`.
class LoopbackLog {
  public:
    using Patience = std::chrono::milliseconds;

    void connectionOpened(std::uint64_t connection);
    void connectionClosed(std::uint64_t connection);
    void requestArrived(LoopbackRequest request);
    void exchangeHeld(LoopbackExchange exchange);

    /// Lets go of exchanges that nobody asked for; they keep the engine alive.
    void forgetHeldExchanges();

    [[nodiscard]] std::vector<LoopbackRequest> requests() const;
    [[nodiscard]] std::size_t requestCount() const;
    [[nodiscard]] std::size_t connectionsAccepted() const;
    [[nodiscard]] std::size_t connectionsOpen() const;

    [[nodiscard]] bool waitForRequests(std::size_t count, Patience patience) const;
    [[nodiscard]] bool waitForOpenConnections(std::size_t count, Patience patience) const;
    [[nodiscard]] bool waitForEndOf(std::uint64_t connection, Patience patience) const;
    [[nodiscard]] std::optional<LoopbackExchange> waitForHeldExchange(Patience patience);

  private:
    template <class Condition>
    bool waitUntil(std::unique_lock<std::mutex>& lock, Patience patience, Condition condition) const;

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<LoopbackRequest> requests_;
    std::deque<LoopbackExchange> held_;
    std::set<std::uint64_t> open_;
    std::size_t accepted_ = 0;
};

}  // namespace corvane::testing
