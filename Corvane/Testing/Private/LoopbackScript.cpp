#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include <Corvane/Testing/Private/HTTPSyntax.hpp>
#include <Corvane/Testing/Private/LoopbackScript.hpp>

namespace corvane::testing {

namespace {

using Ending = LoopbackScript::Ending;
using Framing = LoopbackResponse::Framing;

/// Whether a client asked for, or its version implies, the end of the connection after this answer.
bool asksForClose(const LoopbackRequest& request) noexcept {
    const std::string_view connection = request.header("Connection").value_or("");
    if (http::listContains(connection, "close")) return true;
    return request.version == "HTTP/1.0" && !http::listContains(connection, "keep-alive");
}

/// Whether an answer to `request` ends with its header section whatever that section says (RFC 9112, 6.3).
bool hasNoBody(const LoopbackResponse& response, const LoopbackRequest& request) noexcept {
    return request.method == "HEAD" || response.status == 204 || response.status == 304 || response.status < 200;
}

void addUnlessPresent(LoopbackResponse& response, std::string name, std::string value) {
    if (response.header(name) == nullptr) response.headers.push_back({std::move(name), std::move(value)});
}

std::string chunk(std::string_view data) {
    char size[2 * sizeof(std::size_t)];
    const auto end = std::to_chars(std::begin(size), std::end(size), data.size(), 16).ptr;
    std::string text(size, end);
    text += "\r\n";
    text += data;
    return text += "\r\n";
}

LoopbackScript soundScript(LoopbackResponse response, const LoopbackRequest& request) {
    const bool closes = response.framing == Framing::untilClose || asksForClose(request);
    // A 204 has no framing fields at all; 304 and HEAD say what a GET would have got (RFC 9110, 8.6).
    if (response.status >= 200 && response.status != 204) {
        if (response.framing == Framing::chunked) {
            addUnlessPresent(response, "Transfer-Encoding", "chunked");
        } else if (response.framing == Framing::contentLength && response.status != 304) {
            addUnlessPresent(response, "Content-Length", std::to_string(response.body.size()));
        }
    }
    if (closes) addUnlessPresent(response, "Connection", "close");

    LoopbackScript script{response.head(), closes ? Ending::close : Ending::keepAlive};
    if (hasNoBody(response, request)) return script;
    if (response.framing != Framing::chunked) {
        script.bytes += response.body;
    } else {
        if (!response.body.empty()) script.bytes += chunk(response.body);
        script.bytes += "0\r\n\r\n";
    }
    return script;
}

/// The header section and half of a body of which Content-Length announces all, and of an empty one too much.
std::string halfOfBody(LoopbackResponse response) {
    addUnlessPresent(response, "Content-Length", std::to_string(std::max<std::size_t>(response.body.size(), 1)));
    return response.head() + response.body.substr(0, response.body.size() / 2);
}

std::string halfOfChunkedBody(LoopbackResponse response) {
    addUnlessPresent(response, "Transfer-Encoding", "chunked");
    const std::string_view half = std::string_view(response.body).substr(0, response.body.size() / 2);
    return response.head() + (half.empty() ? std::string() : chunk(half));
}

LoopbackResponse withBrokenGzip(LoopbackResponse response) {
    // A sound header (RFC 1952, 2.3), then a block of the reserved type 3 (RFC 1951, 3.2.3).
    constexpr std::string_view gzipHeader("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);
    response.body = std::string(gzipHeader) + std::string(64, '\xFF');
    addUnlessPresent(response, "Content-Encoding", "gzip");
    return response;
}

}  // namespace

LoopbackScript scriptOf(const LoopbackResponse& response, const LoopbackRequest& request) {
    switch (response.fault) {
        case LoopbackFault::none:
            break;
        case LoopbackFault::closeBeforeHeaders:
            return {{}, Ending::close};
        case LoopbackFault::resetBeforeHeaders:
            return {{}, Ending::reset};
        case LoopbackFault::resetInsideHeaders: {
            const std::string head = soundScript(response, request).bytes;
            return {head.substr(0, head.find("\r\n") + 4), Ending::reset};
        }
        case LoopbackFault::resetInsideBody:
            return {halfOfBody(response), Ending::reset};
        case LoopbackFault::truncatedBody:
            return {halfOfBody(response), Ending::close};
        case LoopbackFault::truncatedChunkedBody:
            return {halfOfChunkedBody(response), Ending::close};
        case LoopbackFault::badChunkSize:
            return {halfOfChunkedBody(response) + "size\r\nbody\r\n", Ending::close};
        case LoopbackFault::brokenGzip:
            return soundScript(withBrokenGzip(response), request);
        case LoopbackFault::strayInformational: {
            LoopbackScript script = soundScript(response, request);
            const LoopbackResponse hints{.status = 103, .headers = {{"Link", "</style.css>; rel=preload"}}};
            script.bytes.insert(0, LoopbackResponse{.status = 100}.head() + hints.head());
            return script;
        }
        case LoopbackFault::endlessHeaders:
            return {"HTTP/1.1 200 OK\r\n", Ending::endlessHeaders};
        case LoopbackFault::neverAnswer:
            return {{}, Ending::silence};
    }
    return soundScript(response, request);
}

}  // namespace corvane::testing
