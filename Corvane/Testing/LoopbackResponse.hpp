#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Testing/LoopbackRequest.hpp>

namespace corvane::testing {

/// What goes wrong with an answer. Wherever an answer breaks off, what precedes the break has been sent.
enum class LoopbackFault : unsigned char {
    none,
    /// The connection is closed in order without a byte of an answer, as by a server that gave up a kept
    /// connection.
    closeBeforeHeaders,
    /// The connection is reset (RFC 9293, 3.5.2) before, inside or after the header section.
    resetBeforeHeaders,
    resetInsideHeaders,
    resetInsideBody,
    /// The connection is closed in order when half of the body that Content-Length announced has been sent.
    truncatedBody,
    /// The same of a chunked body: half of it comes in a sound chunk, then the connection is closed.
    truncatedChunkedBody,
    /// Half of the body comes in a sound chunk, the next chunk has a size that is no number.
    badChunkSize,
    /// The body is called gzip, begins as one and is garbage from there on.
    brokenGzip,
    /// "100 Continue" and "103 Early Hints" that nobody asked for precede the answer, which is sound.
    strayInformational,
    /// Header lines without end, until the client hangs up.
    endlessHeaders,
    /// The request is read and never answered; the connection stays open.
    neverAnswer,
};

/// The answer of a `LoopbackServer` to one request: a value to be returned from a route.
///
///     return {.status = 203, .headers = {{"X-Day", "3"}}, .body = "[]"};
///     return LoopbackResponse::json(R"({"live":true})").with("Last-Modified", date);
///     return LoopbackResponse::json("[1, 2]").with(LoopbackFault::resetInsideBody);
///
/// The server adds the fields that frame the body, "Content-Length" or "Transfer-Encoding", and "Connection:
/// close" where it closes, unless `headers` has them; it adds no other field.
struct CORVANE_EXPORT LoopbackResponse {
    enum class Framing : unsigned char { contentLength, chunked, untilClose };

    int status = 200;
    /// The reason phrase; the usual one of the status when empty.
    std::string reason = {};
    /// Sent as they stand, in this order.
    std::vector<HTTPHeaderField> headers = {};
    std::string body = {};
    Framing framing = Framing::contentLength;
    LoopbackFault fault = LoopbackFault::none;
    /// Nothing is sent by itself; `LoopbackServer::waitForHeldExchange` hands the exchange to the test.
    bool isHeld = false;

    /// A body with the content type "application/json".
    [[nodiscard]] static LoopbackResponse json(std::string body, int status = 200);

    /// An empty answer that sends the client to `location`: a path, or a URL of this or another server.
    [[nodiscard]] static LoopbackResponse redirect(std::string location, int status = 302);

    /// No answer until the test gives one, in as many pieces as it likes.
    [[nodiscard]] static LoopbackResponse held();

    /// Adds a field.
    [[nodiscard]] LoopbackResponse with(std::string name, std::string value) &&;
    [[nodiscard]] LoopbackResponse with(Framing how) &&;
    [[nodiscard]] LoopbackResponse with(LoopbackFault what) &&;

    /// The status line and header section as they go over the wire, the empty line included.
    [[nodiscard]] std::string head() const;

    /// The value of the first field called `name`, whatever the case of its letters; null without one.
    [[nodiscard]] const std::string* header(std::string_view name) const noexcept;
};

}  // namespace corvane::testing
