#include "LiveBoard.hpp"

#include <algorithm>
#include <ranges>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Decoding/JSONUtils.hpp>

#include "Keyboard.hpp"

namespace matchday {
namespace {

using corvane::JSONUtils;
using corvane::Reachability;
using corvane::Task;

/// Seconds between refreshes, for people and for pipes.
constexpr double watchingInterval = 2;
constexpr double hurriedInterval = 0.2;

/// After how many refreshes it ends when nobody is there to end it.
constexpr int hurriedRefreshes = 6;

constexpr char control(char letter) {
    return static_cast<char>(letter & 0x1F);
}

constexpr char backspace = '\x7F';

}  // namespace

std::shared_ptr<LiveBoard> LiveBoard::make(const Environment& environment, std::function<void()> onEnd) {
    return std::shared_ptr<LiveBoard>(new LiveBoard(environment, std::move(onEnd)));
}

LiveBoard::LiveBoard(const Environment& environment, std::function<void()> onEnd)
    : environment_(environment), onEnd_(std::move(onEnd)), screen_(Screen::make(environment.terminal)) {}

void LiveBoard::start() {
    tabs_ = {makeTab("Games", &LiveBoard::loadGames), makeTab("Standings", &LiveBoard::loadStandings)};
    makeCommands();
    watchConnection();
    tabs_[current_].refresher->pageDidAppear();
}

LiveBoard::Tab LiveBoard::makeTab(std::string title, Task<Page::Failure> (LiveBoard::*load)()) {
    const double interval = environment_.terminal.isInteractive() ? watchingInterval : hurriedInterval;
    auto refresher =
        corvane::PageAutoRefresher::make(interval, {.refreshPresentedPageOnly = true, .refreshOnPageAppear = true});
    auto page = std::make_shared<Page>(
        std::move(title),
        [weak = weak_from_this(), load]() -> Task<Page::Failure> {
            const auto self = weak.lock();
            if (!self) co_return std::nullopt;
            co_return co_await ((*self).*load)();
        },
        [weak = weak_from_this()](const Page::Failure& failure) {
            if (const auto self = weak.lock()) self->pageDidLoad(failure);
        });
    refresher->inject(page);
    return {std::move(page), std::move(refresher)};
}

void LiveBoard::makeCommands() {
    using corvane::commandOnMain;
    const auto command = [this](std::string name, void (LiveBoard::*action)()) {
        return commandOnMain({.name = std::move(name)}, [weak = weak_from_this(), action] {
            if (const auto self = weak.lock()) ((*self).*action)();
        });
    };
    commands_.emplace('\t', command("turnPage", &LiveBoard::turnPage));
    commands_.emplace(control('R'), command("refresh", &LiveBoard::refresh));
    commands_.emplace(control('U'), command("clearFilter", &LiveBoard::clearFilter));
    commands_.emplace(Keyboard::end, command("leave", &LiveBoard::leave));
}

void LiveBoard::watchConnection() {
    environment_.reachability->setWhenReachable([weak = weak_from_this()](Reachability&) {
        const auto self = weak.lock();
        if (!self) return;
        self->show();
        if (std::exchange(self->wasUnreachable_, false)) self->refresh();
    });
    environment_.reachability->setWhenUnreachable([weak = weak_from_this()](Reachability&) {
        const auto self = weak.lock();
        if (!self) return;
        // No reason to stop asking: what the kernel cannot reach, a proxy or this machine may.
        self->wasUnreachable_ = true;
        self->show();
    });
    if (const auto started = environment_.reachability->startNotifier(); !started) note(started.error().description());
}

void LiveBoard::press(char key) {
    const auto command = commands_.find(key);
    if (command != commands_.end()) {
        const corvane::Command action = command->second;
        return action.perform();
    }
    if (key == backspace) {
        // A character of UTF-8 goes with its continuation bytes.
        while (!filter_.empty() && (static_cast<unsigned char>(filter_.back()) & 0xC0) == 0x80)
            filter_.pop_back();
        if (!filter_.empty()) filter_.pop_back();
    } else if (static_cast<unsigned char>(key) >= ' ') {
        filter_ += key;
    } else {
        return;
    }
    show();
    corvane::spawn(corvane::onMain(filterWhenTyped(shared_from_this())));
}

Task<> LiveBoard::filterWhenTyped(std::shared_ptr<LiveBoard> self) {
    const bool isLast = co_await self->debouncer_.debounce();
    if (isLast) self->filter();
}

void LiveBoard::clearFilter() {
    filter_.clear();
    filter();
}

void LiveBoard::filter() {
    // Parts of names, with commas between them.
    std::vector<std::string> texts;
    for (const auto part : std::views::split(std::string_view(filter_), ',')) {
        std::string_view text(part);
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        if (!text.empty()) texts.emplace_back(text);
    }
    const auto kept = environment_.teams->showOnly(texts);
    note(kept ? std::string() : environment_.terminal.styled(Style::bad, kept.error()));
}

void LiveBoard::turnPage() {
    tabs_[current_].refresher->pageWillDissapear();
    current_ = (current_ + 1) % tabs_.size();
    tabs_[current_].refresher->pageDidAppear();
    show();
}

void LiveBoard::refresh() {
    tabs_[current_].page->refreshPage();
}

void LiveBoard::note(std::string line) {
    note_ = std::move(line);
    show();
}

void LiveBoard::leave() {
    for (const Tab& tab : tabs_)
        tab.refresher->stop();
    environment_.reachability->stopNotifier();
    if (const auto onEnd = std::exchange(onEnd_, nullptr)) onEnd();
}

Task<Page::Failure> LiveBoard::loadGames() {
    const Downloads::Options plainRoad{.usesCache = false};
    const auto live = co_await environment_.downloads->load("/v1/live", plainRoad);
    const auto fixtures = co_await environment_.league->fixtures("games", false);
    if (!fixtures) co_return fixtures.error();
    matchday_ = *fixtures;
    changed_.clear();
    if (live.json() == nullptr) co_return "the live scores cannot be had";
    const auto goals = Goal::parseArray(JSONUtils::getArrayFromJSON(*live.json(), "goals"));
    for (const Goal& goal : goals.value_or(std::vector<Goal>())) {
        changed_.insert(goal.fixture);
        const auto fixture = std::ranges::find(matchday_->fixtures, goal.fixture, &Fixture::id);
        if (fixture == matchday_->fixtures.end() || !environment_.teams->isShown(*fixture)) continue;
        const Terminal& terminal = environment_.terminal;
        note_ = fmt::format("{:>3}′  {}", goal.minute,
                            terminal.styled(Style::live, "Goal for " + environment_.teams->name(goal.team) + "!"));
    }
    co_return std::nullopt;
}

Task<Page::Failure> LiveBoard::loadStandings() {
    const auto standings = co_await environment_.league->standings("table", false);
    if (!standings) co_return standings.error();
    standings_ = *standings;
    co_return std::nullopt;
}

void LiveBoard::pageDidLoad(const Page::Failure& failure) {
    if (failure) note_ = environment_.terminal.styled(Style::bad, printable(*failure));
    show();
    const bool isOver = !environment_.terminal.isInteractive() && ++refreshCount_ == hurriedRefreshes;
    if (isOver || !environment_.terminal.isWritable()) leave();
}

void LiveBoard::show() {
    if (!onEnd_) return;
    const Terminal& terminal = environment_.terminal;
    std::vector<std::string> rows{banner()};
    if (terminal.isInteractive()) {
        rows.push_back(
            terminal.styled(Style::faint, "Type a team. Tab: turn the page, ^R: refresh, ^U: all teams, ^D: leave"));
        rows.push_back("Teams: " + terminal.styled(Style::strong, printable(filter_)) + "_");
        rows.emplace_back();
    }
    const Table table = current_ == 0 ? environment_.teams->fixturesTable(*matchday_, changed_)
                                      : environment_.teams->standingsTable(*standings_);
    const auto lines = table.lines(terminal);
    rows.insert(rows.end(), lines.begin(), lines.end());
    rows.emplace_back();
    rows.push_back(note_.empty() ? "" : "  " + note_);
    screen_->show(rows);
}

void LiveBoard::repaint() {
    show();
    screen_->repaint();
}

std::string LiveBoard::banner() const {
    const auto connection = environment_.reachability->currentReachabilityString();
    return environment_.terminal.styled(Style::strong, fmt::format("{}  {}  [{}]", tabs_[current_].page->title(),
                                                                   printable(matchday_->competition), connection));
}

}  // namespace matchday
