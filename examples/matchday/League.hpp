#pragma once

#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace matchday {

using Score = std::pair<std::int64_t, std::int64_t>;

/// The clubs' names by their ids.
using Teams = std::map<std::int64_t, std::string>;

struct Fixture {
    enum class Status { upcoming, live, finished };

    std::int64_t id = 0;
    std::int64_t home = 0;
    std::int64_t away = 0;
    std::time_t kickOff = 0;
    Status status = Status::upcoming;
    std::int64_t minute = 0;
    std::optional<Score> score;
};

struct Matchday {
    std::string competition;
    std::int64_t number = 0;
    std::vector<Fixture> fixtures;
};

struct Standing {
    std::int64_t team = 0;
    std::int64_t played = 0, won = 0, drawn = 0, lost = 0;
    std::int64_t scored = 0, conceded = 0;
    std::int64_t points = 0;
    std::string form;
};

struct Goal {
    std::int64_t fixture = 0;
    std::int64_t team = 0;
    std::int64_t minute = 0;
    Score score;
};

/// Readers of the back end's documents; absent when a document is not what it should be. Names come out fit for a
/// terminal.
[[nodiscard]] std::optional<Matchday> readMatchday(const corvane::JSONValue& document);
[[nodiscard]] std::optional<std::vector<Standing>> readStandings(const corvane::JSONValue& document);
[[nodiscard]] std::optional<std::vector<Goal>> readGoals(const corvane::JSONValue& document);

}  // namespace matchday
