#include <mutex>
#include <utility>

#include <Corvane/Platform/Network/NetworkPathService.hpp>
#include <Corvane/Platform/Network/Private/KernelPath.hpp>

namespace corvane {

namespace {

class KernelPathService final : public NetworkPathService {
  public:
    [[nodiscard]] Result<std::shared_ptr<NetworkPath>> makePath(std::string hostName) override {
        return network::KernelPath::make(std::move(hostName));
    }

    [[nodiscard]] Result<std::shared_ptr<NetworkPath>> makePath(const SocketAddress& address) override {
        return network::KernelPath::make(address);
    }
};

struct ServiceInForce {
    std::mutex mutex;
    std::shared_ptr<NetworkPathService> service = std::make_shared<KernelPathService>();

    static ServiceInForce& shared() {
        static auto* const instance = new ServiceInForce;
        return *instance;
    }
};

}  // namespace

NetworkPathService::~NetworkPathService() = default;

std::shared_ptr<NetworkPathService> NetworkPathService::current() {
    ServiceInForce& inForce = ServiceInForce::shared();
    const std::lock_guard lock(inForce.mutex);
    return inForce.service;
}

void NetworkPathService::setCurrent(std::shared_ptr<NetworkPathService> service) {
    if (service == nullptr) service = std::make_shared<KernelPathService>();
    // The old service is let go outside the lock.
    ServiceInForce& inForce = ServiceInForce::shared();
    const std::lock_guard lock(inForce.mutex);
    inForce.service.swap(service);
}

}  // namespace corvane
