#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <Corvane/Platform/JSON/JSONDictionary.hpp>

#include "Models.hpp"

namespace matchday {

/// A generated league in the middle of its season: clubs, a table, and a matchday of which some games are over, some
/// are being played and some are still to come. The same for every run but for the kick-off times.
class Season {
  public:
    explicit Season(corvane::Date now);

    [[nodiscard]] const Matchday& fixtures() const noexcept { return matchday_; }

    [[nodiscard]] Standings standings() const;

    [[nodiscard]] static Teams teams();

    /// How many people watch; absent for games that are over.
    [[nodiscard]] std::optional<std::int64_t> spectators(FixtureID fixture) const;

    /// Plays on for some minutes: {"goals": [{"fixture", "team", "minute", "homeGoals", "awayGoals"}]}.
    corvane::JSONDictionary playOn(int minutes);

  private:
    struct Record {
        int won = 0;
        int drawn = 0;
        int lost = 0;
        std::int64_t scored = 0;
        std::int64_t conceded = 0;
        std::string form;

        void add(std::int64_t goals, std::int64_t goalsAgainst);

        [[nodiscard]] int points() const noexcept { return 3 * won + drawn; }
    };

    void playEarlierRounds();
    void kickOffToday(corvane::Date now);
    [[nodiscard]] int goalsBy(std::size_t club, std::int64_t minutes);
    void enterResult(std::size_t home, std::size_t away, const Score& score);

    std::minstd_rand random_{12};  // Fixed, so that every demo tells the same story.
    std::vector<Record> records_;
    Matchday matchday_;
};

}  // namespace matchday
