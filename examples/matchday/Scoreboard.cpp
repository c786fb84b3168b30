#include "Scoreboard.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/format.h>

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

constexpr const char* fixturesPath = "/v1/fixtures";
constexpr std::size_t shownStandings = 8;

std::string text(std::int64_t number) {
    return fmt::format("{}", number);
}

std::string text(const Score& score) {
    return fmt::format("{} – {}", score.first, score.second);
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

std::string failureText(const Download& download) {
    const auto* const failure = download.result.asFailure();
    return download.path + ": " + (failure != nullptr ? failure->reason.errorDescription() : "nothing came");
}

JSONDictionary prediction(const Fixture& fixture, const Score& guess) {
    return {{"fixture", fixture.id}, {"home", guess.first}, {"away", guess.second}};
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
      downloads_(Downloads::make(backend, [&terminal](const std::string& path) {
          terminal.line(fmt::format("  GET   {:<22}  replaced by a newer load", path));
      })) {}

void Scoreboard::start() {
    SimpleHttpManager::sharedInstance()->setDelegate(weak_from_this());
    corvane::spawn(corvane::onMain(play(shared_from_this())));
}

Task<> Scoreboard::play(std::shared_ptr<Scoreboard> self) {
    if (const auto session = sessionText(self->teams_)) self->terminal_.line(*session);
    static constexpr std::array acts{&Scoreboard::load,          &Scoreboard::askWhetherChanged, &Scoreboard::predict,
                                     &Scoreboard::lookAtDetails, &Scoreboard::meetFaults,        &Scoreboard::follow};
    for (const auto act : acts) {
        const Failure failure = co_await ((*self).*act)();
        if (failure || !self->terminal_.isWritable()) co_return self->end(failure);
    }
    self->reportVisit();
}

Task<Scoreboard::Failure> Scoreboard::load() {
    heading("Loading");
    const auto table = co_await ask("/v1/standings");
    const auto fixtures = co_await ask(fixturesPath);
    if (table.json() == nullptr) co_return failureText(table);
    if (fixtures.json() == nullptr) co_return failureText(fixtures);
    auto standings = readStandings(*table.json());
    auto matchday = readMatchday(*fixtures.json());
    if (!standings || !matchday) co_return "the league's documents are not what they should be";
    standings_ = *std::move(standings);
    matchday_ = *std::move(matchday);
    fixturesDate_ = fixtures.lastModified();
    printFixtures({});
    printStandings();
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::askWhetherChanged() {
    heading("Anything new?");
    const Downloads::Options cachedRoad{.ifModifiedSince = fixturesDate_};
    const Downloads::Options plainRoad{.usesCache = false, .ifModifiedSince = fixturesDate_};
    const auto kept = co_await ask(fixturesPath, cachedRoad);
    const auto plain = co_await ask(fixturesPath, plainRoad);
    if (!kept.isKeptCopy || !plain.result.isNotModified()) co_return "the fixtures came twice";
    terminal_.line(fmt::format("  Unchanged since {}.", printable(*fixturesDate_)));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::predict() {
    const auto next = std::ranges::find(matchday_.fixtures, Fixture::Status::upcoming, &Fixture::status);
    if (next == matchday_.fixtures.end()) co_return std::nullopt;
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
    const auto over = std::ranges::find(matchday_.fixtures, Fixture::Status::finished, &Fixture::status);
    const auto live = std::ranges::find(matchday_.fixtures, Fixture::Status::live, &Fixture::status);
    if (over == matchday_.fixtures.end() || live == matchday_.fixtures.end()) co_return std::nullopt;
    heading("Details");
    const auto path = [](const Fixture& fixture) { return fmt::format("/v1/details?fixture={}", fixture.id); };
    // The user opens one game and then another: only the one that is on screen is waited for.
    const Downloads::Options options{.context = "details"};
    downloads_->load(path(*over), options, {});
    const auto details = co_await ask(path(*live), options);
    if (details.json() == nullptr) co_return failureText(details);
    terminal_.line(fmt::format("  {} against {}: {} at {}.", name(live->home), name(live->away),
                               JSONUtils::getIntFromJSON(*details.json(), "spectators", 0),
                               printable(JSONUtils::getStringFromJSON(*details.json(), "stadium", "?"))));
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
    const auto goals = readGoals(*live.json());
    if (!goals) co_return "the goals are not what they should be";
    std::set<std::int64_t> changed;
    for (const Goal& goal : *goals) {
        changed.insert(goal.fixture);
        const auto fixture = std::ranges::find(matchday_.fixtures, goal.fixture, &Fixture::id);
        if (fixture == matchday_.fixtures.end() || !isShown(*fixture)) continue;
        terminal_.line(fmt::format("  {:>3}′  {}  {} {} {}", goal.minute,
                                   terminal_.styled(Style::live, fmt::format("Goal for {}!", name(goal.team))),
                                   name(fixture->home), text(goal.score), name(fixture->away)));
    }
    if (goals->empty()) terminal_.line("  No goals since.");
    const Downloads::Options options{.ifModifiedSince = fixturesDate_};
    const auto fixtures = co_await ask(fixturesPath, options);
    if (fixtures.json() == nullptr) co_return failureText(fixtures);
    auto matchday = readMatchday(*fixtures.json());
    if (!matchday) co_return "the fixtures are not what they should be";
    matchday_ = *std::move(matchday);
    printFixtures(changed);
    co_return std::nullopt;
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

const std::string& Scoreboard::name(std::int64_t team) const {
    static const std::string unknown = "?";
    const auto found = teams_.find(team);
    return found != teams_.end() ? found->second : unknown;
}

void Scoreboard::heading(std::string_view text) {
    terminal_.line();
    terminal_.line(terminal_.styled(Style::strong, text));
}

void Scoreboard::printDownload(const Download& download) {
    const auto* const failure = download.result.asFailure();
    const bool isUnchanged = download.isKeptCopy || download.result.isNotModified();
    const std::string outcome = failure != nullptr                ? printable(failure->reason.errorDescription())
                                : download.isKeptCopy             ? "304, the kept copy"
                                : download.result.isNotModified() ? "304, nothing new"
                                                                  : "from the network";
    const Style style = failure != nullptr ? Style::bad : isUnchanged ? Style::faint : Style::good;
    terminal_.line(fmt::format("  {:<4}  {:<22}  {:>9}  {}", download.method, download.path,
                               durationText(download.milliseconds), terminal_.styled(style, outcome)));
}

void Scoreboard::printFixtures(const std::set<std::int64_t>& changed) {
    heading(fmt::format("{}, matchday {}", matchday_.competition, matchday_.number));
    using enum Table::Alignment;
    Table table({{" ", left}, {"Kick-off", left}, {"Home", right}, {"", center}, {"Away", left}, {"", left}});
    for (const Fixture& fixture : matchday_.fixtures) {
        if (!isShown(fixture)) continue;
        const bool isLive = fixture.status == Fixture::Status::live;
        table.add({{changed.contains(fixture.id) ? "•" : "", Style::live},
                   {fmt::format("{:%H:%M}", fmt::localtime(fixture.kickOff)), Style::faint},
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
    for (const Standing& standing : standings_) {
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
    if (standings_.size() > shownStandings) {
        terminal_.line(
            terminal_.styled(Style::faint, fmt::format("  … and {} more", standings_.size() - shownStandings)));
    }
}

}  // namespace matchday
