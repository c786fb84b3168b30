#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Platform/Network/Private/KernelPath.hpp>
#include <Corvane/Platform/Network/Private/RouteQueries.hpp>

namespace corvane::network {

namespace {

constexpr double longestRetryDelay = 64;

}  // namespace

NetworkPath::Result<std::shared_ptr<NetworkPath>> KernelPath::make(std::string hostName, PathMonitor& monitor) {
    if (const auto address = SocketAddress::parse(hostName)) return make(*address, monitor);
    if (auto opened = RouteQueries::shared().open(); !opened) return std::unexpected(opened.error());
    std::shared_ptr<KernelPath> path(new KernelPath(std::move(hostName), {}, monitor));
    {
        const std::lock_guard lock(path->mutex_);
        path->lookUp();
    }
    return path;
}

NetworkPath::Result<std::shared_ptr<NetworkPath>> KernelPath::make(const SocketAddress& address, PathMonitor& monitor) {
    if (auto opened = RouteQueries::shared().open(); !opened) return std::unexpected(opened.error());
    return std::shared_ptr<KernelPath>(new KernelPath({}, {address}, monitor));
}

KernelPath::KernelPath(std::string hostName, std::vector<SocketAddress> addresses, PathMonitor& monitor)
    : hostName_(std::move(hostName)), monitor_(monitor), addresses_(std::move(addresses)) {}

KernelPath::~KernelPath() {
    if (isWatched_) monitor_.remove(*this);
}

NetworkPath::Result<void> KernelPath::setCallback(std::shared_ptr<NetworkPathCallback> callback) {
    // The former callback is let go after the lock.
    const std::lock_guard lock(mutex_);
    if (auto result = watch(callback != nullptr && queue_ != nullptr); !result) return result;
    callback_.swap(callback);
    installed();
    return {};
}

NetworkPath::Result<void> KernelPath::setDispatchQueue(std::shared_ptr<DispatchQueue> queue) {
    const std::lock_guard lock(mutex_);
    if (auto result = watch(callback_ != nullptr && queue != nullptr); !result) return result;
    queue_.swap(queue);
    installed();
    return {};
}

NetworkPath::Result<void> KernelPath::watch(bool watches) {
    if (watches == isWatched_) return {};
    if (watches) {
        if (auto result = monitor_.add(*this); !result) return result;
        // What was known of a host is of the time when nobody watched.
        retryDelay_ = 1;
        if (!hostName_.empty() && !isLookingUp_) lookUp();
    } else {
        monitor_.remove(*this);
    }
    isWatched_ = watches;
    return {};
}

void KernelPath::installed() noexcept {
    ++installation_;
    reported_.reset();
    isChecking_ = false;
    isCheckOutdated_ = false;
    isRecheckScheduled_ = false;
}

NetworkPath::Result<NetworkFlags> KernelPath::flags() {
    std::vector<SocketAddress> addresses;
    {
        const std::lock_guard lock(mutex_);
        addresses = addresses_;
    }
    for (const SocketAddress& address : addresses) {
        auto flags = RouteQueries::shared().flags(address);
        if (!flags || flags->contains(NetworkFlag::reachable)) return flags;
    }
    return NetworkFlags();
}

std::string KernelPath::description() const {
    std::shared_ptr<NetworkPathCallback> callback;
    std::string target = hostName_;
    {
        const std::lock_guard lock(mutex_);
        callback = callback_;
        if (target.empty()) target = addresses_.front().description();
    }
    return fmt::format("{} ({})", target, callback ? callback->description() : "no callback");
}

void KernelPath::networkChanged() {
    const std::lock_guard lock(mutex_);
    if (!isWatched_) return;
    retryDelay_ = 1;
    if (!hostName_.empty()) lookUp();
    scheduleCheck();
}

void KernelPath::scheduleCheck() {
    if (std::exchange(isChecking_, true)) {
        isCheckOutdated_ = true;
        return;
    }
    queue_->async([weak = weak_from_this(), installation = installation_] {
        if (const auto self = weak.lock()) self->check(installation);
    });
}

void KernelPath::check(std::uint64_t installation) {
    std::shared_ptr<NetworkPathCallback> callback;
    {
        const std::lock_guard lock(mutex_);
        if (installation != installation_) return;
        isCheckOutdated_ = false;
        callback = callback_;
    }
    const auto flags = this->flags();
    bool reports = false;
    {
        const std::lock_guard lock(mutex_);
        if (installation != installation_) return;
        reports = flags && reported_ != *flags;
        if (reports) reported_ = *flags;
        // A kernel that cannot be asked (no memory, no descriptors) leaves us with what we knew, for now.
        if (flags) {
            recheckDelay_ = 1;
        } else {
            scheduleRecheck();
        }
    }
    if (reports) callback->flagsChanged(*flags);
    const std::lock_guard lock(mutex_);
    if (installation != installation_) return;
    isChecking_ = false;
    if (isCheckOutdated_) scheduleCheck();
}

void KernelPath::scheduleRecheck() {
    if (std::exchange(isRecheckScheduled_, true)) return;
    queue_->asyncAfter(recheckDelay_, [weak = weak_from_this(), installation = installation_] {
        const auto self = weak.lock();
        if (self == nullptr) return;
        const std::lock_guard lock(self->mutex_);
        if (installation != self->installation_) return;
        self->isRecheckScheduled_ = false;
        self->scheduleCheck();
    });
    recheckDelay_ = std::min(recheckDelay_ * 2, longestRetryDelay);
}

void KernelPath::lookUp() {
    if (std::exchange(isLookingUp_, true)) {
        isLookupOutdated_ = true;
    } else {
        HostLookups::shared().lookUp(hostName_, weak_from_this());
    }
}

void KernelPath::hostLookedUp(HostAnswer answer) {
    const std::lock_guard lock(mutex_);
    addresses_.swap(answer.addresses);
    isLookingUp_ = false;
    ++answers_;
    if (std::exchange(isLookupOutdated_, false)) {
        lookUp();
    } else if (isWatched_ && answer.isTemporaryFailure) {
        scheduleRetry();
    }
    if (isWatched_) scheduleCheck();
}

void KernelPath::scheduleRetry() {
    // Without a way to any server there is nothing to retry before the next change.
    const auto internet = RouteQueries::shared().flags(SocketAddress::zero());
    if (!internet || !internet->contains(NetworkFlag::reachable)) return;
    queue_->asyncAfter(retryDelay_, [weak = weak_from_this(), answer = answers_] {
        const auto self = weak.lock();
        if (self == nullptr) return;
        const std::lock_guard lock(self->mutex_);
        if (self->isWatched_ && self->answers_ == answer) self->lookUp();
    });
    retryDelay_ = std::min(retryDelay_ * 2, longestRetryDelay);
}

}  // namespace corvane::network
