#include "Options.hpp"

#include <getopt.h>
#include <unistd.h>

#include <array>
#include <utility>

#include <fmt/format.h>

namespace matchday {
namespace {

template <class Value, std::size_t count>
std::expected<Value, std::string> choose(std::string_view option, std::string_view text,
                                         const std::array<std::pair<std::string_view, Value>, count>& choices) {
    std::string names;
    for (const auto& [name, value] : choices) {
        if (name == text) return value;
        names += names.empty() ? "" : ", ";
        names += name;
    }
    return std::unexpected(fmt::format("'{}' is no value of --{}; choose one of {}", text, option, names));
}

std::expected<corvane::LogLevel, std::string> readLogLevel(std::string_view text) {
    using corvane::LogLevel;
    return choose("log", text,
                  std::array{std::pair{std::string_view("debug"), LogLevel::debug},
                             std::pair{std::string_view("info"), LogLevel::info},
                             std::pair{std::string_view("error"), LogLevel::error},
                             std::pair{std::string_view("off"), LogLevel::off}});
}

std::expected<ColorMode, std::string> readColorMode(std::string_view text) {
    return choose("color", text,
                  std::array{std::pair{std::string_view("auto"), ColorMode::automatic},
                             std::pair{std::string_view("always"), ColorMode::always},
                             std::pair{std::string_view("never"), ColorMode::never}});
}

std::expected<corvane::URL, std::string> readWebAddress(std::string_view text) {
    auto url = corvane::URL::parse(text);
    if (!url) return std::unexpected(fmt::format("'{}' is not a URL", text));
    if (url->scheme() != "http" && url->scheme() != "https") {
        return std::unexpected(fmt::format("'{}' is neither an http nor an https URL", text));
    }
    return *std::move(url);
}

/// Puts what was read into the options, or hands its failure on.
template <class Value, class Field>
std::optional<std::string> take(std::expected<Value, std::string> read, Field& field) {
    if (!read) return std::move(read.error());
    field = *std::move(read);
    return std::nullopt;
}

}  // namespace

std::expected<Options, std::string> Options::parse(int argc, char** argv) {
    static constexpr option longOptions[] = {
        {"url", required_argument, nullptr, 'u'},       {"ca-file", required_argument, nullptr, 'a'},
        {"team", required_argument, nullptr, 't'},      {"all-teams", no_argument, nullptr, 'T'},
        {"documents", required_argument, nullptr, 'd'}, {"log", required_argument, nullptr, 'l'},
        {"color", required_argument, nullptr, 'c'},     {"help", no_argument, nullptr, 'h'},
        {"version", no_argument, nullptr, 'V'},         {nullptr, 0, nullptr, 0},
    };
    Options options;
    std::optional<std::string> failure;
    opterr = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is one command line, read before other threads start.
    for (int option = 0; !failure && (option = getopt_long(argc, argv, ":hV", longOptions, nullptr)) != -1;) {
        switch (option) {
            case 'u':
                failure = take(readWebAddress(optarg), options.url);
                break;
            case 'a':
                options.caFile = optarg;
                if (access(optarg, R_OK) != 0) failure = fmt::format("cannot read the CA file '{}'", optarg);
                break;
            case 't':
                if (!options.teams) options.teams.emplace();
                options.teams->emplace_back(optarg);
                break;
            case 'T':
                options.teams.emplace();
                break;
            case 'd':
                options.documents = optarg;
                break;
            case 'l':
                failure = take(readLogLevel(optarg), options.logLevel);
                break;
            case 'c':
                failure = take(readColorMode(optarg), options.colors);
                break;
            case 'h':
                options.showsHelp = true;
                break;
            case 'V':
                options.showsVersion = true;
                break;
            case ':':
                failure = fmt::format("{} needs a value", argv[optind - 1]);
                break;
            default:
                // A letter may stand among others in one argument; a word is an argument of its own.
                failure = optopt != 0 ? fmt::format("unknown option -{}", static_cast<char>(optopt))
                                      : fmt::format("unknown option {}", argv[optind - 1]);
                break;
        }
    }
    if (!failure && optind < argc) failure = fmt::format("unexpected argument '{}'", argv[optind]);
    if (!failure && !options.caFile.empty() && !options.url) failure = "--ca-file goes with --url";
    if (!failure && options.url && (options.teams || !options.documents.empty())) {
        failure = "--team, --all-teams and --documents go without --url";
    }
    if (failure) return std::unexpected(*std::move(failure));
    return options;
}

std::string_view Options::help() noexcept {
    return R"(Usage: matchday [--team NAME]... [--all-teams] [--documents DIR] [--log LEVEL]
                [--color WHEN]
       matchday --url URL [--ca-file FILE] [--log LEVEL] [--color WHEN]

A scoreboard for the terminal. Without --url it starts a back end of its own on
this machine, with a generated matchday, and follows the scores: on a terminal until
you leave it with Ctrl-D, elsewhere for a moment.

  --url URL        download one JSON document twice, the second time with
                   If-Modified-Since, and show what came back
  --ca-file FILE   trust the certificate authorities in this PEM file
  --team NAME      show only teams with this in their name, now and next time;
                   may be repeated
  --all-teams      show all teams again
  --documents DIR  keep the choice of teams there instead of in the documents
                   directory of the account
  --log LEVEL      write log lines to standard error: debug, info, error, off
                   (default: off)
  --color WHEN     auto, always or never (default: auto, which means on
                   a terminal and unless NO_COLOR is set)
  -h, --help       show this text
  -V, --version    show the version

Exit status: 0 on success, 1 when a download or writing the output failed,
2 for a wrong command line, 130 after Ctrl-C.
)";
}

}  // namespace matchday
