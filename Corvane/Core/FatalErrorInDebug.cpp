#include <Corvane/Core/FatalErrorInDebug.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

namespace corvane {

void fatalErrorInDebug(std::string_view message, SourceFileContext context) noexcept {
    fatalErrorInDebug(Loggers::unspecified(), message, context);
}

void fatalErrorInDebug(const Logger& logger, std::string_view message, SourceFileContext context) noexcept {
    if (!logger.isEnabled(LogLevel::error)) return;
    if (message.empty()) message = "";  // fmt copies from a null address, if only zero bytes
    logFormatted(logger, LogLevel::error, context.origin(), FMT_COMPILE("{}\nat: {}, in {}, at line: {}"), message,
                 context.function(), context.fileName(), context.line());
}

}  // namespace corvane
