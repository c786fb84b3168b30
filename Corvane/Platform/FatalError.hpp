#pragma once

#include <source_location>
#include <string_view>

#include <Corvane/Export.hpp>

namespace corvane {

/// Stops the process because of a programming error: writes "Fatal error: " and `message` to standard error,
/// then where it was found, and aborts. Never returns; may be called on any thread.
[[noreturn]] CORVANE_EXPORT void fatalError(std::string_view message,
                                            std::source_location where = std::source_location::current());

}  // namespace corvane
