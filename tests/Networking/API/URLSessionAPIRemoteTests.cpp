#include <gtest/gtest.h>

#include <Corvane/Networking/API/Private/RemoteExchange.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

class URLSessionAPIRemoteTest : public ::testing::Test {
  protected:
    URLSessionAPIRemoteTest() { server.route("*", "/team", testing::LoopbackResponse::json("")); }

    testing::LoopbackServer server;
    const URL url = *URL::parse(server.url("/team"));
    URLSessionAPIRemote remote{nullptr, 30, "scores/2.1"};
};

TEST_F(URLSessionAPIRemoteTest, SendsWhatItIsToldAndTakesAnEmptyBody) {
    const auto response = runBlocking(remote.performRequest(url, "at  \xE9leven", "PUT", Data("[1]")));
    EXPECT_EQ(response.value(), URLSessionAPIResponse());

    const auto request = server.requests().front();
    EXPECT_EQ(request.method + request.body, "PUT[1]");
    EXPECT_EQ(request.header("User-Agent"), "scores/2.1");
    EXPECT_EQ(request.header("If-Modified-Since"), "at  \xE9leven");

    const auto task = remote.performRequestWithTask(url, "the team", {}, {}, {}, nullptr);
    EXPECT_EQ(task->state(), URLSessionTaskState::suspended);
    EXPECT_EQ(task->taskDescription(), "the team");
    EXPECT_EQ(task->originalRequest().cachePolicy(), URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData);
    EXPECT_EQ(task->originalRequest().timeoutInterval(), 30);
}

TEST_F(URLSessionAPIRemoteTest, TakesItsOwnSessionWithItAndLeavesTheSharedOne) {
    const auto own = URLSession::make(URLSessionConfiguration::ephemeral());
    for (const auto& session : {own, std::shared_ptr<URLSession>()})
        const URLSessionAPIRemote former(session, 30, "scores/2.0");
    EXPECT_TRUE(runBlocking(remote.performRequest(url, {}, {}, {})));
    URLSessionAPIRemote late(own, 30, "scores/2.1");
    EXPECT_EQ(runBlocking(late.performRequest(url, {}, {}, {})).error(),
              CommonAPIError::urlSessionError(makeURLError(URLError::cancelled)));
}

TEST(RemoteExchange, TakesEachStatusForWhatItIsAndFieldsByTheirExactNames) {
    const std::pair<int, const char*> rows[] = {
        {199, "success"},          {299, "success"},          {300, "redirection"},      {302, "redirection"},
        {304, "notModified"},      {399, "redirection"},      {400, "clientFault(400)"}, {499, "clientFault(499)"},
        {500, "serverFault(500)"}, {599, "serverFault(599)"}, {600, "success"}};
    for (const auto& [status, expected] : rows) {
        const HTTPURLResponse response(*URL::parse("http://h"), status, "HTTP/1.1", {{"last-modified", "today"}});
        const auto outcome = remoteOutcome(Data("[]"), &response, {});
        EXPECT_EQ(outcome ? "success" : outcome.error().description(), expected);
        EXPECT_FALSE(outcome && outcome->lastModified);
    }
    EXPECT_TRUE(remoteOutcome({}, nullptr, PlatformError("D", 7)).error().isURLSessionError());
    EXPECT_TRUE(remoteOutcome(Data("[]"), nullptr, {}).error().isInvalidResponse());
}

}  // namespace
}  // namespace corvane
