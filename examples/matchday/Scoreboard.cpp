#include "Scoreboard.hpp"

#include <algorithm>
#include <utility>

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPMethods.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

#include "Table.hpp"

namespace matchday {
namespace {

using corvane::JSONDictionary;
using corvane::JSONValue;
using corvane::SimpleHttpManager;

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

Table::Cell formCell(const std::string& form) {
    std::string spaced;
    for (const char result : form)
        spaced += fmt::format("{}{}", spaced.empty() ? "" : " ", result);
    return {spaced, Style::faint};
}

}  // namespace

std::shared_ptr<Scoreboard> Scoreboard::make(Terminal& terminal, std::string backend, End onEnd) {
    return std::shared_ptr<Scoreboard>(new Scoreboard(terminal, std::move(backend), std::move(onEnd)));
}

Scoreboard::Scoreboard(Terminal& terminal, std::string backend, End onEnd)
    : terminal_(terminal), downloads_(std::move(backend)), onEnd_(std::move(onEnd)) {}

template <class Step>
Downloads::Done Scoreboard::then(Step step) {
    return [weak = weak_from_this(), step = std::move(step)](const Download& download) {
        const auto self = weak.lock();
        if (!self || !self->onEnd_) return;
        if (const auto json = self->take(download)) step(*self, download, *json);
    };
}

template <class Model, class Reader>
Downloads::Done Scoreboard::thenRead(Model Scoreboard::* model, Reader read) {
    return then([model, read](Scoreboard& self, const Download& download, const JSONValue& json) {
        auto content = read(json);
        if (!content) return self.end(download.path + " is not what it should be");
        self.*model = *std::move(content);
        if (download.path == fixturesPath) self.fixturesDate_ = download.response.lastModified();
        if (--self.pendingCount_ == 0) self.showOpening();
    });
}

void Scoreboard::start() {
    SimpleHttpManager::sharedInstance()->setDelegate(weak_from_this());
    load();
}

void Scoreboard::load() {
    if (const auto session = sessionText(teams_)) terminal_.line(*session);
    heading("Loading");
    pendingCount_ = 2;
    downloads_.get("/v1/standings", {}, thenRead(&Scoreboard::standings_, readStandings));
    downloads_.get(fixturesPath, {}, thenRead(&Scoreboard::matchday_, readMatchday));
}

void Scoreboard::showOpening() {
    printFixtures({});
    printStandings();
    askWhetherChanged();
}

void Scoreboard::askWhetherChanged() {
    heading("Anything new?");
    downloads_.get(fixturesPath, {.ifModifiedSince = fixturesDate_},
                   then([](Scoreboard& self, const Download& download, const JSONValue&) {
                       if (!download.response.isNotModified()) return self.end("the fixtures came twice");
                       self.terminal_.line(fmt::format("  Unchanged since {}.", *self.fixturesDate_));
                       self.predict();
                   }));
}

void Scoreboard::predict() {
    heading("A prediction");
    const auto next = std::ranges::find(matchday_.fixtures, Fixture::Status::upcoming, &Fixture::status);
    if (next == matchday_.fixtures.end()) return follow();
    const Score guess{2, 1};
    const JSONDictionary payload{{"fixture", next->id}, {"home", guess.first}, {"away", guess.second}};
    const std::string what = fmt::format("{} {} {}", name(next->home), text(guess), name(next->away));
    downloads_.post("/v1/predictions", payload, then([what](Scoreboard& self, const Download&, const JSONValue& json) {
                        const std::string receipt = printable(json["receipt"].asString().value_or("none"));
                        self.terminal_.line(fmt::format("  {}, receipt {}.", what, receipt));
                        self.follow();
                    }));
}

void Scoreboard::follow() {
    heading("Live");
    downloads_.get("/v1/live", {.isEphemeral = true},
                   then([](Scoreboard& self, const Download& download, const JSONValue& json) {
                       const auto goals = readGoals(json);
                       if (!goals) return self.end(download.path + " is not what it should be");
                       self.showChanges(*goals);
                   }));
}

void Scoreboard::showChanges(const std::vector<Goal>& goals) {
    std::set<std::int64_t> changed;
    for (const Goal& goal : goals) {
        changed.insert(goal.fixture);
        const auto fixture = std::ranges::find(matchday_.fixtures, goal.fixture, &Fixture::id);
        if (fixture == matchday_.fixtures.end()) continue;
        terminal_.line(fmt::format("  {:>3}′  {}  {} {} {}", goal.minute,
                                   terminal_.styled(Style::live, fmt::format("Goal for {}!", name(goal.team))),
                                   name(fixture->home), text(goal.score), name(fixture->away)));
    }
    if (goals.empty()) terminal_.line("  No goals since.");
    downloads_.get(fixturesPath, {.ifModifiedSince = fixturesDate_},
                   then([changed](Scoreboard& self, const Download& download, const JSONValue& json) {
                       auto matchday = readMatchday(json);
                       if (!matchday) return self.end(download.path + " is not what it should be");
                       self.matchday_ = *std::move(matchday);
                       self.printFixtures(changed);
                       self.reportVisit();
                   }));
}

void Scoreboard::reportVisit() {
    heading("Goodbye");
    const auto url = downloads_.url("/v1/visits");
    const auto body = corvane::JSONSerialization::data(JSONDictionary{{"requests", requestCount_}});
    if (!url || !body) return end("the visit cannot be reported");
    corvane::URLRequest request(*url);
    request.setHttpMethod(std::string(corvane::HTTPMethods::post));
    request.setHttpBody(*body);
    SimpleHttpManager::sharedInstance()->startBackgroundTask(std::move(request), "/v1/visits");
}

void Scoreboard::backgroundTaskDidLoad(corvane::URLSessionDataTask& task, const JSONDictionary& json) {
    if (!onEnd_) return;
    const auto count = json["requests"].asInt64().value_or(0);
    terminal_.line(fmt::format("  {:<4}  {:<16}  background  {} requests reported.",
                               task.originalRequest().httpMethod(), task.taskDescription(), count));
    end();
}

void Scoreboard::backgroundTaskDidFail(corvane::URLSessionDataTask& task, const corvane::AnyError& error) {
    end(task.taskDescription() + ": " + error.localizedDescription());
}

void Scoreboard::end(std::optional<std::string> failure) {
    if (const End onEnd = std::exchange(onEnd_, nullptr)) onEnd(std::move(failure));
}

std::optional<JSONValue> Scoreboard::take(const Download& download) {
    ++requestCount_;
    printRequest(download);
    auto failure = failureText(download.response);
    if (!failure && download.response.isNotModified()) return JSONValue();
    if (const auto& body = download.response.data(); body && !failure) {
        auto json = corvane::JSONSerialization::jsonObject(*body);
        if (json && terminal_.isWritable()) return *std::move(json);
        if (!json) failure = json.error().localizedDescription();
    }
    end(failure ? std::optional(download.path + ": " + *failure) : std::nullopt);
    return std::nullopt;
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

void Scoreboard::printRequest(const Download& download) {
    const auto& response = download.response;
    const auto& body = response.data();
    const int status = response.statusCode().value_or(0);
    const Style style = response.error() || corvane::HTTPStatusCode::isClientOrServerError(status) ? Style::bad
                        : response.isNotModified()                                                 ? Style::faint
                                                                                                   : Style::good;
    terminal_.line(fmt::format("  {:<4}  {:<16}  {:<10}  {}  {:>9}  {:>9}", download.method, download.path,
                               download.isEphemeral ? "ephemeral" : "default",
                               terminal_.styled(style, status != 0 ? text(status) : "---"),
                               body ? sizeText(body->size()) : "no body", durationText(download.milliseconds)));
}

void Scoreboard::printFixtures(const std::set<std::int64_t>& changed) {
    heading(fmt::format("{}, matchday {}", matchday_.competition, matchday_.number));
    using enum Table::Alignment;
    Table table({{" ", left}, {"Kick-off", left}, {"Home", right}, {"", center}, {"Away", left}, {"", left}});
    for (const Fixture& fixture : matchday_.fixtures) {
        if (!filter_.isAllowed(name(fixture.home)) && !filter_.isAllowed(name(fixture.away))) continue;
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
