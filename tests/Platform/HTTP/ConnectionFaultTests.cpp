#include <cstdlib>

#include <Corvane/Testing/VirtualClock.hpp>

#include "ResolverStub.hpp"
#include "SessionFixture.hpp"
#include "tests/Support/DescriptorShortage.hpp"

namespace corvane {
namespace {

using ConnectionFault = SessionTest;

TEST_F(ConnectionFault, EndsInOneCompletionWithItsCode) {
    const struct {
        LoopbackFault fault;
        URLError code;
        /// Whether the head of the response had arrived and is handed over with the error.
        bool hasResponse;
    } cases[] = {
        {LoopbackFault::closeBeforeHeaders, URLError::networkConnectionLost, false},
        {LoopbackFault::resetBeforeHeaders, URLError::networkConnectionLost, false},
        {LoopbackFault::resetInsideHeaders, URLError::networkConnectionLost, false},
        {LoopbackFault::resetInsideBody, URLError::networkConnectionLost, true},
        {LoopbackFault::truncatedBody, URLError::networkConnectionLost, true},
        {LoopbackFault::truncatedChunkedBody, URLError::networkConnectionLost, true},
        {LoopbackFault::badChunkSize, URLError::cannotParseResponse, true},
        {LoopbackFault::brokenGzip, URLError::cannotDecodeContentData, true},
        {LoopbackFault::endlessHeaders, URLError::cannotParseResponse, false},
    };

    server.route("*", "/sound", LoopbackResponse::json("sound"));
    for (const auto& [fault, code, hasResponse] : cases) {
        SCOPED_TRACE(static_cast<int>(fault));
        server.route("*", "/fault", LoopbackResponse::json(R"({"goals":3})").with(fault));
        // Also on a connection that has carried a sound exchange, and that nothing is left of afterwards.
        for (const char* const method : {"GET", "POST", "GET"}) {
            URLRequest asked = request("/fault");
            asked.setHttpMethod(method);
            const Completion completion = load(asked);
            EXPECT_TRUE(completion.error == code) << completion.code();
            EXPECT_FALSE(completion.data);
            EXPECT_EQ(completion.status(), hasResponse ? 200 : 0);
            EXPECT_EQ(load(request("/sound")).body(), "sound");
        }
    }
}

TEST_F(ConnectionFault, ANewConnectionThatIsResetOrRefused) {
    // Larger than the sockets' buffers: the server hangs up while the body is still being written.
    server.failNextConnection(LoopbackFault::resetBeforeHeaders);
    URLRequest post = request("/");
    post.setHttpMethod("POST");
    post.setHttpBody(Data(std::string(20'000'000, 'p')));
    EXPECT_TRUE(load(post).error == URLError::networkConnectionLost);

    server.refuseConnections();
    const Completion refused = load(request("/"));
    EXPECT_TRUE(refused.error == URLError::cannotConnectToHost);
    EXPECT_EQ(refused.response, nullptr);
    server.acceptConnections();
    EXPECT_EQ(load(request("/")).status(), 404);
}

TEST_F(ConnectionFault, AServerThatIsNotThereOrSpeaksNoTLS) {
    const ResolverStub resolver;
    EXPECT_TRUE(load(URLRequest(*URL::parse("http://missing.test/"))).error == URLError::cannotFindHost);
    const std::string url = "https" + server.url("/").substr(4);
    EXPECT_TRUE(load(URLRequest(*URL::parse(url))).error == URLError::secureConnectionFailed);
}

TEST_F(ConnectionFault, AKeptConnectionThatTheServerClosedIsNoFault) {
    server.route("*", "/sound", LoopbackResponse::json("sound"));
    for (const char* const method : {"GET", "POST"}) {
        URLRequest asked = request("/sound");
        asked.setHttpMethod(method);
        EXPECT_EQ(load(asked).body(), "sound");
        server.closeIdleConnections();
        EXPECT_EQ(load(asked).body(), "sound") << method;
    }
}

TEST_F(ConnectionFault, AnswersThatAreNoHTTP) {
    server.route("GET", "/", LoopbackResponse::held());

    const struct {
        std::string bytes;
        URLError code;
    } cases[] = {
        {"SSH-2.0-OpenSSH_9.2\r\n", URLError::cannotParseResponse},
        {std::string("\0\1\2\3", 4), URLError::cannotParseResponse},
        {"<html>no head at all</html>", URLError::cannotParseResponse},
        {"HTTP/1.1 OK 200\r\n\r\n", URLError::cannotParseResponse},
        {"HTTP/4.2 200 OK\r\n\r\n", URLError::cannotParseResponse},
        {"HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nbody", URLError::cannotParseResponse},
        {"HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999999\r\n\r\nbody", URLError::dataLengthExceedsMaximum},
        {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 4\r\n\r\nbody",
         URLError::cannotDecodeContentData},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFFFFFFFFFFFF\r\nbody",
         URLError::cannotParseResponse},
        {"HTTP/1.1 100 Continue\r\n\r\n", URLError::networkConnectionLost},
        {"HTTP/1.1 200 OK\r\nX: y\r\n", URLError::networkConnectionLost},
        {"HTTP/1.1 200 OK\r\nX: " + std::string(400'000, 'x') + "\r\n\r\n", URLError::cannotParseResponse},
    };

    for (const auto& [bytes, code] : cases) {
        start(request("/"));
        const auto exchange = server.waitForHeldExchange();
        ASSERT_TRUE(exchange);
        exchange->send(bytes);
        exchange->close();
        const Completion completion = waitForAll();
        EXPECT_TRUE(completion.error == code) << bytes.substr(0, 60) << ": " << completion.code();
        EXPECT_FALSE(completion.data);
    }
}

TEST_F(ConnectionFault, TimesOutWhenNothingMovesAndNotBefore) {
    testing::VirtualClock clock;
    server.route("GET", "/never", LoopbackResponse().with(LoopbackFault::neverAnswer));
    server.route("GET", "/trickle", LoopbackResponse::held());
    const auto startWithTimeout = [this](URLRequest asked) {
        asked.setTimeoutInterval(10);
        return start(std::move(asked));
    };
    const ResolverStub resolver;
    startWithTimeout(URLRequest(*URL::parse("http://hanging.test/")));
    resolver.waitForHangingLookups(1);
    startWithTimeout(request("/never"));
    ASSERT_TRUE(server.waitForRequests(1));
    clock.advance(10);
    waitForAll();
    for (const Completion& completion : completions.all())
        EXPECT_TRUE(completion.error == URLError::timedOut) << completion.code();
    EXPECT_TRUE(server.waitForOpenConnections(0));

    const auto trickled = startWithTimeout(request("/trickle"));
    const auto exchange = server.waitForHeldExchange();
    ASSERT_TRUE(exchange);
    trickled->suspend();
    clock.advance(1000);
    trickled->resume();
    clock.advance(9);
    exchange->send(LoopbackResponse{.headers = {{"Content-Length", "200000000"}}}.head());
    // A piece larger than what the sockets hold is written when a part of it has been read.
    const std::string piece(20'000'000, 'x');
    for (int pieces = 0; pieces < 4; ++pieces) {
        exchange->send(piece);
        ASSERT_TRUE(exchange->waitUntilWritten());
        clock.advance(9);
        EXPECT_EQ(completions.all().size(), 2U) << "after " << pieces << " pieces";
    }
    // What the sockets still held may have been read only now.
    clock.advance(1);
    while (completions.all().size() == 2)
        clock.advance(1);
    EXPECT_TRUE(waitForAll().error == URLError::timedOut);
    EXPECT_TRUE(exchange->waitForHangUp());
}

TEST_F(ConnectionFault, WithoutADescriptorIsNotForEver) {
    if (!DescriptorShortage::isPossible) GTEST_SKIP() << "the sanitizer needs descriptors";
    server.route("GET", "/", LoopbackResponse::json("sound"));
    const auto startWithoutDescriptors = [this] {
        {
            const DescriptorShortage shortage;
            EXPECT_TRUE(load(request("/")).error);
        }
        EXPECT_EQ(load(request("/")).body(), "sound");
        std::_Exit(HasFailure() ? 1 : 0);
    };
    // In another process, whose network thread has not started.
    EXPECT_EXIT(startWithoutDescriptors(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace corvane
