#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Networking/API/Connection.hpp>
#include <Corvane/Networking/API/ReachabilityError.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Network/NetworkPath.hpp>
#include <Corvane/Platform/Notifications/NotificationCenter.hpp>
#include <Corvane/Platform/UnfairLock.hpp>

namespace corvane {

/// Posted by a `Reachability`, with itself as the object, when its flags have changed.
inline constexpr NotificationName reachabilityChanged{"reachabilityChanged"};

/// An older name, for those who still observe it; nothing is posted under it.
inline constexpr NotificationName ReachabilityChangedNotification{"ReachabilityChangedNotification"};

/// Watches whether a host, or the general internet, can be reached, and over which kind of link.
///
///     const auto reachability = Reachability::make().value();
///     reachability->setWhenReachable([](Reachability& now) { banner.show(now.currentReachabilityString()); });
///     reachability->setWhenUnreachable([](Reachability&) { banner.show("offline"); });
///     if (auto started = reachability->startNotifier(); !started) log(started.error().description());
///
/// What it says is what the kernel would do with a packet, not whether anybody answers: a request is worth trying
/// while it says `unavailable`, too.
///
/// After each change of the flags, identical ones not counting, it calls `whenReachable` or `whenUnreachable` and
/// posts `reachabilityChanged`: on the notification queue, or, when that is null, directly on the reachability queue.
/// The first flags that are read are a change, too. What a callback finds is the connection as it is by then.
///
/// All operations may be called on any thread and inside the callbacks. Nothing but its owners keeps it alive: it may
/// end at any time, inside a callback, too, which ends the watching and waits for nothing. A callback that has begun
/// on another thread keeps it alive until it has returned.
class CORVANE_EXPORT Reachability : public std::enable_shared_from_this<Reachability> {
  public:
    using Callback = std::function<void(Reachability&)>;

    /// Where a `Reachability` works and calls back.
    struct Queues {
        /// Of the reachability queue.
        DispatchQoS queueQoS{};
        /// What the reachability queue runs on; null for the global queue of its class. `startNotifier`, and a
        /// `connection` that has to be read, wait for the reachability queue, so they must not be called on this one.
        std::shared_ptr<DispatchQueue> targetQueue = nullptr;
        /// Where callbacks and notifications come; null for the reachability queue itself.
        std::shared_ptr<DispatchQueue> notificationQueue = DispatchQueue::main().shared_from_this();
    };

    /// Watches the general internet: the zero IPv4 address.
    [[nodiscard]] static std::expected<std::shared_ptr<Reachability>, ReachabilityError> make(
        Queues queues = defaultQueues());

    /// Watches a host; its name is looked up in the background.
    [[nodiscard]] static std::expected<std::shared_ptr<Reachability>, ReachabilityError> make(
        std::string_view hostname, Queues queues = defaultQueues());

    /// Watches a path that exists, which is not null. Nobody else should set its callback or queue.
    [[nodiscard]] static std::shared_ptr<Reachability> make(std::shared_ptr<NetworkPath> reachabilityRef,
                                                            Queues queues = defaultQueues());

    /// Ends the watching.
    ~Reachability();
    Reachability(const Reachability&) = delete;
    Reachability& operator=(const Reachability&) = delete;

    /// Starts the watching and reads the flags; does nothing when it was started before. On failure nothing is
    /// left installed. The callbacks may be called before this returns.
    std::expected<void, ReachabilityError> startNotifier();

    /// Ends the watching. A report that is on its way may still arrive.
    void stopNotifier();

    /// Between a `startNotifier` that has succeeded and what ends the watching: `stopNotifier`, or flags that could
    /// not be read.
    [[nodiscard]] bool notifierRunning() const;

    /// How the target can be reached by the flags at hand. When there are none they are read first, on the
    /// reachability queue, and the caller waits; a failure to read them means `unavailable`. To need that on the
    /// reachability queue, which would wait for itself, is a programming error: it is reported with `context`, and the
    /// answer is `unavailable`. There are always flags at hand in the callbacks.
    [[nodiscard]] Connection connection(SourceFileContext context = SourceFileContext::current());

    /// The same under its older name.
    [[nodiscard]] Connection currentReachabilityStatus(SourceFileContext context = SourceFileContext::current());

    /// Whether the connection is not `unavailable`.
    [[nodiscard]] bool isReachable(SourceFileContext context = SourceFileContext::current());
    /// Whether the connection is `cellular`.
    [[nodiscard]] bool isReachableViaWWAN(SourceFileContext context = SourceFileContext::current());
    /// Whether the connection is `wifi`.
    [[nodiscard]] bool isReachableViaWiFi(SourceFileContext context = SourceFileContext::current());
    /// The connection's description, to show a user.
    [[nodiscard]] std::string_view currentReachabilityString(SourceFileContext context = SourceFileContext::current());

    /// The flags at hand as `NetworkFlags::description` has them, "unavailable flags" when there are none.
    [[nodiscard]] std::string description() const;

    /// The last flags read or reported.
    [[nodiscard]] std::optional<NetworkFlags> flags() const;

    /// Called after a change when the connection is not `unavailable`.
    [[nodiscard]] Callback whenReachable() const;
    void setWhenReachable(Callback callback);

    /// Called after a change when the connection is `unavailable`.
    [[nodiscard]] Callback whenUnreachable() const;
    void setWhenUnreachable(Callback callback);

    /// Whether a cellular link counts as a connection; it does at first.
    [[nodiscard]] bool allowsCellularConnection() const;
    void setAllowsCellularConnection(bool allows);

    /// Where changes are posted: the default center at first.
    [[nodiscard]] std::shared_ptr<NotificationCenter> notificationCenter() const;
    /// Null for the default center.
    void setNotificationCenter(std::shared_ptr<NotificationCenter> center);

    /// Kept for old callers; neither has a say in anything.
    static constexpr bool reachableOnWWAN = true;
    static constexpr bool isRunningOnDevice = true;

    [[nodiscard]] const std::shared_ptr<NetworkPath>& reachabilityRef() const noexcept { return path_; }

    /// The queue on which flags are read and reported.
    [[nodiscard]] const std::shared_ptr<DispatchQueue>& reachabilitySerialQueue() const noexcept { return queue_; }

    /// Null when callbacks come on the reachability queue.
    [[nodiscard]] const std::shared_ptr<DispatchQueue>& notificationQueue() const noexcept {
        return notificationQueue_;
    }

  private:
    friend class ReachabilityWeakifier;

    enum class State : unsigned char { stopped, starting, running };

    /// Shared, so that a callback can be replaced while it runs.
    using Slot = std::shared_ptr<const Callback>;

    Reachability(std::shared_ptr<NetworkPath> path, Queues queues);

    [[nodiscard]] static Queues defaultQueues() { return {}; }

    /// On the reachability queue.
    std::expected<void, ReachabilityError> readFlags();
    void take(NetworkFlags flags);
    /// Where callbacks come.
    void notify();
    void uninstall();
    [[nodiscard]] Callback callbackIn(const Slot& slot) const;
    void setCallbackIn(Slot& slot, Callback callback);

    const std::shared_ptr<NetworkPath> path_;
    const std::shared_ptr<DispatchQueue> queue_;
    const std::shared_ptr<DispatchQueue> notificationQueue_;

    /// Guards what is installed in the path, and what we say about it.
    mutable std::mutex installation_;
    State state_ = State::stopped;
    /// Counts the starts: one that was stopped while it read the flags does not come to run.
    std::uint64_t starts_ = 0;

    mutable UnfairLock lock_;
    std::optional<NetworkFlags> flags_;
    Slot whenReachable_;
    Slot whenUnreachable_;
    std::shared_ptr<NotificationCenter> center_;
    bool allowsCellular_ = true;
};

}  // namespace corvane
