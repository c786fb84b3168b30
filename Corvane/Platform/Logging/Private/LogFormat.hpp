#pragma once

#include <concepts>
#include <cstddef>
#include <iterator>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Platform/Logging/Logger.hpp>

namespace corvane {

/// Enough for the usual log line; longer ones go to the heap.
inline constexpr std::size_t usualLogLine = 512;

/// Formats into a buffer on the stack and writes. Apart from the check, so that only the check is inlined.
template <class Pattern, class... Arguments>
[[gnu::noinline]] void formatAndLog(const Logger& logger, LogLevel level, const LogOrigin& where,
                                    const Pattern& pattern, const Arguments&... arguments) noexcept {
    fmt::basic_memory_buffer<char, usualLogLine> line;
    fmt::format_to(std::back_inserter(line), pattern, arguments...);
    logger.log(level, std::string_view(line.data(), line.size()), where);
}

/// Writes one entry with a pattern that is compiled with the code, `FMT_COMPILE("...")`; costs one relaxed load while
/// `level` is off. `where` becomes a `LogOrigin` behind the check.
template <std::convertible_to<LogOrigin> Place, class Pattern, class... Arguments>
void logFormatted(const Logger& logger, LogLevel level, const Place& where, const Pattern& pattern,
                  const Arguments&... arguments) noexcept {
    if (logger.isEnabled(level)) formatAndLog(logger, level, where, pattern, arguments...);
}

}  // namespace corvane
