#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Platform/Network/NetworkPath.hpp>
#include <Corvane/Platform/Network/Private/HostLookups.hpp>
#include <Corvane/Platform/Network/Private/PathMonitor.hpp>

namespace corvane::network {

/// The path that the kernel is asked about.
class KernelPath final : public NetworkPath, public HostLookupClient, public std::enable_shared_from_this<KernelPath> {
  public:
    [[nodiscard]] static Result<std::shared_ptr<NetworkPath>> make(std::string hostName,
                                                                   PathMonitor& monitor = PathMonitor::shared());
    [[nodiscard]] static Result<std::shared_ptr<NetworkPath>> make(const SocketAddress& address,
                                                                   PathMonitor& monitor = PathMonitor::shared());

    ~KernelPath() override;

    Result<void> setCallback(std::shared_ptr<NetworkPathCallback> callback) override;
    Result<void> setDispatchQueue(std::shared_ptr<DispatchQueue> queue) override;
    [[nodiscard]] Result<NetworkFlags> flags() override;
    [[nodiscard]] std::string description() const override;

    /// For the monitor: looks again, soon and on the path's queue.
    void networkChanged();

    void hostLookedUp(HostAnswer answer) override;

  private:
    KernelPath(std::string hostName, std::vector<SocketAddress> addresses, PathMonitor& monitor);

    // With the lock held.
    Result<void> watch(bool watches);
    void installed() noexcept;
    void lookUp();
    void scheduleCheck();
    void scheduleRecheck();
    void scheduleRetry();

    void check(std::uint64_t installation);

    /// Empty for a path to an address.
    const std::string hostName_;
    PathMonitor& monitor_;

    mutable std::mutex mutex_;
    std::vector<SocketAddress> addresses_;
    std::shared_ptr<NetworkPathCallback> callback_;
    std::shared_ptr<DispatchQueue> queue_;
    bool isWatched_ = false;

    /// Counts the changes of callback and queue: what was under way for former ones has no effect.
    std::uint64_t installation_ = 0;
    std::optional<NetworkFlags> reported_;
    bool isChecking_ = false;
    /// Whether something has changed since the check under way was given to the queue.
    bool isCheckOutdated_ = false;
    bool isRecheckScheduled_ = false;
    /// In seconds, until the next look when the kernel could not be asked.
    double recheckDelay_ = 1;

    bool isLookingUp_ = false;
    bool isLookupOutdated_ = false;
    /// Counts the answers of look-ups: a retry is of the last one, or has no effect.
    std::uint64_t answers_ = 0;
    /// How long the next retry of a failed look-up waits, in seconds.
    double retryDelay_ = 1;
};

}  // namespace corvane::network
