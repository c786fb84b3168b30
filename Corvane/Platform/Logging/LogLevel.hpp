#pragma once

#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// How much a log entry matters, least first.
enum class LogLevel : unsigned char { debug, info, error, off };

/// "debug", "info", "error" or "off".
[[nodiscard]] CORVANE_EXPORT std::string_view description(LogLevel level) noexcept;

}  // namespace corvane
