#include <thread>

#include "ResolverStub.hpp"
#include "SessionFixture.hpp"

namespace corvane {
namespace {

class CancelFault : public SessionTest {
  protected:
    CancelFault() {
        server.route("GET", "/held", LoopbackResponse::held());
        server.route("GET", "/sound", LoopbackResponse::json("sound"));
    }

    void expectCancelled(const std::shared_ptr<URLSessionDataTask>& task) {
        const Completion completion = waitForAll();
        EXPECT_TRUE(completion.error == URLError::cancelled) << completion.code();
        EXPECT_FALSE(completion.data);
        EXPECT_EQ(task->state(), URLSessionTaskState::completed);
        task->cancel();
        task->resume();
    }
};

TEST_F(CancelFault, BeforeItWasResumed) {
    const auto task = make(request("/sound"));
    task->cancel();
    expectCancelled(task);
    EXPECT_EQ(server.connectionsAccepted(), 0U);
}

TEST_F(CancelFault, WhileTheResolverHangs) {
    const ResolverStub resolver;
    const auto task = start(URLRequest(*URL::parse("http://hanging.test/")));
    resolver.waitForHangingLookups(1);
    // Others are not held up by the look-up that hangs, and neither is the cancellation: it hangs to the very end.
    EXPECT_EQ(load(session, request("/sound")).body(), "sound");
    task->cancel();
    expectCancelled(task);
}

TEST_F(CancelFault, WhileItWaitsForAConnection) {
    URLSessionConfiguration configuration = URLSessionConfiguration::ephemeral();
    configuration.maximumConnectionsPerHost = 1;
    useConfiguration(configuration);
    start(request("/held"));
    const auto exchange = server.waitForHeldExchange();
    ASSERT_TRUE(exchange);
    start(request("/sound"))->cancel();
    EXPECT_TRUE(completions.wait(1).error == URLError::cancelled);
    exchange->respond({.body = "answered"});
    EXPECT_EQ(waitForAll().body(), "answered");
    EXPECT_EQ(server.requestCount(), 1U);
}

TEST_F(CancelFault, InsideTheResponse) {
    // The last piece is more than the sockets hold: written, it has been read in part.
    const std::string pieces[] = {"", "HTTP/1.1 200 OK\r\nContent-Le",
                                  "HTTP/1.1 200 OK\r\nContent-Length: 40000000\r\n\r\n",
                                  "HTTP/1.1 200 OK\r\nContent-Length: 40000000\r\n\r\n" + std::string(20'000'000, 'x')};
    for (const std::string& piece : pieces) {
        const auto task = start(request("/held"));
        const auto exchange = server.waitForHeldExchange();
        ASSERT_TRUE(exchange);
        exchange->send(piece);
        ASSERT_TRUE(exchange->waitUntilWritten());
        task->cancel();
        expectCancelled(task);
        EXPECT_TRUE(exchange->waitForHangUp());
    }
}

TEST_F(CancelFault, FromManyThreadsAtOnceWithTheAnswer) {
    for (int round = 0; round < 50; ++round) {
        const auto task = start(request("/held"));
        const auto exchange = server.waitForHeldExchange();
        ASSERT_TRUE(exchange);
        std::thread first([&] { task->cancel(); });
        std::thread second([&] { task->cancel(); });
        exchange->respond({.body = "answered"});
        first.join();
        second.join();
        const Completion completion = waitForAll();
        EXPECT_TRUE(completion.error == URLError::cancelled || completion.body() == "answered") << completion.code();
    }
}

TEST_F(CancelFault, OfTheWholeSession) {
    const ResolverStub resolver;
    start(URLRequest(*URL::parse("http://hanging.test/")));
    resolver.waitForHangingLookups(1);
    for (int i = 0; i < 10; ++i)
        start(request("/held"));
    const auto unstarted = make(request("/held"));
    ASSERT_TRUE(server.waitForRequests(6));
    session->invalidateAndCancel();
    session->invalidateAndCancel();
    waitForAll();
    for (const Completion& completion : completions.all())
        EXPECT_TRUE(completion.error == URLError::cancelled) << completion.code();
    EXPECT_EQ(server.requestCount(), 6U);
    EXPECT_TRUE(start(request("/sound"))->originalRequest() == request("/sound"));
    EXPECT_TRUE(waitForAll().error == URLError::cancelled);
}

}  // namespace
}  // namespace corvane
