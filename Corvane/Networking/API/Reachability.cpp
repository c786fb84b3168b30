#include <utility>

#include <Corvane/Core/FatalErrorInDebug.hpp>
#include <Corvane/Networking/API/Private/ReachabilityWeakifier.hpp>
#include <Corvane/Networking/API/Reachability.hpp>

namespace corvane {

namespace {

constexpr std::string_view queueLabel = "org.corvane.reachability";

std::shared_ptr<NotificationCenter> defaultCenter() {
    // The default center is never destroyed, so nobody has to own it.
    return {std::shared_ptr<void>(), &NotificationCenter::defaultCenter()};
}

Connection connectionBy(NetworkFlags flags, bool allowsCellular) noexcept {
    if (!flags.contains(NetworkFlag::reachable)) return Connection::unavailable;
    if (flags.contains(NetworkFlag::isWWAN)) return allowsCellular ? Connection::cellular : Connection::unavailable;
    return flags.connectsByItself() ? Connection::wifi : Connection::unavailable;
}

}  // namespace

void ReachabilityWeakifier::flagsChanged(NetworkFlags flags) {
    if (const auto living = reachability.lock()) living->take(flags);
}

std::string ReachabilityWeakifier::description() const {
    const auto living = reachability.lock();
    return living ? living->description() : "nil";
}

std::expected<std::shared_ptr<Reachability>, ReachabilityError> Reachability::make(Queues queues) {
    const SocketAddress address = SocketAddress::zero();
    auto path = NetworkPath::make(address);
    if (!path) return std::unexpected(ReachabilityError::failedToCreateWithAddress(address, path.error().code));
    return make(std::move(*path), std::move(queues));
}

std::expected<std::shared_ptr<Reachability>, ReachabilityError> Reachability::make(std::string_view hostname,
                                                                                   Queues queues) {
    auto path = NetworkPath::make(hostname);
    if (!path) {
        return std::unexpected(ReachabilityError::failedToCreateWithHostname(std::string(hostname), path.error().code));
    }
    return make(std::move(*path), std::move(queues));
}

std::shared_ptr<Reachability> Reachability::make(std::shared_ptr<NetworkPath> reachabilityRef, Queues queues) {
    return std::shared_ptr<Reachability>(new Reachability(std::move(reachabilityRef), std::move(queues)));
}

Reachability::Reachability(std::shared_ptr<NetworkPath> path, Queues queues)
    : path_(std::move(path)),
      queue_(DispatchQueue::serial(std::string(queueLabel), queues.queueQoS, std::move(queues.targetQueue))),
      notificationQueue_(std::move(queues.notificationQueue)),
      center_(defaultCenter()) {}

Reachability::~Reachability() {
    uninstall();
}

std::expected<void, ReachabilityError> Reachability::startNotifier() {
    std::uint64_t start = 0;
    {
        const std::lock_guard lock(installation_);
        if (state_ != State::stopped) return {};
        std::optional<ReachabilityError> refusal;
        if (const auto set = path_->setCallback(std::make_shared<ReachabilityWeakifier>(weak_from_this())); !set) {
            refusal = ReachabilityError::unableToSetCallback(set.error().code);
        } else if (const auto queued = path_->setDispatchQueue(queue_); !queued) {
            refusal = ReachabilityError::unableToSetDispatchQueue(queued.error().code);
        }
        if (refusal) {
            static_cast<void>(path_->setCallback(nullptr));
            static_cast<void>(path_->setDispatchQueue(nullptr));
            return std::unexpected(*std::move(refusal));
        }
        state_ = State::starting;
        start = ++starts_;
    }
    // A callback may let go of the last handle.
    const auto self = shared_from_this();
    const auto read = queue_->isCurrent() ? readFlags() : queue_->sync([this] { return readFlags(); });
    if (!read) return read;
    const std::lock_guard lock(installation_);
    if (state_ == State::starting && starts_ == start) state_ = State::running;
    return {};
}

void Reachability::stopNotifier() {
    uninstall();
}

void Reachability::uninstall() {
    const std::lock_guard lock(installation_);
    static_cast<void>(path_->setCallback(nullptr));
    static_cast<void>(path_->setDispatchQueue(nullptr));
    state_ = State::stopped;
}

bool Reachability::notifierRunning() const {
    const std::lock_guard lock(installation_);
    return state_ == State::running;
}

std::expected<void, ReachabilityError> Reachability::readFlags() {
    const auto flags = path_->flags();
    if (!flags) {
        uninstall();
        return std::unexpected(ReachabilityError::unableToGetFlags(flags.error().code));
    }
    take(*flags);
    return {};
}

void Reachability::take(NetworkFlags flags) {
    {
        const std::lock_guard lock(lock_);
        if (std::exchange(flags_, flags) == flags) return;
    }
    if (notificationQueue_ == nullptr) {
        notify();
        return;
    }
    notificationQueue_->async([weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->notify();
    });
}

void Reachability::notify() {
    Slot callback;
    std::shared_ptr<NotificationCenter> center;
    {
        const std::lock_guard lock(lock_);
        const bool isUnavailable =
            connectionBy(flags_.value_or(NetworkFlags()), allowsCellular_) == Connection::unavailable;
        callback = isUnavailable ? whenUnreachable_ : whenReachable_;
        center = center_;
    }
    if (callback) (*callback)(*this);
    center->post(reachabilityChanged, shared_from_this());
}

Connection Reachability::connection(SourceFileContext context) {
    // A callback that hears of the first flags may let go of the last handle.
    std::shared_ptr<Reachability> self;
    if (!flags()) {
        if (queue_->isCurrent()) {
            fatalErrorInDebug("The connection was asked for on the reachability queue before there were flags",
                              context);
            return Connection::unavailable;
        }
        self = shared_from_this();
        queue_->sync([this] { static_cast<void>(readFlags()); });
    }
    const std::lock_guard lock(lock_);
    return flags_ ? connectionBy(*flags_, allowsCellular_) : Connection::unavailable;
}

Connection Reachability::currentReachabilityStatus(SourceFileContext context) {
    return connection(context);
}

bool Reachability::isReachable(SourceFileContext context) {
    return connection(context) != Connection::unavailable;
}

bool Reachability::isReachableViaWWAN(SourceFileContext context) {
    return connection(context) == Connection::cellular;
}

bool Reachability::isReachableViaWiFi(SourceFileContext context) {
    return connection(context) == Connection::wifi;
}

std::string_view Reachability::currentReachabilityString(SourceFileContext context) {
    return corvane::description(connection(context));
}

std::string Reachability::description() const {
    const auto flags = this->flags();
    return flags ? flags->description() : "unavailable flags";
}

std::optional<NetworkFlags> Reachability::flags() const {
    const std::lock_guard lock(lock_);
    return flags_;
}

Reachability::Callback Reachability::callbackIn(const Slot& slot) const {
    Slot callback;
    {
        const std::lock_guard lock(lock_);
        callback = slot;
    }
    return callback ? *callback : nullptr;
}

void Reachability::setCallbackIn(Slot& slot, Callback callback) {
    // The former callback ends after the lock.
    Slot next = callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
    const std::lock_guard lock(lock_);
    slot.swap(next);
}

Reachability::Callback Reachability::whenReachable() const {
    return callbackIn(whenReachable_);
}

void Reachability::setWhenReachable(Callback callback) {
    setCallbackIn(whenReachable_, std::move(callback));
}

Reachability::Callback Reachability::whenUnreachable() const {
    return callbackIn(whenUnreachable_);
}

void Reachability::setWhenUnreachable(Callback callback) {
    setCallbackIn(whenUnreachable_, std::move(callback));
}

bool Reachability::allowsCellularConnection() const {
    const std::lock_guard lock(lock_);
    return allowsCellular_;
}

void Reachability::setAllowsCellularConnection(bool allows) {
    const std::lock_guard lock(lock_);
    allowsCellular_ = allows;
}

std::shared_ptr<NotificationCenter> Reachability::notificationCenter() const {
    const std::lock_guard lock(lock_);
    return center_;
}

void Reachability::setNotificationCenter(std::shared_ptr<NotificationCenter> center) {
    if (center == nullptr) center = defaultCenter();
    const std::lock_guard lock(lock_);
    center_.swap(center);
}

}  // namespace corvane
