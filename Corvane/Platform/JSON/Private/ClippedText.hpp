#pragma once

#include <string>
#include <string_view>

namespace corvane::detail {

/// The beginning of a text that may be of any length, cut between characters, for a message to a developer.
[[nodiscard]] std::string clippedText(std::string_view text);

}  // namespace corvane::detail
