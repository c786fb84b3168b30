#pragma once

#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// How a `Reachability`'s target can be reached.
enum class Connection : unsigned char {
    /// Never the answer; it exists for old callers.
    none,
    unavailable,
    /// Any link that is not a wireless wide-area one, a cable included.
    wifi,
    cellular,
};

/// What to show a user: "No Connection", "WiFi", "Cellular"; deliberately "unavailable" for `none`.
[[nodiscard]] CORVANE_EXPORT std::string_view description(Connection connection) noexcept;

/// The older names of the same; nothing gives them.
enum class NetworkStatus : unsigned char { notReachable, reachableViaWiFi, reachableViaWWAN };

/// "No Connection", "WiFi", "Cellular".
[[nodiscard]] CORVANE_EXPORT std::string_view description(NetworkStatus status) noexcept;

}  // namespace corvane
