#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace matchday {

/// A generated league in the middle of its season: clubs, a table, and a matchday of which some games are over, some
/// are being played and some are still to come. The same for every run but for the kick-off times.
class Season {
  public:
    explicit Season(std::time_t now);

    /// {"competition", "matchday", "fixtures": [{"id", "home", "away", "kickOff", "status", "minute", "score"}]}, with
    /// clubs by their ids, kick-offs in seconds since 1970, and the score absent before the kick-off.
    [[nodiscard]] corvane::JSONDictionary fixtures() const;

    /// {"standings": [{"team", "played", "won", "drawn", "lost", "for", "against", "points", "form"}]}, best first.
    [[nodiscard]] corvane::JSONDictionary standings() const;

    /// {"fixture", "stadium", "spectators"}; absent for games that are over.
    [[nodiscard]] std::optional<corvane::JSONDictionary> details(std::int64_t fixture) const;

    /// Plays on for some minutes: {"goals": [{"fixture", "team", "minute", "score"}]}.
    corvane::JSONDictionary playOn(int minutes);

  private:
    enum class Status { upcoming, live, finished };

    struct Match {
        int id = 0;
        std::size_t home = 0;
        std::size_t away = 0;
        std::time_t kickOff = 0;
        Status status = Status::upcoming;
        int minute = 0;
        int homeGoals = 0;
        int awayGoals = 0;
    };

    struct Record {
        int won = 0;
        int drawn = 0;
        int lost = 0;
        int scored = 0;
        int conceded = 0;
        std::string form;

        void add(int goals, int goalsAgainst);

        [[nodiscard]] int points() const noexcept { return 3 * won + drawn; }
    };

    void playEarlierRounds();
    void kickOffToday(std::time_t now);
    [[nodiscard]] int goalsBy(std::size_t club, int minutes);
    void enterResult(const Match& match);

    static std::string_view name(Status status) noexcept;
    static corvane::JSONArray score(const Match& match);

    std::minstd_rand random_{12};  // Fixed, so that every demo tells the same story.
    std::vector<Record> records_;
    std::vector<Match> today_;
};

}  // namespace matchday
