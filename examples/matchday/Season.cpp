#include "Season.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <numeric>
#include <tuple>
#include <utility>

namespace matchday {
namespace {

using corvane::JSONArray;
using corvane::JSONDictionary;

constexpr std::size_t clubCount = 16;
constexpr int matchdayNumber = 12;
constexpr std::size_t fixtureCount = clubCount / 2;
constexpr double quarterHour = 15 * 60;
constexpr int fullTime = 90;
constexpr std::int64_t firstTeam = 101;

TeamID teamID(std::size_t club) {
    return TeamID(firstTeam + static_cast<std::int64_t>(club));
}

std::size_t clubOf(const TeamID& team) {
    return static_cast<std::size_t>(team.value() - firstTeam);
}

/// Who meets whom in a round, by the circle method: the first club stays, the others move on by one.
std::pair<std::size_t, std::size_t> pairing(int round, std::size_t fixture) {
    constexpr std::size_t moving = clubCount - 1;
    const auto seat = [round](std::size_t place) {
        return place == 0 ? 0 : 1 + (place - 1 + static_cast<std::size_t>(round)) % moving;
    };
    const std::size_t one = seat(fixture);
    const std::size_t other = seat(clubCount - 1 - fixture);
    return (round + static_cast<int>(fixture)) % 2 == 0 ? std::pair{one, other} : std::pair{other, one};
}

}  // namespace

void Season::Record::add(std::int64_t goals, std::int64_t goalsAgainst) {
    scored += goals;
    conceded += goalsAgainst;
    if (goals > goalsAgainst) {
        ++won;
        form += 'W';
    } else if (goals == goalsAgainst) {
        ++drawn;
        form += 'D';
    } else {
        ++lost;
        form += 'L';
    }
}

Season::Season(corvane::Date now)
    : records_(clubCount), matchday_{.competition = "Coastal League", .number = matchdayNumber, .fixtures = {}} {
    playEarlierRounds();
    kickOffToday(now);
}

void Season::playEarlierRounds() {
    for (int round = 1; round < matchdayNumber; ++round) {
        for (std::size_t i = 0; i < fixtureCount; ++i) {
            const auto [home, away] = pairing(round, i);
            const Score score{goalsBy(home, fullTime), goalsBy(away, fullTime)};
            enterResult(home, away, score);
        }
    }
}

void Season::kickOffToday(corvane::Date now) {
    using enum Fixture::Status;

    struct Slot {
        int quarterHoursFromNow;
        Fixture::Status status;
        int minute;
    };

    constexpr std::array<Slot, fixtureCount> slots = {{
        {-9, finished, fullTime},
        {-9, finished, fullTime},
        {-5, live, 63},
        {-5, live, 63},
        {-4, live, 47},
        {-4, live, 47},
        {4, upcoming, 0},
        {8, upcoming, 0},
    }};
    const double quarterHours = std::floor(now.time_since_epoch().count() / quarterHour);
    for (std::size_t i = 0; i < fixtureCount; ++i) {
        const auto [home, away] = pairing(matchdayNumber, i);
        const auto& [quarterHoursFromNow, status, minute] = slots[i];
        const std::chrono::duration<double> kickOff((quarterHours + quarterHoursFromNow) * quarterHour);
        Fixture fixture{.id = FixtureID(1201 + static_cast<std::int64_t>(i)),
                        .home = teamID(home),
                        .away = teamID(away),
                        .kickOff = corvane::Date(kickOff),
                        .status = status,
                        .minute = minute,
                        .score = std::nullopt};
        if (status != upcoming) fixture.score = Score{goalsBy(home, minute), goalsBy(away, minute)};
        if (status == finished) enterResult(home, away, *fixture.score);
        matchday_.fixtures.push_back(fixture);
    }
}

int Season::goalsBy(std::size_t club, std::int64_t minutes) {
    // The earlier in the list, the stronger: a goal in every 50 to 110 minutes.
    const auto pace = static_cast<unsigned>(50 + 4 * club);
    int goals = 0;
    for (std::int64_t minute = 0; minute < minutes; ++minute)
        goals += random_() % pace == 0 ? 1 : 0;
    return goals;
}

void Season::enterResult(std::size_t home, std::size_t away, const Score& score) {
    records_[home].add(score.home, score.away);
    records_[away].add(score.away, score.home);
}

Standings Season::standings() const {
    std::vector<std::size_t> order(records_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto rank = [this](std::size_t club) {
        const Record& record = records_[club];
        return std::tuple(-record.points(), record.conceded - record.scored, -record.scored, club);
    };
    std::ranges::sort(order, {}, rank);

    Standings table;
    for (const std::size_t club : order) {
        const Record& record = records_[club];
        table.standings.push_back({.team = teamID(club),
                                   .played = record.won + record.drawn + record.lost,
                                   .won = record.won,
                                   .drawn = record.drawn,
                                   .lost = record.lost,
                                   .scored = record.scored,
                                   .conceded = record.conceded,
                                   .points = record.points(),
                                   .form = record.form.substr(record.form.size() - 5)});
    }
    return table;
}

Teams Season::teams() {
    constexpr std::array<const char*, clubCount> abbreviations{"ASH", "PEL", "FJV", "WES", "RMO", "KES", "AUB", "BRA",
                                                               "VER", "CAL", "LIN", "TOR", "SAR", "HAR", "ZEL", "ALD"};
    constexpr std::array grounds{"Harbour Park", "Old Mill Lane", "Lighthouse Road", "The Moorings"};
    Teams teams;
    for (std::size_t club = 0; club < clubCount; ++club) {
        teams.teams.push_back(
            {.id = teamID(club), .abbreviation = abbreviations[club], .ground = grounds[club % grounds.size()]});
    }
    return teams;
}

std::optional<std::int64_t> Season::spectators(FixtureID id) const {
    const auto fixture = std::ranges::find(matchday_.fixtures, id, &Fixture::id);
    if (fixture == matchday_.fixtures.end() || fixture->status == Fixture::Status::finished) return std::nullopt;
    return 8'000 + 1'375 * static_cast<std::int64_t>(clubOf(fixture->home));
}

JSONDictionary Season::playOn(int minutes) {
    using enum Fixture::Status;
    if (std::ranges::find(matchday_.fixtures, live, &Fixture::status) == matchday_.fixtures.end()) {
        // Nobody wants to wait for the late games.
        for (Fixture& fixture : matchday_.fixtures) {
            if (fixture.status != upcoming) continue;
            fixture.status = live;
            fixture.score.emplace();
        }
    }
    JSONArray goals;
    for (Fixture& fixture : matchday_.fixtures) {
        const std::size_t home = clubOf(fixture.home);
        const std::size_t away = clubOf(fixture.away);
        for (int i = 0; i < minutes && fixture.status == live; ++i) {
            ++fixture.minute;
            Score& score = *fixture.score;
            for (auto [club, tally] : {std::pair{home, &score.home}, {away, &score.away}}) {
                if (goalsBy(club, 1) == 0) continue;
                ++*tally;
                goals.append(JSONDictionary{{"fixture", fixture.id.value()},
                                            {"team", teamID(club).value()},
                                            {"minute", fixture.minute},
                                            {"homeGoals", score.home},
                                            {"awayGoals", score.away}});
            }
            if (fixture.minute < fullTime) continue;
            fixture.status = finished;
            enterResult(home, away, score);
        }
    }
    return {{"goals", goals}};
}

}  // namespace matchday
