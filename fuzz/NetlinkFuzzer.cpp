#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <span>

#include <Corvane/Platform/Network/Private/PathState.hpp>

namespace {

using corvane::NetworkFlag;
using corvane::NetworkFlags;
using corvane::SocketAddress;
namespace netlink = corvane::netlink;
namespace network = corvane::network;

void require(bool holds) {
    if (!holds) std::abort();
}

void checkFlags(const SocketAddress& target, const std::optional<network::RouteState>& route,
                const std::optional<network::LinkState>& link) {
    const NetworkFlags flags = network::flagsOf(target, route, link);
    require(flags.contains(NetworkFlag::reachable) || flags == NetworkFlags());
    require(flags.description().size() == 10);
}

}  // namespace

/// A datagram as the kernel might send it: every message is read as each kind of answer.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const netlink::Bytes datagram = std::as_bytes(std::span(bytes, size));
    static_cast<void>(network::concernsPaths(datagram));
    static_cast<void>(network::parseDeviceType({reinterpret_cast<const char*>(bytes), size}));

    netlink::Bytes rest = datagram;
    while (const auto message = netlink::takeMessage(rest)) {
        require(message->payload.size() + rest.size() < datagram.size());
        const auto route = network::parseRoute(message->payload);
        const auto link = network::parseLink(message->payload);
        require(!link || link->name.find('\0') == std::string::npos);
        checkFlags(SocketAddress::zero(), route, link);
        checkFlags(SocketAddress::zero(), route, std::nullopt);
    }
    return 0;
}
