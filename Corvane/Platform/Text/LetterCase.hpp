#pragma once

#include <string>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// The text in capitals, by Unicode's full mapping and no language's own ("straße" is "STRASSE", "i" is "I"). What is
/// not UTF-8 becomes U+FFFD. Any thread.
[[nodiscard]] CORVANE_EXPORT std::string uppercased(std::string_view text);

}  // namespace corvane
