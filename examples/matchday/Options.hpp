#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/HTTP/URL.hpp>
#include <Corvane/Platform/Logging/LogLevel.hpp>

namespace matchday {

enum class ColorMode { automatic, always, never };

/// What the command line asks for.
struct Options {
    bool showsHelp = false;
    bool showsVersion = false;
    /// The document to download; absent for the scoreboard over the generated back end.
    std::optional<corvane::URL> url;
    std::string caFile;
    /// Parts of the names of the teams to show from now on; absent to leave that as it was, none for all teams.
    std::optional<std::vector<std::string>> teams;
    /// Where the choice of teams is kept; empty for the user's documents directory.
    std::string documents;
    corvane::LogLevel logLevel = corvane::LogLevel::off;
    ColorMode colors = ColorMode::automatic;

    /// Reads the command line; a failure is the sentence to tell the user.
    [[nodiscard]] static std::expected<Options, std::string> parse(int argc, char** argv);

    [[nodiscard]] static std::string_view help() noexcept;
};

}  // namespace matchday
