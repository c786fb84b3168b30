#include <algorithm>
#include <charconv>
#include <utility>

#include <Corvane/Testing/Private/HTTPSyntax.hpp>
#include <Corvane/Testing/Private/RequestParser.hpp>

namespace corvane::testing {

namespace {

/// All of `text` as a number in `base`; absent for a sign, blanks, other characters or an overflow.
std::optional<std::size_t> number(std::string_view text, int base) noexcept {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

RequestParser::Progress RequestParser::advance() {
    while (state_ != State::complete && state_ != State::malformed && step()) {
    }
    if (state_ == State::malformed) return Progress::malformed;
    if (state_ == State::complete) return Progress::complete;
    return std::exchange(continueIsDue_, false) ? Progress::expectsContinue : Progress::incomplete;
}

LoopbackRequest RequestParser::takeRequest() {
    state_ = State::head;
    return std::exchange(request_, {});
}

bool RequestParser::step() {
    switch (state_) {
        case State::head:
            return readHead();
        case State::body:
            return readBody();
        case State::chunkSize:
            return readChunkSize();
        case State::chunkData:
            return readChunkData();
        case State::trailer:
            return readTrailer();
        case State::complete:
        case State::malformed:
            break;
    }
    return false;
}

bool RequestParser::readHead() {
    // Empty lines before a request are skipped (RFC 9112, 2.2).
    while (buffer_.starts_with("\r\n"))
        buffer_.erase(0, 2);
    // What begins like no method gets no further chance: a TLS handshake would wait for our answer as we for its end.
    const std::string_view start = std::string_view(buffer_).substr(0, 1);
    if (!start.empty() && start != "\r" && !http::isToken(start)) return reject(400);
    const std::size_t end = buffer_.find("\r\n\r\n");
    if (std::min(end, buffer_.size()) > maximumHead) return reject(431);
    if (end == std::string::npos) return false;

    const std::string head = buffer_.substr(0, end + 2);
    buffer_.erase(0, end + 4);
    std::string_view rest = head;
    for (bool isFirst = true; !rest.empty(); isFirst = false) {
        const std::size_t lineEnd = rest.find("\r\n");
        const std::string_view line = rest.substr(0, lineEnd);
        if (!(isFirst ? parseRequestLine(line) : parseFieldLine(line))) return false;
        rest.remove_prefix(lineEnd + 2);
    }
    return chooseFraming();
}

bool RequestParser::parseRequestLine(std::string_view line) {
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    if (first == std::string_view::npos || first == last) return reject(400);
    const std::string_view target = line.substr(first + 1, last - first - 1);
    request_.method = line.substr(0, first);
    request_.target = target;
    request_.version = line.substr(last + 1);
    const bool isPrintable = std::ranges::all_of(target, [](char c) { return c > ' ' && c < 0x7F; });
    const bool isKnownForm = target == "*" || target.starts_with('/') || target.starts_with("http://");
    if (!http::isToken(request_.method) || !isPrintable || !isKnownForm) return reject(400);
    if (!request_.version.starts_with("HTTP/")) return reject(400);
    if (request_.version != "HTTP/1.1" && request_.version != "HTTP/1.0") return reject(505);
    return true;
}

bool RequestParser::parseFieldLine(std::string_view line) {
    // A name with blanks behind it or a folded line is what request smuggling is made of (RFC 9112, 5.1
    // and 5.2).
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !http::isToken(line.substr(0, colon))) return reject(400);
    const std::string_view value = http::trimmed(line.substr(colon + 1));
    if (!http::isFieldValue(value)) return reject(400);
    request_.headers.push_back({std::string(line.substr(0, colon)), std::string(value)});
    return true;
}

bool RequestParser::chooseFraming() {
    const auto count = [this](std::string_view name) {
        return std::ranges::count_if(request_.headers, [name](const HTTPHeaderField& field) {
            return http::equalsIgnoringCase(field.name, name);
        });
    };
    if (count("Host") > 1 || (count("Host") == 0 && request_.version == "HTTP/1.1")) return reject(400);
    const auto length = request_.header("Content-Length");
    const auto coding = request_.header("Transfer-Encoding");
    if (count("Content-Length") + count("Transfer-Encoding") > 1) return reject(400);
    if (coding) {
        if (!http::equalsIgnoringCase(*coding, "chunked")) return reject(501);
        state_ = State::chunkSize;
    } else if (length) {
        const auto size = number(*length, 10);
        if (!size) return reject(400);
        if (*size > maximumBody) return reject(413);
        remaining_ = *size;
        state_ = State::body;
    } else {
        state_ = State::complete;
    }
    continueIsDue_ =
        state_ != State::complete && http::listContains(request_.header("Expect").value_or(""), "100-continue");
    return true;
}

bool RequestParser::readBody() {
    const std::size_t taken = std::min(remaining_, buffer_.size());
    request_.body.append(buffer_, 0, taken);
    buffer_.erase(0, taken);
    remaining_ -= taken;
    if (remaining_ > 0) return false;
    state_ = State::complete;
    return true;
}

bool RequestParser::readChunkSize() {
    const auto line = takeLine(400);
    if (!line) return false;
    // Extensions of a chunk carry nothing that a server must know (RFC 9112, 7.1.1).
    const auto size = number(http::trimmed(std::string_view(*line).substr(0, line->find(';'))), 16);
    if (!size) return reject(400);
    if (*size > maximumBody - request_.body.size()) return reject(413);
    remaining_ = *size;
    state_ = *size == 0 ? State::trailer : State::chunkData;
    return true;
}

bool RequestParser::readChunkData() {
    if (buffer_.size() < remaining_ + 2) return false;
    if (buffer_.compare(remaining_, 2, "\r\n") != 0) return reject(400);
    request_.body.append(buffer_, 0, remaining_);
    buffer_.erase(0, remaining_ + 2);
    state_ = State::chunkSize;
    return true;
}

bool RequestParser::readTrailer() {
    const auto line = takeLine(431);
    if (!line) return false;
    if (line->empty()) state_ = State::complete;
    return true;
}

std::optional<std::string> RequestParser::takeLine(int statusWhenTooLong) {
    constexpr std::size_t maximumLine = 8 * 1024;
    const std::size_t end = buffer_.find("\r\n");
    if (std::min(end, buffer_.size()) > maximumLine) {
        reject(statusWhenTooLong);
        return std::nullopt;
    }
    if (end == std::string::npos) return std::nullopt;
    std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end + 2);
    return line;
}

bool RequestParser::reject(int status) noexcept {
    state_ = State::malformed;
    rejection_ = status;
    return false;
}

}  // namespace corvane::testing
