#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <Corvane/Concurrency/CommandWith.hpp>
#include <Corvane/Concurrency/EventDebouncer.hpp>
#include <Corvane/Concurrency/PageAutoRefresher.hpp>
#include <Corvane/Networking/API/Reachability.hpp>

#include "Downloads.hpp"
#include "League.hpp"
#include "Page.hpp"
#include "Screen.hpp"
#include "TeamBook.hpp"

namespace matchday {

/// The games and the table while the games go on: two pages, of which the one on screen refreshes itself. A terminal's
/// user types a filter and gives commands; elsewhere it ends after some refreshes. Main thread only.
class LiveBoard : public std::enable_shared_from_this<LiveBoard> {
  public:
    /// What it shows and asks. The terminal has to outlive it.
    struct Environment {
        Terminal& terminal;
        std::shared_ptr<League> league;
        std::shared_ptr<Downloads> downloads;
        std::shared_ptr<TeamBook> teams;
        std::shared_ptr<corvane::Reachability> reachability;
    };

    /// `onEnd` is called once, when the user has seen enough.
    [[nodiscard]] static std::shared_ptr<LiveBoard> make(const Environment& environment, std::function<void()> onEnd);

    void start();

    /// A key that was typed.
    void press(char key);

    /// Ends it.
    void leave();

    /// Shows everything anew, on a terminal of another size.
    void repaint();

    /// Shows a line below the page.
    void note(std::string line);

    [[nodiscard]] const Screen& screen() const noexcept { return *screen_; }

  private:
    struct Tab {
        std::shared_ptr<Page> page;
        std::shared_ptr<corvane::PageAutoRefresher> refresher;
    };

    LiveBoard(const Environment& environment, std::function<void()> onEnd);

    Tab makeTab(std::string title, corvane::Task<Page::Failure> (LiveBoard::*load)());
    void makeCommands();
    void watchConnection();
    void turnPage();
    void refresh();
    void clearFilter();
    void filter();

    corvane::Task<Page::Failure> loadGames();
    corvane::Task<Page::Failure> loadStandings();
    void pageDidLoad(const Page::Failure& failure);
    static corvane::Task<> filterWhenTyped(std::shared_ptr<LiveBoard> self);

    void show();
    [[nodiscard]] std::string banner() const;

    Environment environment_;
    std::function<void()> onEnd_;
    std::shared_ptr<Screen> screen_;
    std::array<Tab, 2> tabs_;
    std::size_t current_ = 0;
    std::map<char, corvane::Command> commands_;
    corvane::EventDebouncer debouncer_{"filter", 0.3};
    /// What was typed.
    std::string filter_;
    std::string note_;
    int refreshCount_ = 0;
    bool wasUnreachable_ = false;
    std::shared_ptr<const Matchday> matchday_ = std::make_shared<Matchday>();
    std::shared_ptr<const Standings> standings_ = std::make_shared<Standings>();
    std::set<FixtureID> changed_;
};

}  // namespace matchday
