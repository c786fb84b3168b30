#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <Corvane/Platform/Collections/OrderedDictionary.hpp>
#include <Corvane/Platform/JSON/Coding.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

enum class Side { home, away };
enum class Status : std::uint8_t { scheduled = 10, finished = 20 };
enum class Grade { good, bad };

struct Team {
    std::int64_t id = 0;
    std::string name;
    std::optional<std::string> city;

    bool operator==(const Team&) const = default;
};

/// A member of every kind that needs no code of its own.
struct Everything {
    std::int8_t tiny = 0;
    std::uint64_t huge = 0;
    double ratio = 0;
    float share = 0;
    bool live = false;
    Date kickOff;
    Side side = Side::home;
    Status status = Status::scheduled;
    Grade grade = Grade::good;
    std::vector<Team> teams;
    std::vector<bool> flags;
    std::vector<std::optional<int>> scores;
    std::map<std::string, std::vector<int>> groups;
    std::unordered_map<int, Side> sides;
    std::map<Side, int> goals;
    OrderedDictionary<std::string, std::vector<int>> form;
    std::optional<Team> winner;
    JSONValue extra;

    bool operator==(const Everything&) const = default;
};

struct Ruled {
    std::string shortName;
    std::vector<int> tags{7};
    int cached = 3;
    std::optional<int> bonus = 5;

    static constexpr CodingRule codingRules[] = {
        {.member = "shortName", .key = "short_name"},
        {.member = "tags", .presence = CodingPresence::optional},
        {.member = "cached", .presence = CodingPresence::notCoded},
    };

    bool operator==(const Ruled&) const = default;
};

template <>
struct Coding<Status> {
    static constexpr std::array rawValues{RawValue{Status::scheduled, 1}, RawValue{Status::finished, 2}};
};

template <>
struct Coding<Grade> {
    static constexpr std::array rawValues{RawValue{Grade::good, "A"}, RawValue{Grade::bad, "F"}};
};

inline Everything everything() {
    return {
        .tiny = -128,
        .huge = std::numeric_limits<std::uint64_t>::max(),
        .ratio = -0.25,
        .share = 0.1F,
        .live = true,
        .kickOff = Date(Date::duration(1700000000.5)),
        .side = Side::away,
        .status = Status::finished,
        .grade = Grade::bad,
        .teams = {{1, "Atlético \"😀\"\n\x01", std::nullopt}, {std::numeric_limits<std::int64_t>::min(), "B", "C"}},
        .flags = {true, false},
        .scores = {1, std::nullopt},
        .groups = {{"", {}}, {"a\"b", {1}}},
        .sides = {{-3, Side::home}},
        .goals = {{Side::away, 2}},
        .form = {{"z", {3}}, {"a", {2}}},
        .winner = Team{5, "", std::nullopt},
        .extra = JSONDictionary{{"z", JSONArray{100.0, true}}, {"a", nullptr}},
    };
}

}  // namespace corvane
