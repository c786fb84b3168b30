#include "Scoreboard.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPMethods.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

#include "Table.hpp"
#include "Texts.hpp"

namespace matchday {
namespace {

using corvane::JSONDictionary;
using corvane::JSONUtils;
using corvane::SimpleHttpManager;
using corvane::Task;

constexpr std::size_t shownStandings = 8;

std::string text(std::int64_t number) {
    return fmt::format("{}", number);
}

std::string text(const Score& score) {
    return fmt::format("{} – {}", score.home, score.away);
}

std::string statusText(const Fixture& fixture) {
    switch (fixture.status) {
        case Fixture::Status::upcoming:
            return "";
        case Fixture::Status::live:
            return fmt::format("{}′", fixture.minute);
        case Fixture::Status::finished:
            return "full time";
    }
    return "";
}

template <class T>
corvane::TaskHandle<T> spawnOnMain(Task<T> task) {
    return corvane::spawn(corvane::onMain(std::move(task)));
}

std::string failureText(const Download& download) {
    const auto* const failure = download.result.asFailure();
    return download.path + ": " + (failure != nullptr ? failure->reason.errorDescription() : "nothing came");
}

JSONDictionary prediction(const Fixture& fixture, const Score& guess) {
    return {{"fixture", fixture.id.value()}, {"home", guess.home}, {"away", guess.away}};
}

Table::Cell formCell(const std::string& form) {
    std::string spaced;
    for (const char result : form)
        spaced += fmt::format("{}{}", spaced.empty() ? "" : " ", result);
    return {spaced, Style::faint};
}

}  // namespace

std::shared_ptr<Scoreboard> Scoreboard::make(Terminal& terminal, const std::string& backend, End onEnd) {
    return std::shared_ptr<Scoreboard>(new Scoreboard(terminal, backend, std::move(onEnd)));
}

Scoreboard::Scoreboard(Terminal& terminal, const std::string& backend, End onEnd)
    : terminal_(terminal),
      backend_(backend),
      onEnd_(std::move(onEnd)),
      downloads_(Downloads::make(backend,
                                 [&terminal](const std::string& path) {
                                     terminal.line(
                                         fmt::format("  GET   {:<26}  {:>9}  replaced by a newer load", path, ""));
                                 })),
      league_(backend, std::bind_front(&Scoreboard::printAnswer, this)) {}

void Scoreboard::start() {
    SimpleHttpManager::sharedInstance()->setDelegate(weak_from_this());
    corvane::spawn(corvane::onMain(play(shared_from_this())));
}

Task<> Scoreboard::play(std::shared_ptr<Scoreboard> self) {
    if (const auto session = sessionText(self->names_)) self->terminal_.line(*session);
    static constexpr std::array acts{&Scoreboard::load,          &Scoreboard::askAgain, &Scoreboard::predict,
                                     &Scoreboard::lookAtDetails, &Scoreboard::readNews, &Scoreboard::meetFaults,
                                     &Scoreboard::follow};
    for (const auto act : acts) {
        const Failure failure = co_await ((*self).*act)();
        if (failure || !self->terminal_.isWritable()) co_return self->end(failure);
    }
    self->summarize();
    self->reportVisit();
}

Task<Scoreboard::Failure> Scoreboard::load() {
    heading("Loading");
    // Four places of the screen ask at once, none of them knowing of the others.
    const auto list = spawnOnMain(league_.fixtures("list", true));
    const auto ticker = spawnOnMain(league_.fixtures("ticker", true));
    const auto table = spawnOnMain(league_.standings("table", true));
    const auto details = spawnOnMain(league_.teams("details", true));
    const auto fixtures = co_await list.value();
    const auto same = co_await ticker.value();
    const auto standings = co_await table.value();
    const auto teams = co_await details.value();
    if (!fixtures) co_return fixtures.error();
    if (!standings) co_return standings.error();
    if (!teams) co_return teams.error();
    if (same != fixtures) co_return "the list and the ticker show different games";
    matchday_ = *fixtures;
    standings_ = *standings;
    teams_ = *teams;
    printFixtures({});
    printStandings();
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::askAgain() {
    heading("Asking again");
    // What is good enough differs: the table is asked for every time, the teams are fresh for an hour.
    const auto fixtures = co_await league_.fixtures("ticker", true);
    const auto standings = co_await league_.standings("table", false);
    const auto teams = co_await league_.teams("details", false);
    if (!fixtures) co_return fixtures.error();
    if (!standings) co_return standings.error();
    if (!teams) co_return teams.error();
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::predict() {
    const auto next = std::ranges::find(matchday_->fixtures, Fixture::Status::upcoming, &Fixture::status);
    if (next == matchday_->fixtures.end()) co_return std::nullopt;
    heading("A prediction");
    const Score guess{2, 1};
    const Downloads::Options options{.usesCache = false, .payload = prediction(*next, guess)};
    const auto answer = co_await ask("/v1/predictions", options);
    if (answer.json() == nullptr) co_return failureText(answer);
    terminal_.line(fmt::format("  {} {} {}, receipt {}.", name(next->home), text(guess), name(next->away),
                               printable(JSONUtils::getStringFromJSON(*answer.json(), "receipt", "none"))));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::lookAtDetails() {
    const auto over = std::ranges::find(matchday_->fixtures, Fixture::Status::finished, &Fixture::status);
    const auto live = std::ranges::find(matchday_->fixtures, Fixture::Status::live, &Fixture::status);
    if (over == matchday_->fixtures.end() || live == matchday_->fixtures.end()) co_return std::nullopt;
    heading("Details");
    const auto path = [](const Fixture& fixture) { return fmt::format("/v1/details?fixture={}", fixture.id.value()); };
    // The user opens one game and then another: only the one that is on screen is waited for.
    const Downloads::Options options{.context = "details"};
    downloads_->load(path(*over), options, {});
    const auto details = co_await ask(path(*live), options);
    if (details.json() == nullptr) co_return failureText(details);
    const auto team = std::ranges::find(teams_->teams, live->home, &Team::id);
    const std::string ground = team != teams_->teams.end() ? printable(team->ground) : "an unknown ground";
    terminal_.line(fmt::format("  {} against {}: {} spectators at {}.", name(live->home), name(live->away),
                               JSONUtils::getIntFromJSON(*details.json(), "spectators", 0), ground));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::readNews() {
    heading("News");
    const auto news = co_await ask("/v1/news");
    if (news.json() == nullptr) co_return failureText(news);
    const Downloads::Options cachedRoad{.ifModifiedSince = news.lastModified()};
    const Downloads::Options plainRoad{.usesCache = false, .ifModifiedSince = news.lastModified()};
    const auto kept = co_await ask("/v1/news", cachedRoad);
    co_await ask("/v1/news", plainRoad);
    if (kept.json() == nullptr) co_return failureText(kept);
    terminal_.line(fmt::format("  {}.", printable(JSONUtils::getStringFromJSON(*kept.json(), "headline", "None"))));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::meetFaults() {
    heading("What is out of order");
    co_await ask("/v1/lineups");
    co_await ask("/v1/report");
    for (const auto& [url, code] : downloads_->failures().failures()) {
        terminal_.line(fmt::format("  Tracked: {}, code {}.", printable(url), code));
    }
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::follow() {
    heading("Live");
    const auto live = co_await ask("/v1/live");
    if (live.json() == nullptr) co_return failureText(live);
    const auto goals =
        Goal::parseArray(JSONUtils::getArrayFromJSON(*live.json(), "goals")).value_or(std::vector<Goal>());
    std::set<FixtureID> changed;
    for (const Goal& goal : goals) {
        changed.insert(goal.fixture);
        const auto fixture = std::ranges::find(matchday_->fixtures, goal.fixture, &Fixture::id);
        if (fixture == matchday_->fixtures.end() || !isShown(*fixture)) continue;
        terminal_.line(fmt::format("  {:>3}′  {}  {} {} {}", goal.minute,
                                   terminal_.styled(Style::live, fmt::format("Goal for {}!", name(goal.team))),
                                   name(fixture->home), text(goal.score), name(fixture->away)));
    }
    if (goals.empty()) terminal_.line("  No goals since.");
    const auto fixtures = co_await league_.fixtures("list", false);
    if (!fixtures) co_return fixtures.error();
    matchday_ = *fixtures;
    printFixtures(changed);
    co_return std::nullopt;
}

void Scoreboard::summarize() {
    heading("Summary");
    const League::Summary summary = league_.summary();
    terminal_.line(fmt::format("  {} asks of the repositories came to {} requests, {} of them answered with a 304.",
                               summary.asks, summary.requests, summary.notModified));
    terminal_.line(
        fmt::format("  {} received, {} saved.", sizeText(summary.bytesReceived), sizeText(summary.bytesSaved)));
}

void Scoreboard::reportVisit() {
    heading("Goodbye");
    const auto url = corvane::URL::parse(backend_ + "/v1/visits");
    const auto body = corvane::JSONSerialization::data(JSONDictionary{{"requests", requestCount_}});
    if (!url || !body) return end("the visit cannot be reported");
    corvane::URLRequest request(*url);
    request.setHttpMethod(std::string(corvane::HTTPMethods::post));
    request.setHttpBody(*body);
    SimpleHttpManager::sharedInstance()->startBackgroundTask(std::move(request), "/v1/visits");
}

void Scoreboard::backgroundTaskDidLoad(corvane::URLSessionDataTask& task, const JSONDictionary& json) {
    terminal_.line(fmt::format("  {:<4}  {:<22}  background, {} requests reported.",
                               task.originalRequest().httpMethod(), task.taskDescription(),
                               JSONUtils::getIntFromJSON(json, "requests", 0)));
    end();
}

void Scoreboard::backgroundTaskDidFail(corvane::URLSessionDataTask& task, const corvane::AnyError& error) {
    end(task.taskDescription() + ": " + error.localizedDescription());
}

void Scoreboard::end(Failure failure) {
    if (const End onEnd = std::exchange(onEnd_, nullptr)) onEnd(std::move(failure));
}

Task<Download> Scoreboard::ask(std::string path, const Downloads::Options& options) {
    ++requestCount_;
    Download download = co_await downloads_->load(std::move(path), options);
    printDownload(download);
    co_return download;
}

bool Scoreboard::isShown(const Fixture& fixture) const {
    return filter_.isAllowed(name(fixture.home)) || filter_.isAllowed(name(fixture.away));
}

const std::string& Scoreboard::name(const TeamID& team) const {
    static const std::string unknown = "?";
    const auto found = names_.find(team);
    return found != names_.end() ? found->second : unknown;
}

void Scoreboard::heading(std::string_view text) {
    terminal_.line();
    terminal_.line(terminal_.styled(Style::strong, text));
}

void Scoreboard::printAnswer(std::string_view who, std::string_view what,
                             const corvane::FetchResultMetadata& metadata) {
    const auto yesOrNo = [](bool flag) { return flag ? "yes" : "no"; };
    const auto& created = metadata.cacheCreationTimestamp;
    const double age = created ? std::max(0.0, corvane::DateUtil::now() - *created) : 0;
    terminal_.line(fmt::format("  {:<9}  for the {:<7}  cache asked: {:<3}  it answered: {:<3}  age: {}", what, who,
                               yesOrNo(metadata.cachedDataRequested), yesOrNo(metadata.cachedDataReturned),
                               created ? durationText(1000 * age) : "none"));
}

void Scoreboard::printDownload(const Download& download) {
    const auto* const failure = download.result.asFailure();
    const bool isUnchanged = download.isKeptCopy || download.result.isNotModified();
    const std::string outcome = failure != nullptr                ? printable(failure->reason.errorDescription())
                                : download.isKeptCopy             ? "304, the kept copy"
                                : download.result.isNotModified() ? "304, nothing new"
                                                                  : "from the network";
    const Style style = failure != nullptr ? Style::bad : isUnchanged ? Style::faint : Style::good;
    terminal_.line(fmt::format("  {:<4}  {:<26}  {:>9}  {}", download.method, download.path,
                               durationText(download.milliseconds), terminal_.styled(style, outcome)));
}

void Scoreboard::printFixtures(const std::set<FixtureID>& changed) {
    heading(fmt::format("{}, matchday {}", printable(matchday_->competition), matchday_->number));
    using enum Table::Alignment;
    Table table({{" ", left}, {"Kick-off", left}, {"Home", right}, {"", center}, {"Away", left}, {"", left}});
    for (const Fixture& fixture : matchday_->fixtures) {
        if (!isShown(fixture)) continue;
        const bool isLive = fixture.status == Fixture::Status::live;
        table.add({{changed.contains(fixture.id) ? "•" : "", Style::live},
                   {corvane::DateUtil::sharedInstance()->formatTimeOnly(fixture.kickOff), Style::faint},
                   {name(fixture.home)},
                   {fixture.score ? text(*fixture.score) : "–", isLive ? Style::live : Style::strong},
                   {name(fixture.away)},
                   {statusText(fixture), isLive ? Style::live : Style::faint}});
    }
    table.print(terminal_);
}

void Scoreboard::printStandings() {
    heading("Standings");
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
    for (const Standing& standing : standings_->standings) {
        if (++place > static_cast<std::int64_t>(shownStandings)) break;
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
    table.print(terminal_);
    if (standings_->standings.size() > shownStandings) {
        terminal_.line(terminal_.styled(Style::faint,
                                        fmt::format("  … and {} more", standings_->standings.size() - shownStandings)));
    }
}

}  // namespace matchday
