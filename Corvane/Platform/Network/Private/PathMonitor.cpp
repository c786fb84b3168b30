#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <vector>

#include <Corvane/Platform/Dispatch/Private/PoolSupervisor.hpp>
#include <Corvane/Platform/Network/Private/KernelPath.hpp>
#include <Corvane/Platform/Network/Private/PathMonitor.hpp>
#include <Corvane/Platform/Network/Private/PathState.hpp>
#include <Corvane/Platform/Network/Private/SocketCookie.hpp>

namespace corvane::network {

namespace {

constexpr int groups[] = {RTNLGRP_LINK,        RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV4_ROUTE, RTNLGRP_IPV4_RULE,
                          RTNLGRP_IPV6_IFADDR, RTNLGRP_IPV6_ROUTE,  RTNLGRP_IPV6_RULE};

/// In seconds.
constexpr double recoveryDelay = 1;

}  // namespace

PathMonitor& PathMonitor::shared() {
    static auto* const monitor = new PathMonitor;
    return *monitor;
}

NetworkPath::Result<void> PathMonitor::add(KernelPath& path) {
    const std::lock_guard lock(mutex_);
    const bool isDeaf = socket_ < 0 || paths_.empty();
    if (socket_ < 0) {
        if (auto opened = open(); !opened) return opened;
    }
    if (isDeaf) subscribe(NETLINK_ADD_MEMBERSHIP);
    paths_.emplace(&path, path.weak_from_this());
    return {};
}

void PathMonitor::remove(const KernelPath& path) noexcept {
    const std::lock_guard lock(mutex_);
    if (paths_.erase(&path) > 0 && paths_.empty() && socket_ >= 0) subscribe(NETLINK_DROP_MEMBERSHIP);
}

NetworkPath::Result<void> PathMonitor::open() {
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (socket < 0) return std::unexpected(NetworkPathError{errno});
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    if (receiveBytes_ > 0) ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &receiveBytes_, sizeof receiveBytes_);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        const NetworkPathError error{errno};
        ::close(socket);
        return std::unexpected(error);
    }
    socket_ = socket;
    PoolSupervisor::shared().requestThread([this, socket] { run(socket); });
    return {};
}

void PathMonitor::subscribe(int option) noexcept {
    // A kernel built without IPv6 still has its groups.
    for (const int group : groups)
        ::setsockopt(socket_, SOL_NETLINK, option, &group, sizeof group);
}

void PathMonitor::run(int socket) {
    ::pthread_setname_np(::pthread_self(), "corvane.paths");
    std::vector<std::byte> buffer(32768);
    const auto cookie = socketCookie(socket);
    while (socketCookie(socket) == cookie) {
        // The kernel alone writes to these groups; unicast from another process is dropped for its sender's number.
        sockaddr_nl sender{};
        socklen_t senderBytes = sizeof sender;
        const auto received =
            ::recvfrom(socket, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&sender), &senderBytes);
        if (received >= 0) {
            const auto length = static_cast<std::size_t>(received);
            if (sender.nl_pid == 0 && concernsPaths(netlink::Bytes(buffer).first(length))) pokeAll();
        } else if (errno == ENOBUFS) {
            // Announcements were lost, whichever they were.
            pokeAll();
        } else if (errno != EINTR) {
            break;
        }
    }
    // Somebody has closed our descriptor, and may have given its number to another.
    {
        const std::lock_guard lock(mutex_);
        socket_ = -1;
    }
    recover();
}

void PathMonitor::recover() {
    {
        const std::lock_guard lock(mutex_);
        if (socket_ < 0 && !paths_.empty()) {
            if (!open()) {
                DispatchQueue::global().asyncAfter(recoveryDelay, [this] { recover(); });
                return;
            }
            subscribe(NETLINK_ADD_MEMBERSHIP);
        }
    }
    pokeAll();
}

void PathMonitor::pokeAll() {
    std::vector<std::shared_ptr<KernelPath>> paths;
    {
        const std::lock_guard lock(mutex_);
        paths.reserve(paths_.size());
        for (const auto& [address, path] : paths_) {
            if (auto living = path.lock()) paths.push_back(std::move(living));
        }
    }
    for (const auto& path : paths)
        path->networkChanged();
}

}  // namespace corvane::network
