#include <utility>

#include <Corvane/Platform/HTTP/Private/ConnectivityGate.hpp>
#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/Private/NetworkThread.hpp>

namespace corvane::http {

namespace {

/// Flags that cannot be read do not keep anybody from trying.
bool isUsable(NetworkPath& path) {
    const auto flags = path.flags();
    return !flags || (flags->contains(NetworkFlag::reachable) && flags->connectsByItself());
}

/// RFC 6761, 6.3.
bool isLocalName(std::string_view host) noexcept {
    constexpr std::string_view name = "localhost";
    if (host.size() < name.size()) return false;
    const std::size_t start = host.size() - name.size();
    return equalNames(host.substr(start), name) && (start == 0 || host[start - 1] == '.');
}

}  // namespace

class ConnectivityGate::Callback final : public NetworkPathCallback {
  public:
    explicit Callback(std::weak_ptr<ConnectivityGate> gate) noexcept : gate_(std::move(gate)) {}

    /// A report may be late, of a network that is lost again and of tasks that are gone: only what is true now counts.
    void flagsChanged(NetworkFlags /*flags*/) override {
        if (const auto gate = gate_.lock()) gate->openIfUsable();
    }

    [[nodiscard]] std::string description() const override { return "a session that waits for connectivity"; }

  private:
    const std::weak_ptr<ConnectivityGate> gate_;
};

ConnectivityGate::~ConnectivityGate() {
    stopWatching();
}

bool ConnectivityGate::admits(const std::string& host) {
    std::shared_ptr<NetworkPath> internet;
    {
        const std::lock_guard lock(mutex_);
        if (internet_ == nullptr) {
            auto made = NetworkPath::make(SocketAddress::zero());
            if (!made) return true;
            internet_ = std::move(*made);
        }
        internet = internet_;
    }
    if (isUsable(*internet)) return true;
    const auto address = SocketAddress::parse(isLocalName(host) ? "127.0.0.1" : host);
    if (!address) return false;
    const auto path = NetworkPath::make(*address);
    return !path || isUsable(**path);
}

bool ConnectivityGate::hold(const std::shared_ptr<DataTask>& task) {
    {
        const std::lock_guard lock(mutex_);
        if (held_.empty() &&
            (!internet_->setCallback(std::make_shared<Callback>(weak_from_this())) ||
             !internet_->setDispatchQueue(DispatchQueue::global(QoSClass::utility).shared_from_this()))) {
            stopWatching();
            return false;
        }
        held_.push_back(task);
    }
    // It may have come between the look and the watch.
    openIfUsable();
    return true;
}

void ConnectivityGate::withdraw(const DataTask& task) {
    const std::lock_guard lock(mutex_);
    const auto withdrawn = std::erase_if(held_, [&](const auto& each) {
        const auto living = each.lock();
        return living == nullptr || living.get() == &task;
    });
    if (withdrawn > 0 && held_.empty()) stopWatching();
}

void ConnectivityGate::openIfUsable() {
    std::vector<std::weak_ptr<DataTask>> released;
    {
        const std::lock_guard lock(mutex_);
        if (held_.empty() || !isUsable(*internet_)) return;
        released.swap(held_);
        stopWatching();
    }
    for (const auto& each : released) {
        if (auto task = each.lock()) NetworkThread::shared().connectivityReturned(std::move(task));
    }
}

void ConnectivityGate::stopWatching() noexcept {
    if (internet_ == nullptr) return;
    static_cast<void>(internet_->setCallback(nullptr));
    static_cast<void>(internet_->setDispatchQueue(nullptr));
}

}  // namespace corvane::http
