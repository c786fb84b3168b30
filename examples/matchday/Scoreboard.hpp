#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <Corvane/DomainSpecific/Tessaly/Networking/BackgroundSessionDelegate.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

#include "Downloads.hpp"
#include "League.hpp"
#include "LocalFiles.hpp"
#include "Terminal.hpp"

namespace matchday {

/// Follows one matchday: shows the fixtures and the table, asks whether anything has changed, places a prediction,
/// follows the live scores and shows the fixtures again. Lives on the main thread.
class Scoreboard : public corvane::BackgroundSessionDelegate, public std::enable_shared_from_this<Scoreboard> {
  public:
    /// `onEnd` is called once, with the failure to tell the user if there is one.
    using End = std::function<void(std::optional<std::string> failure)>;

    /// The terminal has to outlive the scoreboard.
    [[nodiscard]] static std::shared_ptr<Scoreboard> make(Terminal& terminal, std::string backend, End onEnd);

    void start();

  private:
    Scoreboard(Terminal& terminal, std::string backend, End onEnd);

    // The acts of the play, each begun when the one before has its answer.
    void load();
    void showOpening();
    void askWhetherChanged();
    void predict();
    void follow();
    void showChanges(const std::vector<Goal>& goals);
    void reportVisit();
    void end(std::optional<std::string> failure = std::nullopt);

    void backgroundTaskDidLoad(corvane::URLSessionDataTask& task, const corvane::JSONDictionary& json) override;
    void backgroundTaskDidFail(corvane::URLSessionDataTask& task, const corvane::AnyError& error) override;

    /// Prints the request's line and gives its JSON; ends the play when there is none.
    std::optional<corvane::JSONValue> take(const Download& download);

    /// What goes on with an answer while the scoreboard lives.
    template <class Step>
    Downloads::Done then(Step step);

    /// Keeps what the answer holds; the last of the first answers opens the board.
    template <class Model, class Reader>
    Downloads::Done thenRead(Model Scoreboard::* model, Reader read);

    void heading(std::string_view text);
    void printRequest(const Download& download);
    void printFixtures(const std::set<std::int64_t>& changed);
    void printStandings();
    [[nodiscard]] const std::string& name(std::int64_t team) const;

    Terminal& terminal_;
    Downloads downloads_;
    End onEnd_;
    int pendingCount_ = 0;
    int requestCount_ = 0;
    std::optional<std::string> fixturesDate_;
    Teams teams_ = bundledTeams();
    TeamFilter filter_ = keptFilter();
    Matchday matchday_;
    std::vector<Standing> standings_;
};

}  // namespace matchday
