#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// Reads the preferred form of RFC 9110, section 5.6.7, which has 29 bytes: seconds since 1970.
[[nodiscard]] std::optional<std::int64_t> parseHTTPDate(std::string_view text) noexcept;

}  // namespace corvane
