#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>

#include <fmt/format.h>

#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane {

static_assert(static_cast<int>(SocketAddress::Family::ipv4) == AF_INET);
static_assert(static_cast<int>(SocketAddress::Family::ipv6) == AF_INET6);
static_assert(sizeof(sockaddr_in) == 16 && sizeof(sockaddr_in6) == 28);

std::optional<SocketAddress> SocketAddress::parse(std::string_view text, std::uint16_t port) {
    if (text.contains('\0')) return std::nullopt;
    IPv4Bytes ipv4;
    if (::inet_pton(AF_INET, std::string(text).c_str(), ipv4.data()) == 1) return SocketAddress(ipv4, port);

    const std::size_t percent = text.find('%');
    IPv6Bytes ipv6;
    if (::inet_pton(AF_INET6, std::string(text.substr(0, percent)).c_str(), ipv6.data()) != 1) return std::nullopt;
    if (percent == std::string_view::npos) return SocketAddress(ipv6, port);

    const std::string zone(text.substr(percent + 1));
    std::uint32_t scope = 0;
    const auto [end, error] = std::from_chars(zone.data(), zone.data() + zone.size(), scope);
    if (error != std::errc() || end != zone.data() + zone.size()) scope = ::if_nametoindex(zone.c_str());
    if (scope == 0) return std::nullopt;
    return SocketAddress(ipv6, port, scope);
}

bool SocketAddress::isLinkLocal() const noexcept {
    if (isIPv6()) return bytes_[0] == 0xFE && (bytes_[1] & 0xC0U) == 0x80;
    return bytes_[0] == 169 && bytes_[1] == 254;
}

bool SocketAddress::isLoopback() const noexcept {
    if (!isIPv6()) return bytes_[0] == 127;
    IPv6Bytes loopback{};
    loopback.back() = 1;
    return bytes_ == loopback;
}

std::string SocketAddress::description() const {
    char text[INET6_ADDRSTRLEN] = "";
    ::inet_ntop(static_cast<int>(family_), bytes_.data(), text, sizeof text);
    if (!isIPv6()) return fmt::format("{}:{}", text, port_);
    return scope_ == 0 ? fmt::format("[{}]:{}", text, port_) : fmt::format("[{}%{}]:{}", text, scope_, port_);
}

}  // namespace corvane
