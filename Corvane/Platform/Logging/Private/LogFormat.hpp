#pragma once

#include <cstddef>
#include <iterator>
#include <source_location>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Platform/Logging/Logger.hpp>

namespace corvane {

/// Enough for the usual log line; longer ones go to the heap.
inline constexpr std::size_t usualLogLine = 512;

/// Writes one entry with a pattern that is compiled with the code, `FMT_COMPILE("...")`. Costs one relaxed
/// load when `level` is off; otherwise formats into a buffer on the stack.
template <class Pattern, class... Arguments>
void logFormatted(const Logger& logger, LogLevel level, std::source_location where, const Pattern& pattern,
                  const Arguments&... arguments) noexcept {
    if (!logger.isEnabled(level)) return;
    fmt::basic_memory_buffer<char, usualLogLine> line;
    fmt::format_to(std::back_inserter(line), pattern, arguments...);
    logger.log(level, std::string_view(line.data(), line.size()), where);
}

}  // namespace corvane
