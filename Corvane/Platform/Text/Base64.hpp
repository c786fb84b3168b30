#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>

namespace corvane {

/// The bytes as Base64 with the standard alphabet and padding (RFC 4648, section 4), in one line.
[[nodiscard]] CORVANE_EXPORT std::string base64Text(std::span<const std::byte> bytes);

/// The bytes that a Base64 text means. Absent when it has a character outside the standard alphabet, white space
/// included, or is not padded to a multiple of four characters. Bits that padding leaves over are not looked at.
[[nodiscard]] CORVANE_EXPORT std::optional<Data> base64Data(std::string_view text);

}  // namespace corvane
