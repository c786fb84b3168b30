#include <mutex>
#include <utility>

#include <Corvane/Platform/Application/BackgroundTaskRegister.hpp>
#include <Corvane/Platform/Application/BackgroundTasks.hpp>

namespace corvane {

namespace {

struct HostInForce {
    std::mutex mutex;
    std::shared_ptr<BackgroundTaskHost> host;

    static HostInForce& shared() {
        static auto* const instance = new HostInForce{.mutex = {}, .host = standard()};
        return *instance;
    }

    static const std::shared_ptr<BackgroundTaskRegister>& standard() {
        static const auto* const instance =
            new std::shared_ptr<BackgroundTaskRegister>(std::make_shared<BackgroundTaskRegister>());
        return *instance;
    }

    std::shared_ptr<BackgroundTaskHost> get() {
        const std::lock_guard lock(mutex);
        return host;
    }
};

}  // namespace

BackgroundTasks::Identifier BackgroundTasks::begin(std::string name, std::function<void()> expirationHandler) {
    return HostInForce::shared().get()->begin(std::move(name), std::move(expirationHandler));
}

bool BackgroundTasks::end(Identifier identifier) {
    return HostInForce::shared().get()->end(identifier);
}

void BackgroundTasks::setHost(std::shared_ptr<BackgroundTaskHost> host) {
    if (host == nullptr) host = HostInForce::standard();
    // The old host is let go outside the lock.
    HostInForce& inForce = HostInForce::shared();
    const std::lock_guard lock(inForce.mutex);
    inForce.host.swap(host);
}

BackgroundTaskRegister& BackgroundTasks::standardRegister() {
    return *HostInForce::standard();
}

bool BackgroundTasks::waitForRunning(double seconds) {
    return standardRegister().waitForRunning(seconds);
}

}  // namespace corvane
