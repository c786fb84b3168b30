#include <functional>

#include <Corvane/Testing/ScriptedPath.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "ResolverStub.hpp"
#include "SessionFixture.hpp"
#include "tests/Support/NetworkNamespace.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;
using testing::ScriptedPath;
using testing::VirtualClock;

/// Notes what it is told and decides as it is told to.
class WaitingWitness final : public InvalidationWitness {
  public:
    void taskIsWaitingForConnectivity(URLSession&, URLSessionDataTask& task) override {
        lines.push_back("waits " + task.originalRequest().url().path());
    }

    URLSessionDelayedRequestDecision taskWillBeginDelayedRequest(URLSession&, URLSessionDataTask&,
                                                                 const URLRequest& request) override {
        lines.push_back("begins " + request.url().path());
        return decide ? decide() : URLSessionDelayedRequestDecision();
    }

    std::vector<std::string> lines;
    std::function<URLSessionDelayedRequestDecision()> decide;
};

class ConnectivityTest : public SessionTest {
  protected:
    static constexpr double timeout = 60;

    ConnectivityTest() {
        server.route("GET", "/x", LoopbackResponse::json("[]"));
        useWitness(URLSessionConfiguration::ephemeral());
    }

    void useWitness(URLSessionConfiguration configuration) {
        configuration.waitsForConnectivity = true;
        configuration.timeoutIntervalForRequest = timeout;
        witness = std::make_shared<WaitingWitness>();
        useConfiguration(configuration, witness);
    }

    VirtualClock clock;
    ScriptedPath network = ScriptedPath(NetworkFlags());
    std::shared_ptr<WaitingWitness> witness;
};

TEST_F(ConnectivityTest, HoldsARequestUntilTheInternetCanBeReached) {
    start(request("/x"));
    start(request("/x"));
    clock.advance(timeout / 2 - 1);
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(network.watchedPaths(), 1) << "one watch for all that wait";

    network.report(NetworkFlag::reachable | NetworkFlag::connectionRequired);
    clock.settle();
    EXPECT_TRUE(server.requests().empty()) << "nobody has connected";
    network.report(NetworkFlag::reachable);
    EXPECT_EQ(waitForAll().status(), 200);
    EXPECT_EQ(network.watchedPaths(), 0);
    EXPECT_THAT(witness->lines, ElementsAre("waits /x", "waits /x", "begins /x", "begins /x"));
    EXPECT_EQ(load(request("/x")).status(), 200);
    EXPECT_EQ(witness->lines.size(), 4) << "a request that need not wait is not delayed";
}

TEST_F(ConnectivityTest, TriesWithinTheTimeoutAllTheSame) {
    start(request("/x"));
    clock.advance(timeout / 2);
    EXPECT_EQ(waitForAll().status(), 200);

    const ResolverStub silence;
    start(URLRequest(*URL::parse("http://hanging.test/")));
    clock.advance(timeout / 2);
    EXPECT_EQ(witness->lines.back(), "begins /");
    clock.advance(timeout / 2 - 1);
    EXPECT_EQ(completions.all().size(), 1);
    clock.advance(1);
    EXPECT_EQ(waitForAll().error, URLError::timedOut);
}

TEST_F(ConnectivityTest, LetsGoOfWhatIsCancelledOrSuspended) {
    const auto task = start(request("/x"));
    clock.settle();
    network.holdReports();
    network.report(NetworkFlag::reachable);
    network.setFlags({});
    task->cancel();
    EXPECT_EQ(waitForAll().error, URLError::cancelled);
    clock.settle();
    EXPECT_EQ(network.watchedPaths(), 0);

    const auto suspended = start(request("/x"));
    clock.settle();
    network.releaseReports();
    clock.settle();
    EXPECT_EQ(network.watchedPaths(), 1) << "of a network that is lost again, to one that is gone";
    suspended->suspend();
    clock.advance(10 * timeout);
    EXPECT_TRUE(server.requests().empty()) << "its timeout does not run";
    suspended->resume();
    clock.advance(timeout / 2);
    EXPECT_EQ(waitForAll().status(), 200);
}

TEST_F(ConnectivityTest, SendsWhatTheDelegateDecides) {
    server.route("GET", "/new", LoopbackResponse::json("[1]"));
    URLSessionConfiguration configuration = URLSessionConfiguration::ephemeral();
    configuration.httpAdditionalHeaders = {{"X-Mark", "1"}};
    useWitness(configuration);
    using Disposition = URLSessionDelayedRequestDisposition;

    const struct {
        Disposition disposition;
        std::optional<URLRequest> newRequest;
        std::string body;
        std::int64_t code;
    } cases[] = {
        {Disposition::continueLoading, std::nullopt, "[]", 0},
        {Disposition::useNewRequest, request("/new"), "[1]", 0},
        {Disposition::useNewRequest, std::nullopt, "[]", 0},
        {Disposition::useNewRequest, URLRequest(*URL::parse("ftp://host/")), "(none)", -1002},
        {Disposition::cancel, std::nullopt, "(none)", -999},
    };

    for (const auto& each : cases) {
        witness->decide = [&] {
            return URLSessionDelayedRequestDecision{.disposition = each.disposition, .newRequest = each.newRequest};
        };
        start(request("/x"));
        clock.advance(timeout / 2);
        const Completion completion = waitForAll();
        EXPECT_EQ(completion.body(), each.body);
        EXPECT_EQ(completion.code(), each.code);
    }
    for (const LoopbackRequest& each : server.requests())
        EXPECT_EQ(each.header("X-Mark"), "1") << each.target;
}

TEST_F(ConnectivityTest, WaitsOnlyWhereWaitingMakesSense) {
    using enum ScriptedPath::Step;
    // Nothing can be known, nothing would be heard, nothing can be read.
    for (const ScriptedPath::Step step : {createWithAddress, setDispatchQueue, readFlags}) {
        network.refuse(step, 1);
        EXPECT_EQ(load(request("/x")).status(), 200) << static_cast<int>(step);
        network.allow(step);
    }
    EXPECT_TRUE(witness->lines.empty());

    useConfiguration(URLSessionConfiguration::ephemeral());
    EXPECT_EQ(load(request("/x")).status(), 200) << "the session does not wait";
}

using OfflineTest = SessionTest;

TEST_F(OfflineTest, DoesNotWaitForTheInternetToReachThisMachine) {
    if (!NetworkNamespace::enter()) return;
    NetworkNamespace::ip("link set lo up");
    server.route("GET", "/x", LoopbackResponse::json("[]"));
    URLSessionConfiguration configuration = URLSessionConfiguration::ephemeral();
    configuration.waitsForConnectivity = true;
    const auto witness = std::make_shared<WaitingWitness>();
    useConfiguration(configuration, witness);
    EXPECT_EQ(load(request("/x")).status(), 200);
    EXPECT_EQ(load(request("/x", "localhost")).status(), 200);
    EXPECT_TRUE(witness->lines.empty());
}

}  // namespace
}  // namespace corvane
