#pragma once

#include <string_view>

#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Logging/Logger.hpp>

namespace corvane {

/// Reports a programming error: one entry at level error with the message and the place of the call,
/// "message\nat: load(), in Loader.cpp, at line: 42", under the category "Unspecified". Then it returns, in
/// every build; see `fatalError` for the one that does not. Any thread.
CORVANE_EXPORT void fatalErrorInDebug(std::string_view message,
                                      SourceFileContext context = SourceFileContext::current()) noexcept;

/// The same through a logger of the caller's.
CORVANE_EXPORT void fatalErrorInDebug(const Logger& logger, std::string_view message,
                                      SourceFileContext context = SourceFileContext::current()) noexcept;

}  // namespace corvane
