#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Testing/LoopbackServer.hpp>

namespace corvane::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// A TCP connection to 127.0.0.1 that sends and receives bytes as they are.
class RawClient {
  public:
    explicit RawClient(const LoopbackServer& server) {
        // Only a test that would hang ever waits this long.
        const timeval patience{.tv_sec = 20, .tv_usec = 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(server.port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    ~RawClient() { ::close(socket_); }

    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0) return;
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    /// Whatever comes until `end` ends it, or the connection does.
    std::string receive(std::string_view end = "(reset)") const {
        std::string received;
        for (char bytes[16 * 1024]; !received.ends_with(end);) {
            const ssize_t count = ::recv(socket_, bytes, sizeof bytes, 0);
            if (count < 0 && errno == ECONNRESET) received += "(reset)";
            if (count <= 0) break;
            received.append(bytes, static_cast<std::size_t>(count));
        }
        return received;
    }

  private:
    int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

/// The answer to one request whose connection is to be closed afterwards.
std::string answerTo(const LoopbackServer& server, std::string_view request) {
    const RawClient client(server);
    client.send(request);
    return client.receive();
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

TEST(LoopbackServer, ReadsBodiesHoweverTheyArrive) {
    const std::string chunked =
        "POST /echo HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: Chunked\r\nConnection: close\r\n\r\n"
        "3;name=value\r\nabc\r\nA\r\n0123456789\r\n0\r\nX-Trailer: t\r\n\r\n";
    LoopbackServer server;
    server.route("POST", "/echo", echo);
    EXPECT_THAT(answerTo(server, chunked), EndsWith("\r\n\r\nabc0123456789"));

    // Every cut of the same bytes into two pieces, as far as the kernel does not join them again.
    for (std::size_t cut = 1; cut < chunked.size(); ++cut) {
        const RawClient client(server);
        client.send(chunked.substr(0, cut));
        client.send(chunked.substr(cut));
        ASSERT_THAT(client.receive(), EndsWith("\r\n\r\nabc0123456789")) << "cut at " << cut;
    }

    const RawClient polite(server);
    polite.send("POST /echo HTTP/1.1\r\nHost: h\r\nContent-Length: 2\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(polite.receive("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
    polite.send("ok");
    EXPECT_THAT(polite.receive("ok"), StartsWith("HTTP/1.1 200 "));
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

TEST(LoopbackServer, HoldsAnExchangeUntilTheTestGoesOnOrTheServerEnds) {
    auto server = std::make_unique<LoopbackServer>();
    server->route("GET", "/held", LoopbackResponse::held());
    const std::string request = "GET /held HTTP/1.1\r\nHost: h\r\n\r\n";
    const RawClient client(*server);
    client.send(request);
    const auto first = server->waitForHeldExchange();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->request().target, "/held");
    first->send("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab");
    EXPECT_THAT(client.receive("ab"), EndsWith("\r\n\r\nab"));
    first->send("cd");
    first->finish();
    first->send("never seen, the exchange is over");
    EXPECT_EQ(client.receive("cd"), "cd");
    client.send(request);
    const auto second = server->waitForHeldExchange();
    ASSERT_TRUE(second);
    second->send(std::string(50'000'000, 'x'));
    EXPECT_FALSE(second->waitUntilWritten(std::chrono::milliseconds(0)));
    second->reset();
    EXPECT_FALSE(second->waitUntilWritten());
    EXPECT_THAT(client.receive(), EndsWith("(reset)"));
    EXPECT_FALSE(server->waitForHeldExchange(std::chrono::milliseconds(0)));

    const RawClient last(*server);
    last.send(request);
    const auto survivor = server->waitForHeldExchange();
    ASSERT_TRUE(survivor);
    server.reset();
    survivor->respond({});
    EXPECT_TRUE(survivor->waitForHangUp());
    EXPECT_EQ(last.receive(), "");
}

}  // namespace
}  // namespace corvane::testing
