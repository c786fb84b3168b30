#include "League.hpp"

#include <string_view>

#include "Terminal.hpp"

namespace matchday {
namespace {

using corvane::JSONArray;
using corvane::JSONValue;

bool read(const JSONValue& value, std::int64_t& field) {
    const auto number = value.asInt64();
    if (number) field = *number;
    return number.has_value();
}

bool read(const JSONValue& value, std::string& field) {
    const auto text = value.asString();
    if (text) field = printable(*text);
    return text.has_value();
}

bool read(const JSONValue& value, Score& field) {
    return read(value[0], field.first) && read(value[1], field.second);
}

bool read(const JSONValue& value, Fixture::Status& field) {
    const auto name = value.asString();
    if (name == "upcoming")
        field = Fixture::Status::upcoming;
    else if (name == "live")
        field = Fixture::Status::live;
    else if (name == "finished")
        field = Fixture::Status::finished;
    else
        return false;
    return true;
}

bool read(const JSONValue& value, Fixture& fixture) {
    if (!read(value["id"], fixture.id) || !read(value["home"], fixture.home) || !read(value["away"], fixture.away) ||
        !read(value["kickOff"], fixture.kickOff) || !read(value["status"], fixture.status)) {
        return false;
    }
    if (fixture.status == Fixture::Status::upcoming) return true;
    return read(value["minute"], fixture.minute) && read(value["score"], fixture.score.emplace());
}

bool read(const JSONValue& value, Standing& standing) {
    return read(value["team"], standing.team) && read(value["played"], standing.played) &&
           read(value["won"], standing.won) && read(value["drawn"], standing.drawn) &&
           read(value["lost"], standing.lost) && read(value["for"], standing.scored) &&
           read(value["against"], standing.conceded) && read(value["points"], standing.points) &&
           read(value["form"], standing.form);
}

bool read(const JSONValue& value, Goal& goal) {
    return read(value["fixture"], goal.fixture) && read(value["team"], goal.team) &&
           read(value["minute"], goal.minute) && read(value["score"], goal.score);
}

template <class Element>
std::optional<std::vector<Element>> readAll(const JSONValue& list) {
    const JSONArray* const array = list.asArray();
    if (array == nullptr) return std::nullopt;
    std::vector<Element> elements;
    for (const JSONValue& value : *array) {
        if (!read(value, elements.emplace_back())) return std::nullopt;
    }
    return elements;
}

}  // namespace

std::optional<Matchday> readMatchday(const JSONValue& document) {
    auto fixtures = readAll<Fixture>(document["fixtures"]);
    Matchday matchday;
    if (!fixtures || !read(document["competition"], matchday.competition) ||
        !read(document["matchday"], matchday.number)) {
        return std::nullopt;
    }
    matchday.fixtures = *std::move(fixtures);
    return matchday;
}

std::optional<std::vector<Standing>> readStandings(const JSONValue& document) {
    return readAll<Standing>(document["standings"]);
}

std::optional<std::vector<Goal>> readGoals(const JSONValue& document) {
    return readAll<Goal>(document["goals"]);
}

}  // namespace matchday
