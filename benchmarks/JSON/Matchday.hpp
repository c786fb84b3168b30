#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the decoding benchmarks make of a document.

struct Side {
    std::string name;

    bool operator==(const Side&) const = default;
};

struct Score {
    std::optional<int> home;
    std::optional<int> away;

    bool operator==(const Score&) const = default;
};

struct Match {
    std::int64_t id = 0;
    int round = 0;
    std::string status;
    bool finished = false;
    Side home;
    Side away;
    Score score;
    std::string venue;
    std::string updated;

    bool operator==(const Match&) const = default;
};

struct Matchday {
    std::vector<Match> matches;

    bool operator==(const Matchday&) const = default;
};

/// Reads a document by hand, with simdjson's on-demand reader as the compiler's default instructions make it.
/// What it passes over is not validated. The text has `Data::padding` bytes behind it.
[[nodiscard]] Matchday readOnDemand(std::string_view padded);

/// The same with the instructions of a processor of 2013 or later.
[[nodiscard]] Matchday readOnDemandHaswell(std::string_view padded);
