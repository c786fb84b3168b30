#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// The integer that the whole text is in decimal: a sign or none, one or more of the digits 0 to 9, and nothing else.
/// Leading zeros are accepted ("007" is 7). Absent for any other text and beyond 64 bits.
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> intValue(std::string_view text) noexcept;

}  // namespace corvane
