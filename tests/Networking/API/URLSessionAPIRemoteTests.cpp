#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/Networking/API/Private/RemoteExchange.hpp>
#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

using testing::LoopbackResponse;
using testing::LoopbackServer;

class URLSessionAPIRemoteTest : public ::testing::Test {
  protected:
    URLSessionAPIRemoteTest() {
        server.route("*", "/team", LoopbackResponse::json(""));
        server.route("*", "/held", LoopbackResponse::held());
    }

    [[nodiscard]] URL url(std::string_view path) const { return *URL::parse(server.url(path)); }

    const CommonAPIError cancelled = CommonAPIError::urlSessionError(makeURLError(URLError::cancelled));
    LoopbackServer server;
    URLSessionAPIRemote remote{nullptr, 30, "scores/2.1"};
};

TEST_F(URLSessionAPIRemoteTest, SendsWhatItIsToldAndTakesAnEmptyBody) {
    const auto response = runBlocking(remote.performRequest(url("/team"), "at  \xE9leven", "PUT", Data("[1]")));
    EXPECT_EQ(response.value(), URLSessionAPIResponse());

    const auto request = server.requests().front();
    EXPECT_EQ(request.method + request.body, "PUT[1]");
    EXPECT_EQ(request.header("User-Agent"), "scores/2.1");
    EXPECT_EQ(request.header("If-Modified-Since"), "at  \xE9leven");

    const auto task = remote.performRequestWithTask(url("/team"), "the team", {}, {}, {}, nullptr);
    EXPECT_EQ(task->state(), URLSessionTaskState::suspended);
    EXPECT_EQ(task->taskDescription(), "the team");
    EXPECT_EQ(task->originalRequest().cachePolicy(), URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData);
    EXPECT_EQ(task->originalRequest().timeoutInterval(), 30);
}

TEST_F(URLSessionAPIRemoteTest, CancelsTheTransferOfACancelledTask) {
    const auto request = spawn(remote.performRequest(url("/held"), {}, {}, {}));
    ASSERT_TRUE(server.waitForHeldExchange());
    request.cancel();
    EXPECT_EQ(runBlocking(request.value()).error(), cancelled);
}

TEST_F(URLSessionAPIRemoteTest, TakesItsOwnSessionWithItAndLeavesTheSharedOne) {
    const auto own = URLSession::make(URLSessionConfiguration::ephemeral());
    for (const auto& session : {own, std::shared_ptr<URLSession>()})
        const URLSessionAPIRemote former(session, 30, "scores/2.0");
    EXPECT_TRUE(runBlocking(remote.performRequest(url("/team"), {}, {}, {})));
    URLSessionAPIRemote late(own, 30, "scores/2.1");
    EXPECT_EQ(runBlocking(late.performRequest(url("/team"), {}, {}, {})).error(), cancelled);
}

TEST(RemoteExchange, TakesEachStatusForWhatItIsAndFieldsByTheirExactNames) {
    for (const auto& [status, expected] : std::initializer_list<std::pair<int, const char*>>{{199, "success"},
                                                                                             {299, "success"},
                                                                                             {300, "redirection"},
                                                                                             {302, "redirection"},
                                                                                             {304, "notModified"},
                                                                                             {399, "redirection"},
                                                                                             {400, "clientFault(400)"},
                                                                                             {499, "clientFault(499)"},
                                                                                             {500, "serverFault(500)"},
                                                                                             {599, "serverFault(599)"},
                                                                                             {600, "success"}}) {
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
