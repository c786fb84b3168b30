#include <string>

#include <gmock/gmock.h>

#include <Corvane/Testing/LoopbackServer.hpp>

#include "RawClient.hpp"

namespace corvane::testing {
namespace {

using ::testing::StartsWith;

enum class End { closed, reset, open };

struct FaultCase {
    LoopbackFault fault;
    /// What comes over the wire for a sound answer of "0123456789" with the field "A: b".
    std::string wire;
    End end;
};

const std::string request = "GET / HTTP/1.1\r\nHost: h\r\n\r\n";
const std::string lengthHead = "HTTP/1.1 200 OK\r\nA: b\r\nContent-Length: 10\r\n\r\n";
const std::string chunkedHead = "HTTP/1.1 200 OK\r\nA: b\r\nTransfer-Encoding: chunked\r\n\r\n";

class LoopbackFaults : public ::testing::TestWithParam<FaultCase> {};

TEST_P(LoopbackFaults, BreakTheAnswerAtTheirPlace) {
    const auto& [fault, wire, end] = GetParam();
    LoopbackServer server;
    server.route("GET", "/", LoopbackResponse{.body = "0123456789"}.with("A", "b").with(fault));
    RawClient client(server.port());
    client.send(request);
    if (end == End::open) {
        ASSERT_TRUE(server.waitForRequests(1));
        EXPECT_EQ(client.receiveUntil(wire), wire);
        EXPECT_EQ(server.connectionsOpen(), 1U);
        return;
    }
    EXPECT_EQ(client.receiveAll(), wire);
    EXPECT_EQ(client.wasReset(), end == End::reset);
}

INSTANTIATE_TEST_SUITE_P(
    All, LoopbackFaults,
    ::testing::Values(FaultCase{LoopbackFault::closeBeforeHeaders, "", End::closed},
                      FaultCase{LoopbackFault::resetBeforeHeaders, "", End::reset},
                      FaultCase{LoopbackFault::resetInsideHeaders, "HTTP/1.1 200 OK\r\nA:", End::reset},
                      FaultCase{LoopbackFault::resetInsideBody, lengthHead + "01234", End::reset},
                      FaultCase{LoopbackFault::truncatedBody, lengthHead + "01234", End::closed},
                      FaultCase{LoopbackFault::truncatedChunkedBody, chunkedHead + "5\r\n01234\r\n", End::closed},
                      FaultCase{LoopbackFault::badChunkSize, chunkedHead + "5\r\n01234\r\nsize\r\nbody\r\n",
                                End::closed},
                      FaultCase{LoopbackFault::strayInformational,
                                "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: </style.css>; "
                                "rel=preload\r\n\r\n" +
                                    lengthHead + "0123456789",
                                End::open},
                      FaultCase{LoopbackFault::endlessHeaders, "HTTP/1.1 200 OK\r\n", End::open},
                      FaultCase{LoopbackFault::neverAnswer, "", End::open}));

TEST(LoopbackFault, StrikesTheNextConnectionsInOrder) {
    LoopbackServer server;
    server.route("GET", "/", {.body = "sound"});
    server.failNextConnection(LoopbackFault::resetBeforeHeaders);
    server.failNextConnection(LoopbackFault::strayInformational);

    RawClient first(server.port());
    first.send("G");
    EXPECT_EQ(first.receiveAll(), "");
    EXPECT_TRUE(first.wasReset());
    RawClient second(server.port());
    second.send(request + request);
    EXPECT_THAT(second.receiveUntil("sound"), StartsWith("HTTP/1.1 100 "));
    EXPECT_THAT(second.receiveUntil("sound"), StartsWith("HTTP/1.1 200 "));
    RawClient third(server.port());
    third.send(request);
    EXPECT_THAT(third.receiveUntil("sound"), StartsWith("HTTP/1.1 200 "));
}

}  // namespace
}  // namespace corvane::testing
