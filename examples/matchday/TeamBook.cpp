#include "TeamBook.hpp"

#include <utility>

#include <fmt/format.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Dates/InstantOperations.hpp>
#include <Corvane/Platform/Dates/DateComponentsFormatter.hpp>
#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Text/LetterCase.hpp>

namespace matchday {
namespace {

std::string text(std::int64_t number) {
    return fmt::format("{}", number);
}

/// "in 1h 47m"
std::string countdown(corvane::Date kickOff) {
    using corvane::CalendarUnit;
    static const corvane::DateComponentsFormatter formatter{
        .allowedUnits = CalendarUnit::hour | CalendarUnit::minute,
        .unitsStyle = corvane::DateComponentsFormatter::UnitsStyle::abbreviated,
        .locale = corvane::Locale("en_US")};
    const auto seconds = corvane::secondsToNow(kickOff);
    const auto left = seconds && *seconds < 0 ? formatter.string(-static_cast<double>(*seconds)) : std::nullopt;
    return left ? "in " + *left : "soon";
}

std::string statusText(const Fixture& fixture) {
    switch (fixture.status) {
        case Fixture::Status::upcoming:
            return countdown(fixture.kickOff);
        case Fixture::Status::live:
            return fmt::format("{}′", fixture.minute);
        case Fixture::Status::finished:
            return "full time";
    }
    return "";
}

Table::Cell formCell(const std::string& form) {
    std::string spaced;
    for (const char result : form)
        spaced += fmt::format("{}{}", spaced.empty() ? "" : " ", result);
    return {spaced, Style::faint};
}

}  // namespace

std::string text(const Score& score) {
    return fmt::format("{} – {}", score.home, score.away);
}

const std::string& TeamBook::name(const TeamID& team) const {
    static const std::string unknown = "?";
    const auto found = names_.find(team);
    return found != names_.end() ? found->second : unknown;
}

std::expected<void, std::string> TeamBook::showOnly(const std::vector<std::string>& texts) {
    std::vector<std::string> shown;
    for (const std::string& text : texts) {
        const std::size_t before = shown.size();
        for (const auto& [id, name] : names_) {
            if (corvane::uppercased(name).contains(corvane::uppercased(text))) shown.push_back(name);
        }
        if (shown.size() == before) return std::unexpected(fmt::format("no team is called '{}'", printable(text)));
    }
    filter_ = TeamFilter(std::nullopt, shown.empty() ? std::nullopt : std::optional(shown));
    return keepFilter(std::move(shown));
}

Table TeamBook::fixturesTable(const Matchday& matchday, const std::set<FixtureID>& changed) const {
    using enum Table::Alignment;
    static const corvane::DateFormatter utc("HH:mm", corvane::Locale("en_US_POSIX"), corvane::TimeZone::utc());
    Table table(
        {{" ", left}, {"Kick-off", left}, {"UTC", left}, {"Home", right}, {"", center}, {"Away", left}, {"", left}});
    for (const Fixture& fixture : matchday.fixtures) {
        if (!isShown(fixture)) continue;
        const bool isLive = fixture.status == Fixture::Status::live;
        table.add({{changed.contains(fixture.id) ? "•" : "", Style::live},
                   {corvane::DateUtil::sharedInstance()->formatTimeOnly(fixture.kickOff)},
                   {utc.string(fixture.kickOff), Style::faint},
                   {name(fixture.home)},
                   {fixture.score ? text(*fixture.score) : "–", isLive ? Style::live : Style::strong},
                   {name(fixture.away)},
                   {statusText(fixture), isLive ? Style::live : Style::faint}});
    }
    return table;
}

Table TeamBook::standingsTable(const Standings& standings) const {
    using enum Table::Alignment;
    Table table({{"", right},
                 {"Team", left},
                 {"P", right},
                 {"W", right},
                 {"D", right},
                 {"L", right},
                 {"Goals", center},
                 {"Diff", right},
                 {"Pts", right},
                 {"Form", left}});
    std::int64_t place = 0;
    for (const Standing& standing : standings.standings) {
        ++place;
        if (!isShown(standing.team)) continue;
        table.add({{text(place), Style::faint},
                   {name(standing.team)},
                   {text(standing.played)},
                   {text(standing.won)},
                   {text(standing.drawn)},
                   {text(standing.lost)},
                   {fmt::format("{:>2}:{:<2}", standing.scored, standing.conceded)},
                   {fmt::format("{:+}", standing.scored - standing.conceded)},
                   {text(standing.points), Style::strong},
                   formCell(standing.form)});
    }
    return table;
}

}  // namespace matchday
