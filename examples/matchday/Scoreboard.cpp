#include "Scoreboard.hpp"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Dates/InstantOperations.hpp>
#include <Corvane/Dates/TimeZoneUtil.hpp>
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

/// Seconds that the opening waits for its documents.
constexpr double patience = 5;

std::string failureText(const Download& download) {
    const auto* const failure = download.result.asFailure();
    return download.path + ": " + (failure != nullptr ? failure->reason.errorDescription() : "nothing came");
}

JSONDictionary prediction(const Fixture& fixture, const Score& guess) {
    return {{"fixture", fixture.id.value()}, {"home", guess.home}, {"away", guess.away}};
}

}  // namespace

std::shared_ptr<Scoreboard> Scoreboard::make(Terminal& terminal, const std::string& backend, End onEnd) {
    std::shared_ptr<Scoreboard> board(new Scoreboard(terminal, backend, std::move(onEnd)));
    board->league_ =
        std::make_shared<League>(backend, [weak = std::weak_ptr(board)](std::string_view who, std::string_view what,
                                                                        const corvane::FetchResultMetadata& metadata) {
            if (const auto self = weak.lock()) self->printAnswer(who, what, metadata);
        });
    return board;
}

Scoreboard::Scoreboard(Terminal& terminal, const std::string& backend, End onEnd)
    : terminal_(terminal),
      backend_(backend),
      onEnd_(std::move(onEnd)),
      downloads_(Downloads::make(backend, [&terminal](const std::string& path) {
          terminal.line(fmt::format("  GET   {:<26}  {:>9}  replaced by a newer load", path, ""));
      })) {}

void Scoreboard::start() {
    SimpleHttpManager::sharedInstance()->setDelegate(weak_from_this());
    corvane::spawn(corvane::onMain(play(shared_from_this())));
}

void Scoreboard::press(char key) {
    if (live_) live_->press(key);
}

void Scoreboard::repaint() {
    if (live_) live_->repaint();
}

void Scoreboard::close() {
    if (!live_) return;
    live_->leave();
    sumUp();
}

Task<> Scoreboard::play(std::shared_ptr<Scoreboard> self) {
    if (const auto session = sessionText(self->book_->names())) self->terminal_.line(*session);
    auto reachability = corvane::Reachability::make();
    if (!reachability) co_return self->end(reachability.error().description());
    self->reachability_ = *std::move(reachability);
    self->terminal_.line(fmt::format("Connection: {}.", self->reachability_->currentReachabilityString()));
    static constexpr std::array acts{&Scoreboard::load,          &Scoreboard::askAgain, &Scoreboard::predict,
                                     &Scoreboard::lookAtDetails, &Scoreboard::readNews, &Scoreboard::meetFaults,
                                     &Scoreboard::follow};
    for (const auto act : acts) {
        const Failure failure = co_await ((*self).*act)();
        if (failure || !self->terminal_.isWritable()) co_return self->end(failure);
    }
    self->sumUp();
    self->reportVisit();
}

template <class Model>
void Scoreboard::fetch(std::string document, Task<League::Answer<Model>> answer,
                       std::shared_ptr<const Model> Scoreboard::* kept) {
    documents_.enter(document);
    corvane::spawn(corvane::onMain(keep(shared_from_this(), std::move(document), std::move(answer), kept)));
}

template <class Model>
Task<> Scoreboard::keep(std::shared_ptr<Scoreboard> self, std::string document, Task<League::Answer<Model>> answer,
                        std::shared_ptr<const Model> Scoreboard::* kept) {
    auto model = co_await std::move(answer);
    if (model) {
        (*self).*kept = *std::move(model);
    } else {
        self->terminal_.line("  " + self->terminal_.styled(Style::bad, printable(model.error())));
    }
    self->documents_.leave(document);
}

Task<Scoreboard::Failure> Scoreboard::load() {
    heading("Loading");
    co_await corvane::withContinuation<void>([this](const corvane::Continuation<void>& loaded) {
        // Four places of the screen ask at once, none of them knowing of the others.
        fetch("games for the list", league_->fixtures("list", true), &Scoreboard::matchday_);
        fetch("games for the ticker", league_->fixtures("ticker", true), &Scoreboard::matchday_);
        fetch("standings", league_->standings("table", true), &Scoreboard::standings_);
        fetch("teams", league_->teams("details", true), &Scoreboard::teams_);
        documents_.notify(corvane::DispatchQueue::main(), patience, [loaded] { loaded.tryResume(); });
    });
    for (const std::string& document : documents_.waitingItems())
        terminal_.line(fmt::format("  Waited too long for the {}.", document));
    documents_.invalidate();
    if (!matchday_ || !standings_ || !teams_) co_return "the league's documents cannot be had";
    const auto dates = corvane::DateUtil::sharedInstance();
    const corvane::Date today = corvane::Clock::current().now();
    const auto [dayOfWeek, date] = dates->barTitlesForDate(dates->localDateFrom(today), corvane::Locale("en_US"));
    printTable(
        fmt::format("{}, matchday {}, {} {}", printable(matchday_->competition), matchday_->number, dayOfWeek, date),
        book_->fixturesTable(*matchday_, {}));
    const std::string zone =
        fmt::format("  Kick-offs in {} (offset {}) and in UTC.", corvane::TimeZone::current().identifier(),
                    corvane::TimeZoneUtil::getTimeZoneOffset());
    terminal_.line(terminal_.styled(Style::faint, zone));
    printTable("Standings", book_->standingsTable(*standings_));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::askAgain() {
    heading("Asking again");
    // What is good enough differs: the table is asked for every time, the teams are fresh for an hour.
    const auto fixtures = co_await league_->fixtures("ticker", true);
    const auto standings = co_await league_->standings("table", false);
    const auto teams = co_await league_->teams("details", false);
    if (!fixtures) co_return fixtures.error();
    if (!standings) co_return standings.error();
    if (!teams) co_return teams.error();
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::predict() {
    const Fixture* const next = find(Fixture::Status::upcoming);
    if (next == nullptr) co_return std::nullopt;
    heading("A prediction");
    const Score guess{2, 1};
    const Downloads::Options options{.usesCache = false, .payload = prediction(*next, guess)};
    const auto answer = co_await ask("/v1/predictions", options);
    if (answer.json() == nullptr) co_return failureText(answer);
    terminal_.line(fmt::format("  {} {} {}, receipt {}.", book_->name(next->home), text(guess), book_->name(next->away),
                               printable(JSONUtils::getStringFromJSON(*answer.json(), "receipt", "none"))));
    co_return std::nullopt;
}

Task<Scoreboard::Failure> Scoreboard::lookAtDetails() {
    const Fixture* const over = find(Fixture::Status::finished);
    const Fixture* const live = find(Fixture::Status::live);
    if (over == nullptr || live == nullptr) co_return std::nullopt;
    heading("Details");
    const auto path = [](const Fixture& fixture) { return fmt::format("/v1/details?fixture={}", fixture.id.value()); };
    // The user opens one game and then another: only the one that is on screen is waited for.
    const Downloads::Options options{.context = "details"};
    downloads_->load(path(*over), options, {});
    const auto details = co_await ask(path(*live), options);
    if (details.json() == nullptr) co_return failureText(details);
    const auto team = std::ranges::find(teams_->teams, live->home, &Team::id);
    const std::string ground = team != teams_->teams.end() ? printable(team->ground) : "an unknown ground";
    terminal_.line(fmt::format("  {} against {}: {} spectators at {}.", book_->name(live->home),
                               book_->name(live->away), JSONUtils::getIntFromJSON(*details.json(), "spectators", 0),
                               ground));
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
    co_await corvane::withContinuation<void>([this](const corvane::Continuation<void>& seen) {
        live_ = LiveBoard::make({.terminal = terminal_,
                                 .league = league_,
                                 .downloads = downloads_,
                                 .teams = book_,
                                 .reachability = reachability_},
                                [seen] { seen.resume(); });
        live_->start();
    });
    co_return std::nullopt;
}

void Scoreboard::sumUp() {
    if (std::exchange(isSummedUp_, true)) return;
    const std::size_t assigned = live_->screen().assignedCount();
    const std::size_t painted = live_->screen().paintedCount();
    live_.reset();
    heading("Summary");
    const auto visit = corvane::secondsToNow(startTime_).value_or(0);
    terminal_.line(fmt::format("  You were here for {}.",
                               corvane::DateUtil::sharedInstance()->getDurationString(visit).value_or("a while")));
    const League::Summary summary = league_->summary();
    terminal_.line(fmt::format("  {} asks of the repositories came to {} requests, {} of them got a 304.", summary.asks,
                               summary.requests, summary.notModified));
    terminal_.line(fmt::format("  {} received, {} saved. {} of {} rows had changed and were painted.",
                               sizeText(summary.bytesReceived), sizeText(summary.bytesSaved), painted, assigned));
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

void Scoreboard::heading(std::string_view text) {
    terminal_.line();
    terminal_.line(terminal_.styled(Style::strong, text));
}

void Scoreboard::printTable(std::string_view title, const Table& table) {
    heading(title);
    table.print(terminal_);
}

const Fixture* Scoreboard::find(Fixture::Status status) const {
    const auto found = std::ranges::find_if(matchday_->fixtures, [&](const Fixture& fixture) {
        return fixture.status == status && book_->isShown(fixture);
    });
    return found != matchday_->fixtures.end() ? &*found : nullptr;
}

void Scoreboard::printAnswer(std::string_view who, std::string_view what,
                             const corvane::FetchResultMetadata& metadata) {
    const auto yesOrNo = [](bool flag) { return flag ? "yes" : "no"; };
    const auto& created = metadata.cacheCreationTimestamp;
    const double age = created ? std::max(0.0, corvane::DateUtil::now() - *created) : 0;
    const std::string line =
        fmt::format("{:<9}  for the {:<7}  cache asked: {:<3}  it answered: {:<3}  age: {}", what, who,
                    yesOrNo(metadata.cachedDataRequested), yesOrNo(metadata.cachedDataReturned),
                    created ? durationText(1000 * age) : "none");
    if (live_ && terminal_.isInteractive()) return live_->note(line);
    terminal_.line("  " + line);
}

void Scoreboard::printDownload(const Download& download) {
    const auto* const failure = download.result.asFailure();
    const bool isUnchanged = download.isKeptCopy || download.result.isNotModified();
    const std::string outcome = failure != nullptr                ? printable(failure->reason.errorDescription())
                                : download.isKeptCopy             ? "304, the kept copy"
                                : download.result.isNotModified() ? "304, nothing new"
                                                                  : "from the network";
    const std::size_t room = terminal_.columns() - std::min<std::size_t>(terminal_.columns(), 47);
    const Style style = failure != nullptr ? Style::bad : isUnchanged ? Style::faint : Style::good;
    terminal_.line(fmt::format("  {:<4}  {:<26}  {:>9}  {}", download.method, download.path,
                               durationText(download.milliseconds), terminal_.styled(style, elided(outcome, room))));
}

}  // namespace matchday
