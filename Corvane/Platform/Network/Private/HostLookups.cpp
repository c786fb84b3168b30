#include <netdb.h>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/socket.h>

#include <bit>
#include <cstring>
#include <utility>

#include <Corvane/Platform/Dispatch/Private/PoolSupervisor.hpp>
#include <Corvane/Platform/Network/Private/HostLookups.hpp>

namespace corvane::network {

namespace {

SocketAddress addressOf(const addrinfo& entry) noexcept {
    if (entry.ai_family == AF_INET) {
        sockaddr_in address;
        std::memcpy(&address, entry.ai_addr, sizeof address);
        return SocketAddress(std::bit_cast<SocketAddress::IPv4Bytes>(address.sin_addr));
    }
    sockaddr_in6 address;
    std::memcpy(&address, entry.ai_addr, sizeof address);
    return SocketAddress(std::bit_cast<SocketAddress::IPv6Bytes>(address.sin6_addr), 0, address.sin6_scope_id);
}

HostAnswer resolve(const std::string& name) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    const int failure = ::getaddrinfo(name.c_str(), nullptr, &hints, &list);
    if (failure != 0) return {.addresses = {}, .isTemporaryFailure = failure != EAI_NONAME && failure != EAI_NODATA};
    HostAnswer answer;
    for (const addrinfo* entry = list; entry != nullptr; entry = entry->ai_next) {
        if (entry->ai_family != AF_INET && entry->ai_family != AF_INET6) continue;
        const SocketAddress address = addressOf(*entry);
        // That is how filtering servers say "no"; to us it would mean the general internet.
        if (!address.isUnspecified()) answer.addresses.push_back(address);
    }
    ::freeaddrinfo(list);
    return answer;
}

}  // namespace

HostLookups& HostLookups::shared() {
    static auto* const lookups = new HostLookups;
    return *lookups;
}

void HostLookups::lookUp(const std::string& name, std::weak_ptr<HostLookupClient> client) {
    {
        const std::lock_guard lock(mutex_);
        const auto [entry, isNew] = waiting_.try_emplace(name);
        std::erase_if(entry->second, [](const auto& each) { return each.expired(); });
        entry->second.push_back(std::move(client));
        if (!isNew) return;
    }
    PoolSupervisor::shared().requestThread([this, name] { run(name); });
}

void HostLookups::run(const std::string& name) {
    ::pthread_setname_np(::pthread_self(), "corvane.lookup");
    for (;;) {
        std::vector<std::weak_ptr<HostLookupClient>> clients;
        {
            const std::lock_guard lock(mutex_);
            const auto entry = waiting_.find(name);
            clients.swap(entry->second);
            std::erase_if(clients, [](const auto& each) { return each.expired(); });
            if (clients.empty()) {
                waiting_.erase(entry);
                return;
            }
        }
        const HostAnswer answer = resolve(name);
        for (const auto& client : clients) {
            if (const auto living = client.lock()) living->hostLookedUp(answer);
        }
    }
}

}  // namespace corvane::network
