#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

namespace corvane::detail {

namespace {

/// Arguments are evaluated by the caller: ask first.
bool hopsAreLogged() noexcept {
    return Loggers::concurrency().isEnabled(LogLevel::debug);
}

template <class Pattern, class... Arguments>
void log(const SourceFileContext& context, const Pattern& pattern, const Arguments&... arguments) noexcept {
    logFormatted(Loggers::concurrency(), LogLevel::debug, context.origin(), pattern, arguments...);
}

}  // namespace

void logHop(std::string_view operation, const SourceFileContext& context, std::string_view progress) noexcept {
    if (!hopsAreLogged()) return;
    log(context, FMT_COMPILE("{} dispatched from: {}, in {}, at line: {}{}"), operation, context.function(),
        context.fileName(), context.line(), progress);
}

void logDelayedHop(std::string_view operation, double after, const SourceFileContext& context) noexcept {
    if (!hopsAreLogged()) return;
    log(context, FMT_COMPILE("{}(afterDelay: {:.2f}s) dispatched from: {}, in {}, at line: {}"), operation, after,
        context.function(), context.fileName(), context.line());
}

void logDelayedHop(std::string_view operation, double after, DispatchQoS qos,
                   const SourceFileContext& context) noexcept {
    if (!hopsAreLogged()) return;
    // The two blanks are deliberate.
    log(context, FMT_COMPILE("{}(afterDelay: {:.2f}s, qos:  {}) dispatched from: {}, in {}, at line: {}"), operation,
        after, qos.description(), context.function(), context.fileName(), context.line());
}

}  // namespace corvane::detail
