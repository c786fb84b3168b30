#include "Season.hpp"

#include <algorithm>
#include <array>
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
constexpr std::time_t quarterHour = 15 * 60;
constexpr int fullTime = 90;

int clubId(std::size_t club) {
    return 101 + static_cast<int>(club);
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

void Season::Record::add(int goals, int goalsAgainst) {
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

Season::Season(std::time_t now) : records_(clubCount) {
    playEarlierRounds();
    kickOffToday(now);
}

void Season::playEarlierRounds() {
    for (int round = 1; round < matchdayNumber; ++round) {
        for (std::size_t i = 0; i < fixtureCount; ++i) {
            const auto [home, away] = pairing(round, i);
            Match match{.home = home, .away = away};
            match.homeGoals = goalsBy(home, fullTime);
            match.awayGoals = goalsBy(away, fullTime);
            enterResult(match);
        }
    }
}

void Season::kickOffToday(std::time_t now) {
    struct Slot {
        int quarterHoursFromNow;
        Status status;
        int minute;
    };

    constexpr std::array<Slot, fixtureCount> slots = {{
        {-9, Status::finished, fullTime},
        {-9, Status::finished, fullTime},
        {-5, Status::live, 63},
        {-5, Status::live, 63},
        {-4, Status::live, 47},
        {-4, Status::live, 47},
        {4, Status::upcoming, 0},
        {8, Status::upcoming, 0},
    }};
    for (std::size_t i = 0; i < fixtureCount; ++i) {
        const auto [home, away] = pairing(matchdayNumber, i);
        const Match match{.id = 1201 + static_cast<int>(i),
                          .home = home,
                          .away = away,
                          .kickOff = (now / quarterHour + slots[i].quarterHoursFromNow) * quarterHour,
                          .status = slots[i].status,
                          .minute = slots[i].minute,
                          .homeGoals = goalsBy(home, slots[i].minute),
                          .awayGoals = goalsBy(away, slots[i].minute)};
        if (match.status == Status::finished) enterResult(match);
        today_.push_back(match);
    }
}

int Season::goalsBy(std::size_t club, int minutes) {
    // The earlier in the list, the stronger: a goal in every 50 to 110 minutes.
    const auto pace = static_cast<unsigned>(50 + 4 * club);
    int goals = 0;
    for (int minute = 0; minute < minutes; ++minute)
        goals += random_() % pace == 0 ? 1 : 0;
    return goals;
}

void Season::enterResult(const Match& match) {
    records_[match.home].add(match.homeGoals, match.awayGoals);
    records_[match.away].add(match.awayGoals, match.homeGoals);
}

JSONDictionary Season::fixtures() const {
    JSONArray fixtures;
    for (const Match& match : today_) {
        JSONDictionary fixture{{"id", match.id},
                               {"home", clubId(match.home)},
                               {"away", clubId(match.away)},
                               {"kickOff", match.kickOff},
                               {"status", name(match.status)}};
        if (match.status != Status::upcoming) {
            fixture.set("minute", match.minute);
            fixture.set("score", score(match));
        }
        fixtures.append(std::move(fixture));
    }
    return {{"competition", "Coastal League"}, {"matchday", matchdayNumber}, {"fixtures", fixtures}};
}

JSONDictionary Season::standings() const {
    std::vector<std::size_t> order(records_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto rank = [this](std::size_t club) {
        const Record& record = records_[club];
        return std::tuple(-record.points(), record.conceded - record.scored, -record.scored, club);
    };
    std::ranges::sort(order, {}, rank);

    JSONArray standings;
    for (const std::size_t club : order) {
        const Record& record = records_[club];
        standings.append(JSONDictionary{{"team", clubId(club)},
                                        {"played", record.won + record.drawn + record.lost},
                                        {"won", record.won},
                                        {"drawn", record.drawn},
                                        {"lost", record.lost},
                                        {"for", record.scored},
                                        {"against", record.conceded},
                                        {"points", record.points()},
                                        {"form", record.form.substr(record.form.size() - 5)}});
    }
    return {{"standings", standings}};
}

std::optional<JSONDictionary> Season::details(std::int64_t fixture) const {
    const auto match = std::ranges::find(today_, fixture, &Match::id);
    if (match == today_.end() || match->status == Status::finished) return std::nullopt;
    constexpr std::array grounds{"Harbour Park", "Old Mill Lane", "Lighthouse Road", "The Moorings"};
    return JSONDictionary{{"fixture", match->id},
                          {"stadium", grounds[match->home % grounds.size()]},
                          {"spectators", 8'000 + 1'375 * match->home}};
}

JSONDictionary Season::playOn(int minutes) {
    JSONArray goals;
    for (Match& match : today_) {
        for (int i = 0; i < minutes && match.status == Status::live; ++i) {
            ++match.minute;
            for (auto [club, tally] : {std::pair{match.home, &match.homeGoals}, {match.away, &match.awayGoals}}) {
                if (goalsBy(club, 1) == 0) continue;
                ++*tally;
                goals.append(JSONDictionary{
                    {"fixture", match.id}, {"team", clubId(club)}, {"minute", match.minute}, {"score", score(match)}});
            }
            if (match.minute < fullTime) continue;
            match.status = Status::finished;
            enterResult(match);
        }
    }
    return {{"goals", goals}};
}

std::string_view Season::name(Status status) noexcept {
    switch (status) {
        case Status::upcoming:
            return "upcoming";
        case Status::live:
            return "live";
        case Status::finished:
            return "finished";
    }
    return {};
}

JSONArray Season::score(const Match& match) {
    return {match.homeGoals, match.awayGoals};
}

}  // namespace matchday
