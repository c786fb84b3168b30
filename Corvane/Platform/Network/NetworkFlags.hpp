#pragma once

#include <cstdint>
#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// What can be said of the way to a target; the values are bits of `NetworkFlags`. The kernel knows of no connection
/// that has to be dialled first: the bits about that are for paths of other making, such as `testing::ScriptedPath`.
enum class NetworkFlag : std::uint32_t {
    /// The way leads over a point-to-point link: a tunnel, a modem.
    transientConnection = 1U << 0U,
    reachable = 1U << 1U,
    /// A connection has to be established first.
    connectionRequired = 1U << 2U,
    /// ... and will be by traffic to the target.
    connectionOnTraffic = 1U << 3U,
    /// ... and not without the user.
    interventionRequired = 1U << 4U,
    /// ... and will be when it is asked for.
    connectionOnDemand = 1U << 5U,
    /// The target is an address of this machine.
    isLocalAddress = 1U << 16U,
    /// No gateway lies on the way.
    isDirect = 1U << 17U,
    /// The way leads over a wireless wide-area link.
    isWWAN = 1U << 18U,
};

/// A set of `NetworkFlag`s in 32 bits.
class CORVANE_EXPORT NetworkFlags {
  public:
    constexpr NetworkFlags() noexcept = default;

    constexpr NetworkFlags(NetworkFlag flag) noexcept  // NOLINT(google-explicit-constructor)
        : bits_(static_cast<std::uint32_t>(flag)) {}

    constexpr explicit NetworkFlags(std::uint32_t bits) noexcept : bits_(bits) {}

    [[nodiscard]] constexpr std::uint32_t bits() const noexcept { return bits_; }

    [[nodiscard]] constexpr bool contains(NetworkFlag flag) const noexcept {
        return (bits_ & static_cast<std::uint32_t>(flag)) != 0;
    }

    constexpr NetworkFlags& operator|=(NetworkFlags other) noexcept {
        bits_ |= other.bits_;
        return *this;
    }

    /// Whether nobody has to be asked for the connection first, by the bits about that alone.
    [[nodiscard]] constexpr bool connectsByItself() const noexcept {
        if (!contains(NetworkFlag::connectionRequired)) return true;
        return (contains(NetworkFlag::connectionOnTraffic) || contains(NetworkFlag::connectionOnDemand)) &&
               !contains(NetworkFlag::interventionRequired);
    }

    /// Ten characters, '-' for what is not set: "WR ctiCDld" is WWAN, reachable, a blank, connection required,
    /// transient, intervention required, on traffic, on demand, local address, direct.
    [[nodiscard]] std::string description() const;

    friend constexpr NetworkFlags operator|(NetworkFlags a, NetworkFlags b) noexcept { return a |= b; }

    friend constexpr bool operator==(NetworkFlags, NetworkFlags) noexcept = default;

  private:
    std::uint32_t bits_ = 0;
};

[[nodiscard]] constexpr NetworkFlags operator|(NetworkFlag a, NetworkFlag b) noexcept {
    return NetworkFlags(a) | NetworkFlags(b);
}

}  // namespace corvane
