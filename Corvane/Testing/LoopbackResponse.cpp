#include <algorithm>
#include <utility>

#include <Corvane/Testing/LoopbackResponse.hpp>
#include <Corvane/Testing/Private/HTTPSyntax.hpp>

namespace corvane::testing {

namespace {

/// RFC 9110, 15, as far as answers of tests and demos go; any phrase, even none, is valid.
std::string_view usualReason(int status) noexcept {
    switch (status) {
        case 100:
            return "Continue";
        case 103:
            return "Early Hints";
        case 200:
            return "OK";
        case 201:
            return "Created";
        case 202:
            return "Accepted";
        case 203:
            return "Non-Authoritative Information";
        case 204:
            return "No Content";
        case 206:
            return "Partial Content";
        case 301:
            return "Moved Permanently";
        case 302:
            return "Found";
        case 303:
            return "See Other";
        case 304:
            return "Not Modified";
        case 307:
            return "Temporary Redirect";
        case 308:
            return "Permanent Redirect";
        case 400:
            return "Bad Request";
        case 401:
            return "Unauthorized";
        case 403:
            return "Forbidden";
        case 404:
            return "Not Found";
        case 405:
            return "Method Not Allowed";
        case 408:
            return "Request Timeout";
        case 409:
            return "Conflict";
        case 413:
            return "Content Too Large";
        case 429:
            return "Too Many Requests";
        case 431:
            return "Request Header Fields Too Large";
        case 500:
            return "Internal Server Error";
        case 501:
            return "Not Implemented";
        case 502:
            return "Bad Gateway";
        case 503:
            return "Service Unavailable";
        case 504:
            return "Gateway Timeout";
        case 505:
            return "HTTP Version Not Supported";
        default:
            return "";
    }
}

}  // namespace

LoopbackResponse LoopbackResponse::json(std::string body, int status) {
    return {.status = status, .headers = {{"Content-Type", "application/json"}}, .body = std::move(body)};
}

LoopbackResponse LoopbackResponse::redirect(std::string location, int status) {
    return {.status = status, .headers = {{"Location", std::move(location)}}};
}

LoopbackResponse LoopbackResponse::held() {
    return {.isHeld = true};
}

LoopbackResponse LoopbackResponse::with(std::string name, std::string value) && {
    headers.push_back({std::move(name), std::move(value)});
    return std::move(*this);
}

LoopbackResponse LoopbackResponse::with(Framing how) && {
    framing = how;
    return std::move(*this);
}

LoopbackResponse LoopbackResponse::with(LoopbackFault what) && {
    fault = what;
    return std::move(*this);
}

std::string LoopbackResponse::head() const {
    std::string text = "HTTP/1.1 " + std::to_string(status) + ' ';
    text += reason.empty() ? usualReason(status) : reason;
    text += "\r\n";
    for (const HTTPHeaderField& field : headers)
        text += field.name + ": " + field.value + "\r\n";
    return text += "\r\n";
}

const std::string* LoopbackResponse::header(std::string_view name) const noexcept {
    const auto found = std::ranges::find_if(
        headers, [name](const HTTPHeaderField& field) { return http::equalsIgnoringCase(field.name, name); });
    return found == headers.end() ? nullptr : &found->value;
}

}  // namespace corvane::testing
