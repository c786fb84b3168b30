#include <gmock/gmock.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

#include "tests/Support/CountingBackgroundTaskHost.hpp"

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LoopbackFault;
using testing::LoopbackResponse;

class BackgroundRoad : public ::testing::Test, public BackgroundSessionDelegate {
  protected:
    BackgroundRoad() {
        BackgroundTasks::setHost(host);
        server.route("GET", "/", LoopbackResponse::json("{}"));
    }

    ~BackgroundRoad() override { BackgroundTasks::setHost(nullptr); }

    void start() {
        manager = SimpleHttpManager::make();
        manager->setDelegate(listener);
        manager->startBackgroundTask(URLRequest(*URL::parse(server.url("/"))), "statistics");
    }

    /// Lets the manager go and runs the main loop until nothing holds it any more: the session has told everything.
    void finish() {
        const std::weak_ptr<SimpleHttpManager> weak = std::exchange(manager, nullptr);
        while (!weak.expired())
            RunLoop::main().runOnce();
    }

    void backgroundTaskDidLoad(URLSessionDataTask& task, const JSONDictionary& json) override {
        note(task, JSONValue(json).description());
    }

    void backgroundTaskDidFail(URLSessionDataTask& task, const AnyError& error) override {
        note(task, error.domain() + " " + std::to_string(error.code()));
    }

    testing::LoopbackServer server;
    std::shared_ptr<CountingBackgroundTaskHost> host = std::make_shared<CountingBackgroundTaskHost>();
    std::shared_ptr<SimpleHttpManager> manager;
    std::shared_ptr<BackgroundSessionDelegate> listener{this, [](auto*) {}};
    std::vector<std::string> events;

  private:
    void note(const URLSessionDataTask& task, const std::string& what) {
        EXPECT_TRUE(Thread::isMainThread());
        EXPECT_EQ(task.priority(), URLSessionDataTask::highPriority);
        events.push_back(task.taskDescription() + ": " + what);
    }
};

TEST_F(BackgroundRoad, ReportsAJSONObjectAndEndsItsProtectionOnce) {
    const std::pair<LoopbackResponse, std::vector<std::string>> rows[] = {
        {LoopbackResponse::json(R"({"b":1,"a":[2]})"), {R"(statistics: {"b":1,"a":[2]})"}},
        {LoopbackResponse::json("[1]"), {"statistics: Invalid response format 999999"}},
        {LoopbackResponse::json("{\"a\":"), {"statistics: Invalid response format 999999"}},
        {LoopbackResponse::json("{}", 503), {"statistics: {}"}},
        {LoopbackResponse{.status = 204}, {}},
        {LoopbackResponse::json("{}").with(LoopbackFault::resetInsideBody), {"statistics: URLErrorDomain -1005"}},
    };
    for (const auto& [response, expected] : rows) {
        SCOPED_TRACE(response.body);
        server.route("GET", "/", response);
        start();
        EXPECT_EQ(manager->backgroundTaskIdForTask().size(), 1U);
        finish();
        EXPECT_EQ(std::exchange(events, {}), expected);
        EXPECT_THAT(std::exchange(host->begun, {}), ElementsAre("FinishNetworkTasks"));
        EXPECT_THAT(std::exchange(host->ended, {}), ElementsAre(41U));
    }
}

TEST_F(BackgroundRoad, GivesItsProtectionUpWhenThePlatformRunsOutOfPatience) {
    server.route("GET", "/", LoopbackResponse::held());
    start();
    const auto exchange = server.waitForHeldExchange();
    ASSERT_TRUE(exchange);
    host->expire();
    EXPECT_THAT(host->ended, ElementsAre(41U));
    EXPECT_THAT(manager->backgroundTaskIdForTask(), IsEmpty());

    exchange->respond(LoopbackResponse::json("{}"));
    finish();
    EXPECT_THAT(events, ElementsAre("statistics: {}")) << "the request itself goes on";
    host->expire();
    EXPECT_THAT(host->ended, ElementsAre(41U));
}

TEST_F(BackgroundRoad, GoesOnWithoutAProtectionThatIsRefusedOrRunsOutWhileItBegins) {
    for (const bool isRefusing : {true, false}) {
        host->isRefusing = isRefusing;
        host->isImpatient = !isRefusing;
        start();
        EXPECT_THAT(manager->backgroundTaskIdForTask(), IsEmpty());
        finish();
        EXPECT_THAT(std::exchange(events, {}), ElementsAre("statistics: {}"));
        EXPECT_EQ(host->ended, std::vector<BackgroundTaskHost::Identifier>(isRefusing ? 0 : 1, 42));
    }
}

TEST_F(BackgroundRoad, IsWaitedForWhenItWasTakenOnAnotherThreadJustBeforeTheExit) {
    BackgroundTasks::setHost(nullptr);
    std::jthread([this] { start(); }).join();
    EXPECT_TRUE(BackgroundTasks::waitForRunning(60));
    EXPECT_THAT(events, ElementsAre("statistics: {}"));
}

TEST_F(BackgroundRoad, BeginsAtOnceInATaskOfAQueueOnTopOfTheMainOne) {
    const auto onTop = DispatchQueue::serial("on top of main", {}, DispatchQueue::main().shared_from_this());
    runBlocking(on(onTop, [this]() -> Task<> {
        start();
        EXPECT_EQ(manager->backgroundTaskIdForTask().size(), 1U);
        co_return;
    }));
    finish();
    EXPECT_THAT(events, ElementsAre("statistics: {}"));
}

TEST_F(BackgroundRoad, DoesNotKeepItsListener) {
    start();
    listener.reset();
    EXPECT_EQ(manager->delegate(), nullptr);
    finish();
    EXPECT_THAT(events, IsEmpty());
    EXPECT_THAT(host->ended, ElementsAre(41U));
}

}  // namespace
}  // namespace corvane
