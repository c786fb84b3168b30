#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/SimpleHttpManager.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using testing::LoopbackRequest;
using testing::LoopbackResponse;
using testing::LoopbackServer;

/// A response together with the thread it came on.
struct Arrival {
    SimpleHttpResponse response;
    std::thread::id thread;
};

Arrival send(SimpleHttpManager& manager, SimpleHttpRequest::Fields fields) {
    std::promise<Arrival> promise;
    auto future = promise.get_future();
    manager.request(SimpleHttpRequest::make(std::move(fields)),
                    [promise = std::move(promise)](SimpleHttpResponse response) mutable {
                        promise.set_value({std::move(response), std::this_thread::get_id()});
                    });
    return future.get();
}

TEST(SimpleHttpManager, NamesItsTwoSessions) {
    const auto& shared = SimpleHttpManager::sharedInstance();
    EXPECT_EQ(shared, SimpleHttpManager::sharedInstance());
    EXPECT_EQ(shared->session()->sessionDescription(), "SimpleHttpManager (Corvan)");
    EXPECT_EQ(shared->ephemeralSession()->sessionDescription(), "SimpleHttpManager (Corvan) \xE2\x80\x94 Ephemeral");
}

TEST(SimpleHttpManager, DownloadsAndAsksAgainWithTheValidator) {
    const std::string date = "Sat, 21 Nov 2026 15:00:00 GMT";
    LoopbackServer server;
    server.route("GET", "/fixtures", [&](const LoopbackRequest& request) -> LoopbackResponse {
        if (request.header("If-Modified-Since") == date) return {.status = 304};
        return LoopbackResponse::json("{}").with("Last-Modified", date);
    });
    const auto manager = SimpleHttpManager::make();
    const auto url = URL::parse(server.url("/fixtures"));

    const auto [first, thread] = send(*manager, {.url = url});
    ASSERT_FALSE(first.error());
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_EQ(first.statusCode(), 200);
    EXPECT_EQ(first.data(), Data("{}"));
    EXPECT_EQ(first.lastModified(), date);
    EXPECT_EQ(first.urlString(), server.url("/fixtures"));

    const auto second = send(*manager, {.ifModifiedSince = first.lastModified(), .url = url}).response;
    EXPECT_FALSE(second.error() || second.data());
    EXPECT_TRUE(second.isNotModified());
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
