#include <future>
#include <optional>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using testing::LoopbackResponse;
using testing::LoopbackServer;

void send(SimpleHttpManager& manager, SimpleHttpRequest::Fields fields) {
    std::promise<void> promise;
    manager.request(SimpleHttpRequest::make(std::move(fields)),
                    [&](const SimpleHttpResponse&) { promise.set_value(); });
    promise.get_future().wait();
}

TEST(SimpleHttpManager, NamesItsTwoSessions) {
    const auto& shared = SimpleHttpManager::sharedInstance();
    EXPECT_EQ(shared, SimpleHttpManager::sharedInstance());
    EXPECT_EQ(shared->session()->sessionDescription(), "SimpleHttpManager (Corvan)");
    EXPECT_EQ(shared->ephemeralSession()->sessionDescription(), "SimpleHttpManager (Corvan) \xE2\x80\x94 Ephemeral");
}

TEST(SimpleHttpManager, KeepsCookiesOfTheTwoSessionsApart) {
    LoopbackServer server;
    server.route("GET", "/", LoopbackResponse::json("{}").with("Set-Cookie", "visitor=7"));
    const auto manager = SimpleHttpManager::make();
    const auto url = URL::parse(server.url("/"));
    for (const bool isEphemeral : {false, true, true, false})
        send(*manager, {.isEphemeral = isEphemeral, .url = url});
    std::vector<std::optional<std::string_view>> cookies;
    const auto requests = server.requests();
    for (const auto& request : requests)
        cookies.push_back(request.header("Cookie"));
    EXPECT_THAT(cookies, ElementsAre(std::nullopt, std::nullopt, std::nullopt, "visitor=7"));
}

TEST(SimpleHttpManager, RefusesARequestWithoutURLAtOnce) {
    const auto manager = SimpleHttpManager::make();
    const auto& invalidUrl = SimpleHttpResponse::Errors::invalidUrl();
    bool hasCalledBack = false;
    manager->request(SimpleHttpRequest::make({}), [&](const SimpleHttpResponse& response) {
        hasCalledBack = true;
        ASSERT_TRUE(response.error());
        EXPECT_EQ(response.error()->as<PlatformError>(), invalidUrl.as<PlatformError>());
        EXPECT_FALSE(response.data() || response.lastModified() || response.statusCode() || response.isNotModified());
    });
    EXPECT_TRUE(hasCalledBack);

    const auto task = manager->createTask(SimpleHttpRequest::make({}), [](const SimpleHttpResponse&) { FAIL(); });
    ASSERT_FALSE(task);
    EXPECT_EQ(task.error().domain(), "Invalid URL");
    EXPECT_EQ(task.error().code(), 999);
}

TEST(SimpleHttpManager, MakesTasksThatWaitToBeResumed) {
    LoopbackServer server;
    server.route("GET", "/", LoopbackResponse::json("{}"));
    std::promise<std::optional<PlatformError>> promise;
    auto future = promise.get_future();
    const auto task = SimpleHttpManager::make()->createTask(
        SimpleHttpRequest::make({.url = URL::parse(server.url("/"))}), [&](const SimpleHttpResponse& response) {
            promise.set_value(response.error() ? std::optional(*response.error()->as<PlatformError>()) : std::nullopt);
        });
    ASSERT_TRUE(task);
    EXPECT_EQ((*task)->state(), URLSessionTaskState::suspended);
    (*task)->cancel();
    EXPECT_EQ(future.get(), makeURLError(URLError::cancelled));
    EXPECT_EQ(server.requestCount(), 0U);
}

TEST(SimpleHttpManager, ForgetsPlainRequests) {
    LoopbackServer server;
    server.route("GET", "/ping", LoopbackResponse::json("{}"));
    SimpleHttpManager::make()->request(URLRequest(*URL::parse(server.url("/ping"))));
    EXPECT_TRUE(server.waitForRequests(1)) << "the request outlives the manager";
}

}  // namespace
}  // namespace corvane
