#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Testing/LoopbackExchange.hpp>
#include <Corvane/Testing/LoopbackRequest.hpp>
#include <Corvane/Testing/LoopbackResponse.hpp>

namespace corvane::testing {

/// A real HTTP/1.1 server on 127.0.0.1, on a port of its own, for tests and demos: routes are lambdas, every
/// request is recorded, answers can be held back, and faults can be scripted. It serves from construction to
/// destruction.
///
///     LoopbackServer server;
///     server.route("GET", "/fixtures", [](const LoopbackRequest&) { return LoopbackResponse::json("[]"); });
///     client.get(server.url("/fixtures"));
///     EXPECT_EQ(server.requests().front().header("Accept"), "application/json");
///
/// Connections are kept alive, pipelined requests are answered in order, and a request that is no HTTP/1.1 is
/// refused with a 400 of its kind and not recorded. Operations may be called on any thread, on the server's
/// own only from routes. Waiting is for events; `patience` is how much real time may pass before a test that
/// would hang fails.
class CORVANE_EXPORT LoopbackServer {
  public:
    /// Called on the server's thread, one request at a time; it must not block. A test that wants to answer
    /// later returns `LoopbackResponse::held()`.
    using Handler = std::function<LoopbackResponse(const LoopbackRequest&)>;

    static constexpr std::chrono::seconds defaultPatience{20};

    /// Listens when it returns. Stops the process when the system gives no socket.
    LoopbackServer();

    /// Resets what is still open and joins the server's thread, deliberately: routes may use what the test is
    /// about to destroy. Takes no longer than a route that is just running. Not to be called by a route.
    ~LoopbackServer();

    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// Stays the same while connections are refused.
    [[nodiscard]] std::uint16_t port() const noexcept;

    /// "http://127.0.0.1:PORT" followed by `target`; with the host "localhost" the same server under another
    /// name.
    [[nodiscard]] std::string url(std::string_view target = "/", std::string_view host = "127.0.0.1") const;

    /// Answers requests of `method` ("*": any) for `path` (queries do not count; one that ends in '*' means
    /// every path that begins so). A later route goes before an earlier one. HEAD is answered by a route for
    /// GET, without its body. Without a route the answer is 404, or 405 when the path has routes for other
    /// methods.
    void route(std::string method, std::string path, Handler handler);
    void route(std::string method, std::string path, LoopbackResponse response);

    /// The next connections, in this order, answer their first request with a fault, whatever its route says; a reset
    /// or a close before the headers comes with the first bytes of the request, in the middle of a large one.
    void failNextConnection(LoopbackFault fault);

    /// Closes the listening socket, so that new connections are refused by the kernel, and opens it again.
    /// Both have happened on return; existing connections go on.
    void refuseConnections();
    void acceptConnections();

    /// Closes in order all connections that were kept open after an answer and carry no request now, as a server does
    /// that needs room.
    void closeIdleConnections();

    /// What came in so far, in the order of arrival.
    [[nodiscard]] std::vector<LoopbackRequest> requests() const;
    [[nodiscard]] std::size_t requestCount() const;

    /// Connections accepted since the construction, and those that neither side has closed yet.
    [[nodiscard]] std::size_t connectionsAccepted() const;
    [[nodiscard]] std::size_t connectionsOpen() const;

    /// Blocks until `count` requests have come in since the construction; false when `patience` is exhausted.
    [[nodiscard]] bool waitForRequests(std::size_t count, std::chrono::milliseconds patience = defaultPatience) const;

    /// Blocks until exactly `count` connections are open; false when `patience` is exhausted.
    [[nodiscard]] bool waitForOpenConnections(std::size_t count,
                                              std::chrono::milliseconds patience = defaultPatience) const;

    /// Blocks until a route has held a request back and hands out the oldest that was not handed out before;
    /// absent when `patience` is exhausted.
    [[nodiscard]] std::optional<LoopbackExchange> waitForHeldExchange(
        std::chrono::milliseconds patience = defaultPatience);

  private:
    std::shared_ptr<LoopbackEngine> engine_;
    std::thread thread_;
};

}  // namespace corvane::testing
