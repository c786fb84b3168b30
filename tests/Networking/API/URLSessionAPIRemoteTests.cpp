#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include <Corvane/Networking/API/URLSessionAPIRemote.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>
#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane {
namespace {

using testing::LoopbackResponse;
using testing::LoopbackServer;

struct Fixture {
    Fixture() {
        server.route("*", "/team", LoopbackResponse::json("").with("Last-Modified", "at  \xE9leven"));
        server.route("*", "/held", LoopbackResponse::held());
    }

    [[nodiscard]] URL url(std::string_view path) const { return *URL::parse(server.url(path)); }

    LoopbackServer server;
};

const CommonAPIError cancelled = CommonAPIError::urlSessionError(makeURLError(URLError::cancelled));

TEST(URLSessionAPIRemote, SendsWhatItIsToldAndTakesAnEmptyBody) {
    const Fixture f;
    URLSessionAPIRemote remote(nullptr, 30, "scores/2.1");
    const auto response = runBlocking(remote.performRequest(f.url("/team"), "at  \xE9leven", "PUT", Data("[1]")));
    EXPECT_EQ(response.value(), (URLSessionAPIResponse{.data = {}, .lastModified = "at  \xE9leven", .timeStamp = {}}));

    const auto request = f.server.requests().front();
    EXPECT_EQ(request.method, "PUT");
    EXPECT_EQ(request.header("User-Agent"), "scores/2.1");
    EXPECT_EQ(request.header("If-Modified-Since"), "at  \xE9leven");
    EXPECT_EQ(request.body, "[1]");
}

TEST(URLSessionAPIRemote, CancelsTheTransferOfACancelledTask) {
    Fixture f;
    URLSessionAPIRemote remote(nullptr, 30, "scores/2.1");
    auto request = spawn(remote.performRequest(f.url("/held"), {}, {}, {}));
    ASSERT_TRUE(f.server.waitForHeldExchange());
    request.cancel();
    EXPECT_EQ(runBlocking(request.value()).error(), cancelled);
}

TEST(URLSessionAPIRemote, TakesItsOwnSessionWithItAndLeavesTheSharedOne) {
    const Fixture f;
    const auto session = URLSession::make(URLSessionConfiguration::ephemeral());
    for (const auto& own : {session, std::shared_ptr<URLSession>()}) {
        auto former = std::make_unique<URLSessionAPIRemote>(own, 30, "scores/2.1");
        former.reset();
        URLSessionAPIRemote remote(own, 30, "scores/2.1");
        const auto response = runBlocking(remote.performRequest(f.url("/team"), {}, {}, {}));
        EXPECT_EQ(response.has_value(), own == nullptr);
        if (!response) {
            EXPECT_EQ(response.error(), cancelled);
        }
    }
}

TEST(URLSessionAPIRemote, MakesATaskThatItsCallerStarts) {
    const Fixture f;
    URLSessionAPIRemote remote(nullptr, 30, "scores/2.1");
    std::shared_ptr<URLSessionDataTask> task;
    const auto status = runBlocking([&]() -> Task<int> {
        co_return co_await withContinuation<int>([&](const Continuation<int>& continuation) {
            task = remote.performRequestWithTask(f.url("/team"), "the team", {}, {}, {},
                                                 [continuation](const auto&, const auto& response, const auto&) {
                                                     continuation.resume(response->statusCode());
                                                 });
            EXPECT_EQ(task->state(), URLSessionTaskState::suspended);
            EXPECT_EQ(task->taskDescription(), "the team");
            EXPECT_EQ(task->originalRequest().cachePolicy(),
                      URLRequestCachePolicy::reloadIgnoringLocalAndRemoteCacheData);
            EXPECT_EQ(task->originalRequest().timeoutInterval(), 30);
            task->resume();
        });
    }());
    EXPECT_EQ(status, 200);
}

}  // namespace
}  // namespace corvane
