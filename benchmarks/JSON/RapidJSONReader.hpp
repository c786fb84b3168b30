#pragma once

#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <string_view>

#include "benchmarks/JSON/Matchday.hpp"

/// Puts RapidJSON's events straight into the structs.
class RapidJSONHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, RapidJSONHandler> {
  public:
    Matchday day;

    bool StartObject() {
        ++depth_;
        if (depth_ == matchDepth && inMatches_) day.matches.emplace_back();
        if (depth_ == matchDepth + 1) outer_ = key_;
        return true;
    }

    bool EndObject(rapidjson::SizeType) { return --depth_, true; }

    bool Key(const char* text, rapidjson::SizeType size, bool) {
        const std::string_view key(text, size);
        if (depth_ == 1) {
            inMatches_ = key == "matches";
        } else if (depth_ == matchDepth) {
            key_ = key == "id"         ? Member::id
                   : key == "round"    ? Member::round
                   : key == "status"   ? Member::status
                   : key == "finished" ? Member::finished
                   : key == "home"     ? Member::home
                   : key == "away"     ? Member::away
                   : key == "score"    ? Member::score
                   : key == "venue"    ? Member::venue
                   : key == "updated"  ? Member::updated
                                       : Member::none;
        } else if (depth_ == matchDepth + 1) {
            inner_ = key == "name"   ? Member::name
                     : key == "home" ? Member::home
                     : key == "away" ? Member::away
                                     : Member::none;
        }
        return true;
    }

    bool Bool(bool value) {
        if (!inMatches_) return true;
        if (depth_ == matchDepth && key_ == Member::finished) day.matches.back().finished = value;
        return true;
    }

    bool Int64(std::int64_t value) {
        if (!inMatches_) return true;
        if (depth_ == matchDepth && key_ == Member::id) day.matches.back().id = value;
        if (depth_ == matchDepth && key_ == Member::round) day.matches.back().round = static_cast<int>(value);
        if (depth_ == matchDepth + 1 && outer_ == Member::score) {
            Score& score = day.matches.back().score;
            if (inner_ == Member::home) score.home = static_cast<int>(value);
            if (inner_ == Member::away) score.away = static_cast<int>(value);
        }
        return true;
    }

    bool Int(int value) { return Int64(value); }

    bool Uint(unsigned value) { return Int64(value); }

    bool Uint64(std::uint64_t value) { return Int64(static_cast<std::int64_t>(value)); }

    bool String(const char* text, rapidjson::SizeType size, bool) {
        if (depth_ < matchDepth || !inMatches_) return true;
        Match& match = day.matches.back();
        if (depth_ == matchDepth) {
            if (key_ == Member::status) match.status.assign(text, size);
            if (key_ == Member::venue) match.venue.assign(text, size);
            if (key_ == Member::updated) match.updated.assign(text, size);
        } else if (inner_ == Member::name && (outer_ == Member::home || outer_ == Member::away)) {
            (outer_ == Member::home ? match.home : match.away).name.assign(text, size);
        }
        return true;
    }

    bool StartArray() { return true; }

  private:
    enum class Member : unsigned char { none, id, round, status, finished, home, away, score, venue, updated, name };

    static constexpr int matchDepth = 2;

    int depth_ = 0;
    bool inMatches_ = false;
    Member key_ = Member::none;
    Member outer_ = Member::none;
    Member inner_ = Member::none;
};

[[nodiscard]] inline Matchday readRapidJSON(std::string_view text) {
    RapidJSONHandler handler;
    rapidjson::Reader reader;
    rapidjson::MemoryStream stream(text.data(), text.size());
    reader.Parse(stream, handler);
    return std::move(handler.day);
}
