#include <cstdint>

#include <Corvane/Concurrency/CommandContext.hpp>
#include <Corvane/Core/Hasher.hpp>
#include <Corvane/Core/Loggers.hpp>
#include <Corvane/Platform/Logging/Private/LogFormat.hpp>

namespace corvane {

namespace {

std::string_view textOf(detail::CommandRoad road) noexcept {
    using enum detail::CommandRoad;
    switch (road) {
        case sendable:
            return "Sendable";
        case directlyOnMainThread:
            return "directly on Main Thread";
        case dispatchedToMainThread:
            return "dispatched to Main Thread";
        case atCooperativeTask:
            return "at Cooperative Task";
        case atMainActorTask:
            return "at MainActor Task";
        case atCooperativePool:
            return "at Cooperative Pool";
        case atMainActor:
            return "at MainActor";
    }
    return "";
}

}  // namespace

CommandID CommandContext::id() const {
    if (name) return CommandID::customID(*name);
    Hasher hasher(0);
    source.hash(hasher);
    return CommandID::hashID(static_cast<std::int64_t>(hasher.finalize()));
}

void detail::logPerform(CommandRoad road, const CommandContext& command, const SourceFileContext& performedAt) {
    // The other category is deliberate: this road is a hop between threads before it is a command.
    const Logger& logger = road == CommandRoad::dispatchedToMainThread ? Loggers::concurrency() : Loggers::command();
    if (!logger.isEnabled(LogLevel::debug)) return;
    const LogOrigin origin = performedAt.origin();
    if (command.name) {
        logFormatted(logger, LogLevel::debug, origin, FMT_COMPILE("perform Command ({}), named: {}"), textOf(road),
                     *command.name);
    } else {
        logFormatted(logger, LogLevel::debug, origin,
                     FMT_COMPILE("perform Command ({}), declared in {},\ninvoked from {}"), textOf(road),
                     command.source.description(), performedAt.description());
    }
}

}  // namespace corvane
