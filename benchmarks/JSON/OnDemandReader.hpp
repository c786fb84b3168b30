#pragma once

#include <simdjson.h>

#include <Corvane/Platform/Data.hpp>

#include "benchmarks/JSON/Matchday.hpp"

// Included by one source for each set of instructions.

namespace {

std::optional<int> readGoals(simdjson::ondemand::value value) {
    if (value.is_null()) return std::nullopt;
    return static_cast<int>(value.get_int64());
}

Matchday readByHand(std::string_view padded) {
    static simdjson::ondemand::parser parser;
    Matchday day;
    auto document = parser.iterate(padded.data(), padded.size(), padded.size() + corvane::Data::padding);
    for (simdjson::ondemand::object object : document["matches"].get_array()) {
        Match& match = day.matches.emplace_back();
        match.id = object["id"].get_int64();
        match.round = static_cast<int>(std::int64_t(object["round"].get_int64()));
        match.status = std::string_view(object["status"]);
        match.finished = bool(object["finished"]);
        match.home.name = std::string_view(object["home"]["name"]);
        match.away.name = std::string_view(object["away"]["name"]);
        simdjson::ondemand::object score = object["score"].get_object();
        match.score.home = readGoals(score["home"]);
        match.score.away = readGoals(score["away"]);
        match.venue = std::string_view(object["venue"]);
        match.updated = std::string_view(object["updated"]);
    }
    return day;
}

}  // namespace
