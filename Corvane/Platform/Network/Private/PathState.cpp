#include <linux/if.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>

#include <Corvane/Platform/Network/Private/PathState.hpp>

namespace corvane::network {

namespace {

using netlink::Bytes;
using netlink::read;
using netlink::takeAttribute;

std::optional<SocketAddress> addressOf(Bytes bytes) noexcept {
    // The length tells the family.
    constexpr auto address = [](const auto& ofFamily) { return SocketAddress(ofFamily); };
    if (bytes.size() == sizeof(SocketAddress::IPv4Bytes))
        return read<SocketAddress::IPv4Bytes>(bytes).transform(address);
    if (bytes.size() == sizeof(SocketAddress::IPv6Bytes))
        return read<SocketAddress::IPv6Bytes>(bytes).transform(address);
    return std::nullopt;
}

/// A text that ends with a zero byte, or with its attribute.
std::string textOf(Bytes bytes) {
    std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    text.resize(std::min(text.size(), text.find('\0')));
    return text;
}

/// What a message of this kind says: its fixed part, and the attributes behind it.
template <class Head>
struct Content {
    Head head;
    Bytes attributes;
};

template <class Head>
std::optional<Content<Head>> contentOf(Bytes payload) noexcept {
    const auto head = read<Head>(payload);
    if (!head) return std::nullopt;
    return Content<Head>{*head, payload.subspan(sizeof(Head))};
}

std::optional<Bytes> findAttribute(Bytes attributes, std::uint16_t type) noexcept {
    while (const auto attribute = takeAttribute(attributes)) {
        if (attribute->type == type) return attribute->payload;
    }
    return std::nullopt;
}

bool isScanResult(Bytes payload) noexcept {
    const auto link = contentOf<ifinfomsg>(payload);
    return link && link->head.ifi_change == 0 && findAttribute(link->attributes, IFLA_WIRELESS);
}

bool isWWAN(const LinkState& link) noexcept {
    return link.deviceType == "wwan" || link.kind == "wwan" || link.kind == "rmnet";
}

/// Whether an answer of the target reaches the address that the question came from. For want of a better one the
/// kernel names ::1 or a link-local address, such as one that a machine gives itself when nobody else does.
bool findsBackTo(const SocketAddress& source, const SocketAddress& target) noexcept {
    return !source.isLoopback() && (!source.isLinkLocal() || target.isLinkLocal());
}

bool leadsSomewhere(std::uint8_t type) noexcept {
    return type == RTN_UNICAST || type == RTN_LOCAL || type == RTN_ANYCAST || type == RTN_BROADCAST ||
           type == RTN_MULTICAST;
}

}  // namespace

std::optional<RouteState> parseRoute(Bytes payload) {
    auto content = contentOf<rtmsg>(payload);
    if (!content) return std::nullopt;
    RouteState route;
    route.type = content->head.rtm_type;
    while (const auto attribute = takeAttribute(content->attributes)) {
        switch (attribute->type) {
            case RTA_OIF:
                route.link = read<int>(attribute->payload).value_or(0);
                break;
            case RTA_GATEWAY:
            case RTA_VIA:
                route.hasGateway = true;
                break;
            case RTA_PREFSRC:
                route.source = addressOf(attribute->payload);
                break;
            default:
                break;
        }
    }
    return route;
}

std::optional<LinkState> parseLink(Bytes payload) {
    const auto content = contentOf<ifinfomsg>(payload);
    if (!content) return std::nullopt;
    LinkState link;
    link.flags = content->head.ifi_flags;
    if (const auto name = findAttribute(content->attributes, IFLA_IFNAME)) link.name = textOf(*name);
    const auto info = findAttribute(content->attributes, IFLA_LINKINFO);
    if (const auto kind = info.and_then([](Bytes within) { return findAttribute(within, IFLA_INFO_KIND); }))
        link.kind = textOf(*kind);
    return link;
}

std::string parseDeviceType(std::string_view uevent) {
    constexpr std::string_view key = "DEVTYPE=";
    while (!uevent.empty()) {
        const std::string_view line = uevent.substr(0, uevent.find('\n'));
        if (line.starts_with(key)) return std::string(line.substr(key.size()));
        uevent.remove_prefix(std::min(line.size() + 1, uevent.size()));
    }
    return {};
}

bool concernsPaths(Bytes datagram) noexcept {
    while (const auto message = netlink::takeMessage(datagram)) {
        switch (message->type) {
            case RTM_NEWLINK:
                if (!isScanResult(message->payload)) return true;
                break;
            case RTM_DELLINK:
            case RTM_NEWADDR:
            case RTM_DELADDR:
            case RTM_NEWROUTE:
            case RTM_DELROUTE:
            case RTM_NEWRULE:
            case RTM_DELRULE:
                return true;
            default:
                break;
        }
    }
    return false;
}

NetworkFlags flagsOf(const SocketAddress& target, const std::optional<RouteState>& route,
                     const std::optional<LinkState>& link) noexcept {
    if (!route || !leadsSomewhere(route->type)) return {};
    NetworkFlags flags = NetworkFlag::reachable;
    if (!route->hasGateway) flags |= NetworkFlag::isDirect;

    // The kernel goes on routing into a link that is down or has lost its carrier, hence the look at it. What stays on
    // this machine needs no carrier.
    const bool isLocal = route->type == RTN_LOCAL;
    const std::uint32_t needed = isLocal ? IFF_UP : IFF_UP | IFF_RUNNING;
    if (!link || (link->flags & needed) != needed) return {};
    if (isLocal) return flags | NetworkFlag::isLocalAddress;
    if (!route->source || !findsBackTo(*route->source, target)) return {};
    if ((link->flags & IFF_POINTOPOINT) != 0) flags |= NetworkFlag::transientConnection;
    if (isWWAN(*link)) flags |= NetworkFlag::isWWAN;
    return flags;
}

}  // namespace corvane::network
