#pragma once

#include <string_view>

namespace corvane {

/// Reads the preferred form of RFC 9110, section 5.6.7, which has 29 bytes, as seconds since 1970. Whether the text is
/// one; not an optional, which processors are slow to pass on.
[[nodiscard]] bool parseHTTPDate(std::string_view text, double& seconds) noexcept;

}  // namespace corvane
