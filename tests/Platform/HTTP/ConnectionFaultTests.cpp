#include <ostream>

#include <Corvane/Testing/VirtualClock.hpp>

#include "FaultFixture.hpp"
#include "ResolverStub.hpp"

namespace corvane {
namespace {

struct FaultCase {
    const char* name;
    LoopbackFault fault;
    URLError code;
    /// Whether the head of the response had arrived and is handed over with the error.
    bool hasResponse;

    friend std::ostream& operator<<(std::ostream& out, const FaultCase& value) { return out << value.name; }
};

class ConnectionFaults : public FaultTest, public ::testing::WithParamInterface<FaultCase> {
  protected:
    ConnectionFaults() {
        server.route("*", "/fault", LoopbackResponse::json(R"({"goals":3})").with(GetParam().fault));
        server.route("*", "/sound", LoopbackResponse::json("sound"));
    }

    void expectFault(const Completion& completion) {
        EXPECT_TRUE(completion.error == GetParam().code) << completion.code();
        EXPECT_FALSE(completion.data);
        EXPECT_EQ(completion.status(), GetParam().hasResponse ? 200 : 0);
    }
};

TEST_P(ConnectionFaults, EndInOneCompletionWithTheirCode) {
    expectFault(loadOne(request("/fault")));
    // Again on a connection that has carried a sound exchange, and that nothing is left of afterwards.
    EXPECT_EQ(loadOne(request("/sound")).body(), "sound");
    expectFault(loadOne(request("/fault")));
    EXPECT_EQ(loadOne(request("/sound")).body(), "sound");
}

TEST_P(ConnectionFaults, StrikeAPostToo) {
    URLRequest post = request("/fault");
    post.setHttpMethod("POST");
    post.setHttpBody(Data(std::string_view("payload")));
    expectFault(loadOne(post));
}

INSTANTIATE_TEST_SUITE_P(
    All, ConnectionFaults,
    ::testing::Values(
        FaultCase{"closeBeforeHeaders", LoopbackFault::closeBeforeHeaders, URLError::networkConnectionLost, false},
        FaultCase{"resetBeforeHeaders", LoopbackFault::resetBeforeHeaders, URLError::networkConnectionLost, false},
        FaultCase{"resetInsideHeaders", LoopbackFault::resetInsideHeaders, URLError::networkConnectionLost, false},
        FaultCase{"resetInsideBody", LoopbackFault::resetInsideBody, URLError::networkConnectionLost, true},
        FaultCase{"truncatedBody", LoopbackFault::truncatedBody, URLError::networkConnectionLost, true},
        FaultCase{"truncatedChunkedBody", LoopbackFault::truncatedChunkedBody, URLError::networkConnectionLost, true},
        FaultCase{"badChunkSize", LoopbackFault::badChunkSize, URLError::cannotParseResponse, true},
        FaultCase{"brokenGzip", LoopbackFault::brokenGzip, URLError::cannotDecodeContentData, true},
        FaultCase{"endlessHeaders", LoopbackFault::endlessHeaders, URLError::cannotParseResponse, false}),
    [](const auto& test) { return std::string(test.param.name); });

using ConnectionFault = FaultTest;

TEST_F(ConnectionFault, ANewConnectionThatIsResetOrRefused) {
    // Larger than the sockets' buffers: the server hangs up while the body is still being written.
    server.failNextConnection(LoopbackFault::resetBeforeHeaders);
    URLRequest post = request("/");
    post.setHttpMethod("POST");
    post.setHttpBody(Data(std::string(20'000'000, 'p')));
    EXPECT_TRUE(loadOne(post).error == URLError::networkConnectionLost);

    server.refuseConnections();
    const Completion refused = loadOne(request("/"));
    EXPECT_TRUE(refused.error == URLError::cannotConnectToHost);
    EXPECT_EQ(refused.response, nullptr);
    server.acceptConnections();
    EXPECT_EQ(loadOne(request("/")).status(), 404);
}

TEST_F(ConnectionFault, AHostThatDoesNotExist) {
    const ResolverStub resolver;
    EXPECT_TRUE(loadOne(URLRequest(*URL::parse("http://missing.test/"))).error == URLError::cannotFindHost);
}

TEST_F(ConnectionFault, AKeptConnectionThatTheServerClosedIsNoFault) {
    server.route("*", "/sound", LoopbackResponse::json("sound"));
    for (const char* const method : {"GET", "POST"}) {
        URLRequest asked = request("/sound");
        asked.setHttpMethod(method);
        EXPECT_EQ(loadOne(asked).body(), "sound");
        server.closeIdleConnections();
        EXPECT_EQ(loadOne(asked).body(), "sound") << method;
    }
}

TEST_F(ConnectionFault, StrayInformationalResponsesAreNone) {
    server.route("GET", "/", LoopbackResponse::json("sound").with("A", "b").with(LoopbackFault::strayInformational));
    const Completion completion = loadOne(request("/"));
    EXPECT_EQ(completion.body(), "sound");
    EXPECT_EQ(completion.status(), 200);
    EXPECT_EQ(completion.response->headerField("A"), "b");
    EXPECT_FALSE(completion.response->headerField("Link"));
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

TEST_F(ConnectionFault, AServerThatSpeaksNoTLS) {
    std::string url = server.url("/");
    url.insert(4, "s");
    EXPECT_TRUE(loadOne(URLRequest(*URL::parse(url))).error == URLError::secureConnectionFailed);
}

TEST_F(ConnectionFault, AServerThatNeverAnswers) {
    testing::VirtualClock clock;
    server.route("GET", "/", LoopbackResponse().with(LoopbackFault::neverAnswer));
    URLRequest asked = request("/");
    asked.setTimeoutInterval(20);
    start(asked);
    ASSERT_TRUE(server.waitForRequests(1));
    clock.advance(20);
    EXPECT_TRUE(completions.wait().error == URLError::timedOut);
    EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(ConnectionFault, ATrickleEndsWhenItDriesUpAndNotBefore) {
    testing::VirtualClock clock;
    server.route("GET", "/", LoopbackResponse::held());
    URLRequest asked = request("/");
    asked.setTimeoutInterval(10);
    start(asked);
    const auto exchange = server.waitForHeldExchange();
    ASSERT_TRUE(exchange);
    exchange->send(LoopbackResponse{.headers = {{"Content-Length", "200000000"}}}.head());
    // A piece larger than what the sockets hold is written when a part of it has been read.
    const std::string piece(20'000'000, 'x');
    for (int pieces = 0; pieces < 4; ++pieces) {
        exchange->send(piece);
        ASSERT_TRUE(exchange->waitUntilWritten());
        clock.advance(9);
        EXPECT_TRUE(completions.all().empty()) << "after " << pieces << " pieces";
    }
    // What the sockets still held may have been read only now.
    clock.advance(1);
    while (completions.all().empty())
        clock.advance(1);
    EXPECT_TRUE(completions.wait().error == URLError::timedOut);
    EXPECT_TRUE(exchange->waitForHangUp());
}

}  // namespace
}  // namespace corvane
