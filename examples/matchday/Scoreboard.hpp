#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Concurrency/DispatchGroupIdentifiable.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/BackgroundSessionDelegate.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/Dispatch/Task.hpp>

#include "Downloads.hpp"
#include "League.hpp"
#include "LiveBoard.hpp"
#include "TeamBook.hpp"
#include "Terminal.hpp"

namespace matchday {

/// Follows one matchday: shows the fixtures and the table, asks whether anything has changed, places a prediction,
/// looks at details, meets a failing service, follows the live scores and shows the fixtures again. Lives on the main
/// thread.
class Scoreboard : public corvane::BackgroundSessionDelegate, public std::enable_shared_from_this<Scoreboard> {
  public:
    /// `onEnd` is called once, with the failure to tell the user if there is one.
    using End = std::function<void(std::optional<std::string> failure)>;

    /// The terminal has to outlive the scoreboard.
    [[nodiscard]] static std::shared_ptr<Scoreboard> make(Terminal& terminal, const std::string& backend, End onEnd);

    void start();

    /// A key that was typed.
    void press(char key);

    /// Shows what is live anew, on a terminal of another size.
    void repaint();

    /// Clears the screen of what is live and sums up what has been; to be called when the loop has ended early.
    void close();

  private:
    /// Absent when all went well, or else the failure to tell the user.
    using Failure = std::optional<std::string>;

    Scoreboard(Terminal& terminal, const std::string& backend, End onEnd);

    // The acts of the play.
    static corvane::Task<> play(std::shared_ptr<Scoreboard> self);
    corvane::Task<Failure> load();
    corvane::Task<Failure> askAgain();
    corvane::Task<Failure> readNews();
    corvane::Task<Failure> predict();
    corvane::Task<Failure> lookAtDetails();
    corvane::Task<Failure> meetFaults();
    /// Asks for one of the opening's documents and keeps it.
    template <class Model>
    void fetch(std::string document, corvane::Task<League::Answer<Model>> answer,
               std::shared_ptr<const Model> Scoreboard::* kept);

    template <class Model>
    static corvane::Task<> keep(std::shared_ptr<Scoreboard> self, std::string document,
                                corvane::Task<League::Answer<Model>> answer,
                                std::shared_ptr<const Model> Scoreboard::* kept);

    corvane::Task<Failure> follow();
    void sumUp();
    void reportVisit();
    void end(Failure failure = std::nullopt);

    void backgroundTaskDidLoad(corvane::URLSessionDataTask& task, const corvane::JSONDictionary& json) override;
    void backgroundTaskDidFail(corvane::URLSessionDataTask& task, const corvane::AnyError& error) override;

    /// Loads and prints the load's line. The options stand in a variable of the caller's: GCC 12 ends a braced
    /// temporary of an awaiting expression twice.
    corvane::Task<Download> ask(std::string path, const Downloads::Options& options = usual);

    static inline const Downloads::Options usual{};

    void heading(std::string_view text);
    void printAnswer(std::string_view who, std::string_view what, const corvane::FetchResultMetadata& metadata);
    void printDownload(const Download& download);
    void printTable(std::string_view title, const Table& table);
    [[nodiscard]] const Fixture* find(Fixture::Status status) const;

    Terminal& terminal_;
    std::string backend_;
    End onEnd_;
    std::shared_ptr<Downloads> downloads_;
    const corvane::Date startTime_ = corvane::Clock::current().now();
    int requestCount_ = 0;
    std::shared_ptr<League> league_;
    std::shared_ptr<TeamBook> book_ = std::make_shared<TeamBook>();
    std::shared_ptr<corvane::Reachability> reachability_;
    std::shared_ptr<LiveBoard> live_;
    bool isSummedUp_ = false;
    std::shared_ptr<const Matchday> matchday_;
    std::shared_ptr<const Standings> standings_;
    std::shared_ptr<const Teams> teams_;
    /// The documents that the opening waits for.
    corvane::DispatchGroupIdentifiable<std::string> documents_;
};

}  // namespace matchday
