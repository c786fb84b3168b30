#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Network/Private/PathState.hpp>

namespace corvane::network {
namespace {

using netlink::Bytes;

std::vector<std::byte> bytesOf(std::string_view hex) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
    return bytes;
}

// Answers of a Linux 6.18 kernel to route look-ups, as they came.
constexpr std::string_view direct4 =
    "6800000018000000070000000000000002200000fe0000010002000008000f00fe000000080001000a000007080004000300000008000700"
    "0a000001080019000000000024000c000200000000000000000000000000000000000000000000000000000000000000";
constexpr std::string_view local4 =
    "6800000018000000070000000000000002200000fe0000020002008008000f00fe000000080001007f000001080004000100000008000700"
    "7f000001080019000000000024000c000200000000000000000000000000000000000000000000000000000000000000";
constexpr std::string_view gateway6 =
    "b00000001800000007000000000000000a808000fe0300010000000008000f00fe0000001400010020010503ba3e00000000000000020030"
    "14000200000000000000000000000000000000001400070020010db800000000000000000000000108000600000400001400050020010db8"
    "000000000000000000000002080004000300000024000c000200000000000000000000000000000000000000000000000000000000000000"
    "0500140000000000";

// What is looked at of the same kernel's descriptions of links: head, name and kind.
std::vector<std::byte> link(std::string_view flags, std::string_view change = "00000000",
                            std::string_view attributes = "10001200090001007665746800000000") {
    return bytesOf("0000010003000000" + std::string(flags) + std::string(change) + "0800030076653000" +
                   std::string(attributes));
}

constexpr std::string_view running = "43100100";
constexpr std::string_view down = "02100000";
constexpr std::string_view tunnel = "d1100100";
constexpr std::string_view wwanKind = "10001200090001007777616e00000000";

std::optional<RouteState> routeOf(std::string_view hex) {
    const auto datagram = bytesOf(hex);
    Bytes rest(datagram);
    const auto message = netlink::takeMessage(rest);
    EXPECT_TRUE(message && rest.empty());
    return message ? parseRoute(message->payload) : std::nullopt;
}

TEST(PathState, BecomesFlags) {
    const auto internet4 = *SocketAddress::parse("198.41.0.4");
    const auto internet6 = *SocketAddress::parse("2001:503:ba3e::2:30");
    const auto neighbour = *SocketAddress::parse("fe80::7");
    auto fromLinkLocal = routeOf(gateway6);
    fromLinkLocal->source = SocketAddress::parse("fe80::1");
    auto unreachable = routeOf(direct4);
    unreachable->type = 7;  // RTN_UNREACHABLE
    auto sourceless = routeOf(direct4);
    sourceless->source.reset();

    // What a network namespace cannot be made to show.
    const struct {
        const char* what;
        std::optional<RouteState> route;
        std::optional<std::vector<std::byte>> link;
        SocketAddress target = SocketAddress::zero();
        const char* deviceType = "";
        const char* flags;
    } cases[] = {
        {"to this machine, loopback down", routeOf(local4), link(down), internet4, "", "-- -------"},
        {"over IPv6", routeOf(gateway6), link(running), internet6, "", "-R -------"},
        {"from a link-local address", fromLinkLocal, link(running), internet6, "", "-- -------"},
        {"to one from one", fromLinkLocal, link(running), neighbour, "", "-R -------"},
        {"without any address", sourceless, link(running), internet4, "", "-- -------"},
        {"link gone", routeOf(direct4), std::nullopt, internet4, "", "-- -------"},
        {"a route that refuses", unreachable, link(running), internet4, "", "-- -------"},
        {"through a tunnel", routeOf(direct4), link(tunnel), internet4, "", "-R -t----d"},
        {"a modem by its kind", routeOf(direct4), link(running, "00000000", wwanKind), internet4, "", "WR ------d"},
        {"a modem by its device", routeOf(direct4), link(tunnel), internet4, "wwan", "WR -t----d"},
        {"a wireless card", routeOf(direct4), link(running), internet4, "wlan", "-R ------d"},
    };

    for (const auto& each : cases) {
        auto state = each.link ? parseLink(*each.link) : std::nullopt;
        if (state) state->deviceType = each.deviceType;
        EXPECT_EQ(flagsOf(each.target, each.route, state).description(), each.flags) << each.what;
    }
}

/// A datagram of one message.
std::vector<std::byte> datagram(std::string_view type, const std::vector<std::byte>& payload) {
    const auto length = static_cast<std::uint8_t>(16 + payload.size());
    auto bytes = bytesOf("00000000" + std::string(type) + "00000000000000000000");
    bytes[0] = std::byte{length};
    bytes.insert(bytes.end(), payload.begin(), payload.end());
    return bytes;
}

TEST(PathState, HeedsAnnouncementsThatMatter) {
    const auto scan = link(running, "00000000", "08000b0000000000");
    EXPECT_FALSE(concernsPaths(datagram("1000", scan))) << "a wireless card's scan result";
    EXPECT_TRUE(concernsPaths(datagram("1000", link(running)))) << "RTM_NEWLINK";
    EXPECT_TRUE(concernsPaths(datagram("1000", link(running, "01000000", "08000b0000000000")))) << "a change, too";
    for (const std::string_view type : {"1100", "1400", "1500", "1800", "1900", "2000", "2100"})
        EXPECT_TRUE(concernsPaths(datagram(type, {}))) << type;
    EXPECT_FALSE(concernsPaths(datagram("1c00", {}))) << "RTM_NEWNEIGH";

    auto both = datagram("1000", scan);
    const auto second = datagram("1900", {});
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_TRUE(concernsPaths(both));
}

TEST(PathState, SurvivesBytesThatLie) {
    for (const std::string_view hex : {direct4, gateway6}) {
        const auto whole = bytesOf(hex);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // In memory of its own, so that a sanitizer sees a read beyond.
            const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            Bytes rest(cut);
            EXPECT_FALSE(netlink::takeMessage(rest));
            if (length > 16) static_cast<void>(parseRoute(Bytes(cut).subspan(16)));
        }
        for (std::size_t i = 0; i < whole.size(); ++i) {
            auto changed = whole;
            changed[i] ^= std::byte{0xFF};
            Bytes rest(changed);
            if (const auto message = netlink::takeMessage(rest)) {
                static_cast<void>(parseRoute(message->payload));
                static_cast<void>(parseLink(message->payload));
            }
            static_cast<void>(concernsPaths(changed));
        }
    }
}

}  // namespace
}  // namespace corvane::network
