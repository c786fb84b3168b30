#include "SessionFixture.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;

/// Notes every call in one line, on the queue it must come on.
class Witness final : public InvalidationWitness {
  public:
    explicit Witness(DispatchQueue& queue) : queue_(queue) {}

    void dataTaskDidReceiveData(URLSession&, URLSessionDataTask& task, const Data& data) override {
        note("data " + task.taskDescription() + ' ' + std::string(data.text()));
    }

    void taskDidComplete(URLSession&, URLSessionDataTask& task, std::optional<PlatformError> error) override {
        note("complete " + task.taskDescription() + ' ' + std::to_string(error ? error->code() : 0));
    }

    void sessionDidBecomeInvalid(URLSession& session, std::optional<PlatformError> error) override {
        note("invalid " + session.sessionDescription() + (error ? " with error" : ""));
        InvalidationWitness::sessionDidBecomeInvalid(session, std::move(error));
    }

    URLSessionAuthChallengeDecision taskDidReceiveChallenge(URLSession&, URLSessionDataTask&,
                                                            const URLAuthenticationChallenge& challenge) override {
        note(challenge.wwwAuthenticate + ' ' + std::to_string(challenge.previousFailureCount));
        return decide(challenge);
    }

    std::vector<std::string> waitFor(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return lines_.size() >= count; });
        return lines_;
    }

    std::function<URLSessionAuthChallengeDecision(const URLAuthenticationChallenge&)> decide;

  private:
    void note(std::string line) {
        EXPECT_TRUE(queue_.isCurrent());
        const std::lock_guard lock(mutex_);
        lines_.push_back(std::move(line));
        changed_.notify_all();
    }

    DispatchQueue& queue_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;
};

class URLSessionDelegateTest : public SessionTest {
  protected:
    void SetUp() override { useConfiguration(URLSessionConfiguration::ephemeral(), witness, queue); }

    std::shared_ptr<URLSessionDataTask> task(std::string_view target, std::string description) {
        auto made = session->dataTask(request(target));
        made->setTaskDescription(std::move(description));
        return made;
    }

    std::shared_ptr<DispatchQueue> queue = DispatchQueue::serial("test.delegate");
    std::shared_ptr<Witness> witness = std::make_shared<Witness>(*queue);
};

TEST_F(URLSessionDelegateTest, HearsOfBodyThenCompletionThenTheEnd) {
    server.route("GET", "/x",
                 LoopbackResponse::json(std::string(100'000, 'x')).with(LoopbackResponse::Framing::chunked));
    server.route("GET", "/empty", LoopbackResponse{.status = 304});
    session->setSessionDescription("scores");
    task("/x", "first")->resume();
    EXPECT_THAT(witness->waitFor(2), ElementsAre("data first " + std::string(100'000, 'x'), "complete first 0"));
    task("/empty", "second")->resume();
    EXPECT_THAT(witness->waitFor(3).back(), "complete second 0");
    const auto last = task("/x", "third");
    session->finishTasksAndInvalidate();
    const auto refused = task("/x", "fourth");
    refused->resume();
    EXPECT_THAT(witness->waitFor(4).back(), "complete fourth -999");
    last->resume();
    EXPECT_THAT(witness->waitFor(7).back(), "invalid scores");
    EXPECT_TRUE(refused->error() == URLError::cancelled);
    queue->sync([] {});
    EXPECT_EQ(witness.use_count(), 2) << "only this test still holds it";
}

TEST_F(URLSessionDelegateTest, BecomesInvalidWhenAnUnstartedTaskIsDropped) {
    auto unstarted = task("/x", "a");
    session->finishTasksAndInvalidate();
    unstarted.reset();
    EXPECT_THAT(witness->waitFor(1), ElementsAre("invalid "));
}

TEST_F(URLSessionDelegateTest, AnswersChallenges) {
    server.route("GET", "/private", [](const LoopbackRequest& request) {
        // "ann:right" in Base64.
        if (request.header("Authorization") == "Basic YW5uOnJpZ2h0") return LoopbackResponse::json("secret");
        return LoopbackResponse::json("who?", 401).with("WWW-Authenticate", "Basic realm=\"r\"");
    });
    using Disposition = URLSessionAuthChallengeDisposition;
    witness->decide = [](const URLAuthenticationChallenge& challenge) -> URLSessionAuthChallengeDecision {
        const char* const password = challenge.previousFailureCount == 0 ? "wrong" : "right";
        return {Disposition::useCredential, URLCredential{"ann", password}};
    };
    EXPECT_EQ(load(request("/private")).body(), "secret");
    EXPECT_THAT(witness->waitFor(2), ElementsAre("Basic realm=\"r\" 0", "Basic realm=\"r\" 1"));

    witness->decide = [](const auto&) { return URLSessionAuthChallengeDecision{}; };
    const auto refused = load(request("/private"));
    EXPECT_EQ(refused.status(), 401);
    EXPECT_EQ(refused.body(), "who?");
    witness->decide = [](const auto&) {
        return URLSessionAuthChallengeDecision{Disposition::cancelAuthenticationChallenge, {}};
    };
    EXPECT_EQ(load(request("/private")).code(), -999);
}

}  // namespace
}  // namespace corvane
