#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Concurrency/CommandID.hpp>
#include <Corvane/Core/SourceFileContext.hpp>
#include <Corvane/Export.hpp>

namespace corvane {

/// What a command is told at its declaration: `command({.name = "reload"}, [] { ... })`.
struct CommandOptions {
    /// Identifies the command, and stands for it in log lines; without one it is the place of the declaration.
    std::optional<std::string> name = std::nullopt;
    /// Whether the command is performed without a log line.
    bool isSilent = false;
};

/// What a command's action is accompanied by.
struct CORVANE_EXPORT CommandContext {
    std::optional<std::string> name;
    bool isSilent = false;
    /// Where the command was declared.
    SourceFileContext source;

    [[nodiscard]] CommandID id() const;
};

namespace detail {

/// How an action comes to be run; each has a text in the log line, and `dispatchedToMainThread` a category of its own.
enum class CommandRoad : unsigned char {
    sendable,
    directlyOnMainThread,
    dispatchedToMainThread,
    atCooperativeTask,
    atMainActorTask,
    atCooperativePool,
    atMainActor,
};

CORVANE_EXPORT void logPerform(CommandRoad road, const CommandContext& command, const SourceFileContext& performedAt);

/// Writes the line unless the command is silent.
inline void logUnlessSilent(CommandRoad road, const CommandContext& command, const SourceFileContext& performedAt) {
    if (!command.isSilent) logPerform(road, command, performedAt);
}

}  // namespace detail

}  // namespace corvane
