#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Testing/LoopbackServer.hpp>

#include "RawClient.hpp"

namespace corvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// The answer to one request whose connection is to be closed afterwards.
std::string answerTo(const LoopbackServer& server, std::string_view request) {
    RawClient client(server.port());
    client.send(request);
    return client.receiveAll();
}

std::string get(std::string_view target) {
    return "GET " + std::string(target) + " HTTP/1.1\r\nHost: h\r\nConnection: close\r\n\r\n";
}

LoopbackResponse echo(const LoopbackRequest& request) {
    return {.body = request.body};
}

TEST(LoopbackServer, AnswersByRoute) {
    LoopbackServer server;
    server.route("GET", "/fixtures", LoopbackResponse::json("[1]"));
    server.route("GET", "/teams/*", [](const LoopbackRequest& request) {
        return LoopbackResponse{.body = std::string(request.path()) + '|' + std::string(request.query())};
    });
    server.route("*", "/any", {.status = 299, .reason = "Odd"});
    server.route("GET", "/throws", [](const LoopbackRequest&) -> LoopbackResponse { throw std::runtime_error("no"); });

    EXPECT_EQ(answerTo(server, get("/fixtures?day=3")),
              "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 3\r\nConnection: "
              "close\r\n\r\n[1]");
    EXPECT_THAT(answerTo(server, get("/teams/7?a=1?b")), EndsWith("\r\n\r\n/teams/7|a=1?b"));
    EXPECT_THAT(answerTo(server, "BREW /any HTTP/1.0\r\n\r\n"), StartsWith("HTTP/1.1 299 Odd\r\n"));
    EXPECT_THAT(answerTo(server, get("/throws")), AllOf(StartsWith("HTTP/1.1 500 "), EndsWith("no")));
    EXPECT_THAT(answerTo(server, get("/missing")), StartsWith("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_THAT(answerTo(server, "POST /fixtures HTTP/1.0\r\n\r\n"),
                AllOf(StartsWith("HTTP/1.1 405 "), HasSubstr("\r\nAllow: GET\r\n")));
    EXPECT_THAT(answerTo(server, "HEAD /fixtures HTTP/1.0\r\n\r\n"),
                AllOf(HasSubstr("Content-Length: 3\r\n"), EndsWith("\r\n\r\n")));

    server.route("GET", "/fixtures", {.status = 304});
    EXPECT_THAT(answerTo(server, get("/fixtures")),
                AllOf(StartsWith("HTTP/1.1 304 Not Modified\r\n"), Not(HasSubstr("Content-Length"))));
}

TEST(LoopbackServer, RecordsRequestsByteForByte) {
    LoopbackServer server;
    answerTo(server,
             "POST /a%20b?c HTTP/1.1\r\nhost: H\r\nX-Twice: 1\r\nx-twice:\t 2, 3 \r\nX-Empty:\r\n"
             "Content-Length: 4\r\nConnection: close\r\n\r\nbody");
    answerTo(server, get("/second"));

    ASSERT_TRUE(server.waitForRequests(2));
    const std::vector<LoopbackRequest> requests = server.requests();
    const LoopbackRequest& first = requests.front();
    EXPECT_EQ(first.method, "POST");
    EXPECT_EQ(first.target, "/a%20b?c");
    EXPECT_EQ(first.version, "HTTP/1.1");
    EXPECT_EQ(first.body, "body");
    EXPECT_EQ(first.connection, 1U);
    EXPECT_EQ(first.header("X-TWICE"), "1");
    EXPECT_EQ(first.header("X-Thrice"), std::nullopt);
    const std::vector<HTTPHeaderField> headers{{"host", "H"},   {"X-Twice", "1"},        {"x-twice", "2, 3"},
                                               {"X-Empty", ""}, {"Content-Length", "4"}, {"Connection", "close"}};
    EXPECT_EQ(first.headers, headers);
    EXPECT_EQ(requests.back().connection, 2U);
    EXPECT_EQ(server.connectionsAccepted(), 2U);
}

TEST(LoopbackServer, ReadsBodiesHoweverTheyArrive) {
    const std::string chunked =
        "POST /echo HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: Chunked\r\nConnection: close\r\n\r\n"
        "3;name=value\r\nabc\r\nA\r\n0123456789\r\n0\r\nX-Trailer: t\r\n\r\n";
    LoopbackServer server;
    server.route("POST", "/echo", echo);
    EXPECT_THAT(answerTo(server, chunked), EndsWith("\r\n\r\nabc0123456789"));

    // Every cut of the same bytes into two pieces, as far as the kernel does not join them again.
    for (std::size_t cut = 1; cut < chunked.size(); ++cut) {
        RawClient client(server.port());
        client.send(chunked.substr(0, cut));
        client.send(chunked.substr(cut));
        ASSERT_THAT(client.receiveAll(), EndsWith("\r\n\r\nabc0123456789")) << "cut at " << cut;
    }

    RawClient polite(server.port());
    polite.send("POST /echo HTTP/1.1\r\nHost: h\r\nContent-Length: 2\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(polite.receiveUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
    polite.send("ok");
    EXPECT_THAT(polite.receiveUntil("ok"), StartsWith("HTTP/1.1 200 "));

    const std::string large(3'000'000, 'L');
    EXPECT_THAT(answerTo(server, "POST /echo HTTP/1.0\r\nContent-Length: 3000000\r\n\r\n" + large), EndsWith(large));
}

TEST(LoopbackServer, RefusesWhatIsNoRequest) {
    LoopbackServer server;
    server.route("*", "/*", echo);
    const std::string head = "POST / HTTP/1.1\r\nHost: h\r\n";

    const struct {
        std::string request;
        int status;
    } cases[] = {
        {"\x16\x03\x01 as TLS begins", 400},
        {"GET  / HTTP/1.1\r\nHost: h\r\n\r\n", 400},
        {"G(T / HTTP/1.1\r\nHost: h\r\n\r\n", 400},
        {"GET /\x80 HTTP/1.1\r\nHost: h\r\n\r\n", 400},
        {"GET / HTTP/2.0\r\nHost: h\r\n\r\n", 505},
        {"GET / HTTP/1.1\r\n\r\n", 400},
        {"GET / HTTP/1.1\r\nHost: h\r\nHost: h\r\n\r\n", 400},
        {head + "Name : value\r\n\r\n", 400},
        {head + "Bare: a\nInjected: b\r\n\r\n", 400},
        {head + std::string("Zero: \0\r\n\r\n", 11), 400},
        {head + "Content-Length: -1\r\n\r\n", 400},
        {head + "Content-Length: 99999999999999999999\r\n\r\n", 400},
        {head + "Content-Length: 99999999999\r\n\r\n", 413},
        {head + "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
        {head + "Transfer-Encoding: gzip, chunked\r\n\r\n", 501},
        {head + "Transfer-Encoding: chunked\r\n\r\nsize\r\n", 400},
        {head + "Long: " + std::string(70'000, 'x') + "\r\n\r\n", 431},
    };

    for (const auto& [request, status] : cases) {
        EXPECT_THAT(answerTo(server, request), StartsWith("HTTP/1.1 " + std::to_string(status) + ' '))
            << request.substr(0, 80);
    }
    EXPECT_EQ(server.requestCount(), 0U);
}

TEST(LoopbackServer, HoldsAnExchangeUntilTheTestGoesOn) {
    LoopbackServer server;
    server.route("GET", "/held", LoopbackResponse::held());
    const std::string request = "GET /held HTTP/1.1\r\nHost: h\r\n\r\n";

    RawClient trickled(server.port());
    trickled.send(request);
    const auto first = server.waitForHeldExchange();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->request().target, "/held");
    first->send("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab");
    EXPECT_THAT(trickled.receiveUntil("ab"), EndsWith("\r\n\r\nab"));
    first->send("cd");
    EXPECT_EQ(trickled.receiveUntil("cd"), "cd");
    first->finish();
    first->send("never seen, the exchange is over");
    trickled.send(request);
    const auto second = server.waitForHeldExchange();
    ASSERT_TRUE(second);
    second->reset();
    EXPECT_EQ(trickled.receiveAll(), "");
    EXPECT_TRUE(trickled.wasReset());
    EXPECT_FALSE(second->waitUntilWritten());

    RawClient impatient(server.port());
    impatient.send(request);
    const auto third = server.waitForHeldExchange();
    ASSERT_TRUE(third);
    third->send(std::string(50'000'000, 'x'));
    EXPECT_FALSE(third->waitUntilWritten(std::chrono::milliseconds(0)));
    impatient.hangUp();
    EXPECT_TRUE(third->waitForHangUp());
    third->respond({});
    EXPECT_FALSE(server.waitForHeldExchange(std::chrono::milliseconds(0)));
}

TEST(LoopbackServer, BreaksAnswersAtTheirPlace) {
    const std::string head = "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n";
    const std::string chunkedHead = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

    const struct {
        LoopbackFault fault;
        std::string wire;
        bool isReset;
    } cases[] = {
        {LoopbackFault::closeBeforeHeaders, "", false},
        {LoopbackFault::resetBeforeHeaders, "", true},
        {LoopbackFault::resetInsideHeaders, "HTTP/1.1 200 OK\r\nCo", true},
        {LoopbackFault::resetInsideBody, head + "01234", true},
        {LoopbackFault::truncatedBody, head + "01234", false},
        {LoopbackFault::truncatedChunkedBody, chunkedHead + "5\r\n01234\r\n", false},
        {LoopbackFault::badChunkSize, chunkedHead + "5\r\n01234\r\nsize\r\nbody\r\n", false},
    };

    for (const auto& [fault, wire, isReset] : cases) {
        LoopbackServer server;
        server.route("GET", "/", LoopbackResponse{.body = "0123456789"}.with(fault));
        RawClient client(server.port());
        client.send("GET / HTTP/1.1\r\nHost: h\r\n\r\n");
        EXPECT_EQ(client.receiveAll(), wire);
        EXPECT_EQ(client.wasReset(), isReset) << wire;
    }
}

TEST(LoopbackServer, EndsWhateverItsConnectionsAreDoing) {
    std::optional<LoopbackExchange> survivor;
    std::vector<std::unique_ptr<RawClient>> clients;
    {
        LoopbackServer server;
        server.route("GET", "/held", LoopbackResponse::held());
        server.route("GET", "/endless", LoopbackResponse().with(LoopbackFault::endlessHeaders));
        server.route("GET", "/large", {.body = std::string(20'000'000, 'x')});
        for (const std::string request : {"", "GET /", "/held", "/endless", "/large", "/large"}) {
            clients.push_back(std::make_unique<RawClient>(server.port()));
            clients.back()->send(request.starts_with('/') ? get(request) : request);
        }
        ASSERT_TRUE(server.waitForRequests(4));
        survivor = server.waitForHeldExchange();
        ASSERT_TRUE(survivor);
    }
    survivor->respond({});
    EXPECT_TRUE(survivor->waitForHangUp());
    EXPECT_EQ(clients[2]->receiveAll(), "");
}

}  // namespace
}  // namespace corvane::testing
