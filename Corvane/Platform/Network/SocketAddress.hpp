#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// An IPv4 or IPv6 address with a port, in the sizes and family numbers of the system's own structures.
class CORVANE_EXPORT SocketAddress {
  public:
    enum class Family : std::uint16_t { ipv4 = 2, ipv6 = 10 };

    using IPv4Bytes = std::array<std::uint8_t, 4>;
    using IPv6Bytes = std::array<std::uint8_t, 16>;

    /// 0.0.0.0, port 0: as a target of `NetworkPath` it stands for the general internet.
    [[nodiscard]] static constexpr SocketAddress zero() noexcept { return SocketAddress(IPv4Bytes{}); }

    /// The bytes are in network order.
    explicit constexpr SocketAddress(IPv4Bytes bytes, std::uint16_t port = 0) noexcept
        : family_(Family::ipv4), port_(port), bytes_{bytes[0], bytes[1], bytes[2], bytes[3]} {}

    /// `scope` is the number of the interface that a link-local address belongs to, 0 for none.
    explicit constexpr SocketAddress(IPv6Bytes bytes, std::uint16_t port = 0, std::uint32_t scope = 0) noexcept
        : family_(Family::ipv6), port_(port), scope_(scope), bytes_(bytes) {}

    /// Reads "192.0.2.1", "2001:db8::1" or "fe80::1%eth0" (RFC 4291, RFC 4007); absent for anything else. Looks up
    /// no names but that of an interface.
    [[nodiscard]] static std::optional<SocketAddress> parse(std::string_view text, std::uint16_t port = 0);

    [[nodiscard]] Family family() const noexcept { return family_; }

    [[nodiscard]] bool isIPv6() const noexcept { return family_ == Family::ipv6; }

    /// The length in bytes of the system's structure for the family: 16 or 28.
    [[nodiscard]] std::size_t length() const noexcept { return isIPv6() ? 28 : 16; }

    [[nodiscard]] std::uint16_t port() const noexcept { return port_; }

    [[nodiscard]] std::uint32_t scope() const noexcept { return scope_; }

    /// The 4 or 16 bytes of the address, in network order.
    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept {
        return std::span(bytes_).first(isIPv6() ? 16 : 4);
    }

    /// Whether all bytes are zero.
    [[nodiscard]] bool isUnspecified() const noexcept { return bytes_ == IPv6Bytes{}; }

    /// Whether it means something on one link only: 169.254.0.0/16 (RFC 3927), fe80::/10.
    [[nodiscard]] bool isLinkLocal() const noexcept;

    /// Whether it means this machine: 127.0.0.0/8, ::1.
    [[nodiscard]] bool isLoopback() const noexcept;

    /// "192.0.2.1:80", "[2001:db8::1]:443".
    [[nodiscard]] std::string description() const;

    friend bool operator==(const SocketAddress&, const SocketAddress&) = default;

  private:
    Family family_;
    std::uint16_t port_;
    std::uint32_t scope_ = 0;
    /// An IPv4 address fills the first four.
    IPv6Bytes bytes_{};
};

}  // namespace corvane
