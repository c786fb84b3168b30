#pragma once

#include <string>

#include <Corvane/Export.hpp>

namespace corvane {

/// The translation of `text` in the application's message catalogue, or `text` itself when it has none.
///
/// The catalogue is the one of gettext's current text domain, so the application chooses it and its language by the C
/// library's `setlocale`, `textdomain` and `bindtextdomain`; `bind_textdomain_codeset` with "UTF-8" makes translations
/// UTF-8 whatever the locale's own encoding is. Any thread.
[[nodiscard]] CORVANE_EXPORT std::string localizedString(const char* text);

}  // namespace corvane
