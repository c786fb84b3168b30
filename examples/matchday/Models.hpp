#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <Corvane/Core/CustomTypes/TaggedType/TaggedType.hpp>
#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Decoding/NSDictionaryInitialisable.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/JSON/Coding.hpp>

// The documents of the league's back end. Texts are those of strangers: `printable` makes them fit for a terminal.

namespace matchday {

using TeamID = corvane::TaggedType<struct TeamIDTag, std::int64_t>;
using FixtureID = corvane::TaggedType<struct FixtureIDTag, std::int64_t>;

/// The clubs' names.
using TeamNames = std::map<TeamID, std::string>;

struct Score {
    std::int64_t home = 0;
    std::int64_t away = 0;

    friend bool operator==(const Score&, const Score&) = default;
};

struct Fixture {
    enum class Status { upcoming, live, finished };

    FixtureID id;
    TeamID home;
    TeamID away;
    corvane::Date kickOff;
    Status status = Status::upcoming;
    std::int64_t minute = 0;
    /// Absent before the kick-off.
    std::optional<Score> score;

    friend bool operator==(const Fixture&, const Fixture&) = default;
};

struct Matchday {
    std::string competition;
    std::int64_t number = 0;
    std::vector<Fixture> fixtures;

    static constexpr corvane::CodingRule codingRules[] = {{.member = "number", .key = "matchday"}};

    friend bool operator==(const Matchday&, const Matchday&) = default;
};

struct Standing {
    TeamID team;
    std::int64_t played = 0;
    std::int64_t won = 0;
    std::int64_t drawn = 0;
    std::int64_t lost = 0;
    std::int64_t scored = 0;
    std::int64_t conceded = 0;
    std::int64_t points = 0;
    /// The last results, the newest last: "WDLLW".
    std::string form;

    static constexpr corvane::CodingRule codingRules[] = {
        {.member = "scored", .key = "for"},
        {.member = "conceded", .key = "against"},
    };

    friend bool operator==(const Standing&, const Standing&) = default;
};

struct Standings {
    /// Best first.
    std::vector<Standing> standings;

    friend bool operator==(const Standings&, const Standings&) = default;
};

struct Team {
    TeamID id;
    std::string abbreviation;
    std::string ground;
};

struct Teams {
    std::vector<Team> teams;
};

/// One of the live scores, which come as a loosely typed dictionary.
struct Goal : corvane::NSDictionaryInitialisable<Goal> {
    explicit Goal(const corvane::JSONDictionary& json)
        : fixture(corvane::JSONUtils::getIntFromJSON(json, "fixture", 0)),
          team(corvane::JSONUtils::getIntFromJSON(json, "team", 0)),
          minute(corvane::JSONUtils::getIntFromJSON(json, "minute", 0)),
          score{corvane::JSONUtils::getIntFromJSON(json, "homeGoals", 0),
                corvane::JSONUtils::getIntFromJSON(json, "awayGoals", 0)} {}

    FixtureID fixture;
    TeamID team;
    std::int64_t minute;
    Score score;
};

}  // namespace matchday
