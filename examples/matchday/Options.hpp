#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

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
    corvane::LogLevel logLevel = corvane::LogLevel::off;
    ColorMode colors = ColorMode::automatic;

    /// Reads the command line; a failure is the sentence to tell the user.
    [[nodiscard]] static std::expected<Options, std::string> parse(int argc, char** argv);

    [[nodiscard]] static std::string_view help() noexcept;
};

}  // namespace matchday
