#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Platform/Network/NetworkFlags.hpp>
#include <Corvane/Platform/Network/Private/NetlinkMessage.hpp>
#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane::network {

/// How the kernel would route a packet to a target.
struct RouteState {
    /// RTN_UNICAST, RTN_LOCAL, RTN_UNREACHABLE...
    std::uint8_t type = 0;
    bool hasGateway = false;
    /// The number of the link that it leaves by, 0 for none.
    int link = 0;
    /// The address that it leaves from: one that is configured and may be used.
    std::optional<SocketAddress> source;

    friend bool operator==(const RouteState&, const RouteState&) = default;
};

struct LinkState {
    /// IFF_UP, IFF_RUNNING, IFF_POINTOPOINT...
    std::uint32_t flags = 0;
    std::string name;
    /// What kind of virtual link it is ("veth", "wwan"); empty for a device.
    std::string kind;
    /// DEVTYPE of the device ("wlan", "wwan"), which netlink does not carry; empty for none.
    std::string deviceType;

    friend bool operator==(const LinkState&, const LinkState&) = default;
};

/// The payload of an RTM_NEWROUTE that answers a route look-up; absent when it is malformed.
[[nodiscard]] std::optional<RouteState> parseRoute(netlink::Bytes payload);

/// The payload of an RTM_NEWLINK without the device type; absent when it is malformed.
[[nodiscard]] std::optional<LinkState> parseLink(netlink::Bytes payload);

/// DEVTYPE in a device's "uevent" file.
[[nodiscard]] std::string parseDeviceType(std::string_view uevent);

/// Whether a datagram of the kernel's announcements may change any path. Scan results of a wireless card, which come
/// as changes of its link, do not.
[[nodiscard]] bool concernsPaths(netlink::Bytes datagram) noexcept;

/// What the state of route and link, either absent when there is none, means for a target.
[[nodiscard]] NetworkFlags flagsOf(const SocketAddress& target, const std::optional<RouteState>& route,
                                   const std::optional<LinkState>& link) noexcept;

}  // namespace corvane::network
