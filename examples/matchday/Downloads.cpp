#include "Downloads.hpp"

#include <chrono>
#include <utility>

#include <fmt/format.h>

#include <Corvane/Concurrency/ConvenientDispatch.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace matchday {

using corvane::HTTPStatusCode;
using corvane::SimpleHttpManager;
using corvane::SimpleHttpRequest;
using corvane::SimpleHttpResponse;

std::string sizeText(std::size_t bytes) {
    if (bytes < 1024) return fmt::format("{} B", bytes);
    const auto size = static_cast<double>(bytes);
    return bytes < 1024 * 1024 ? fmt::format("{:.1f} KiB", size / 1024) : fmt::format("{:.1f} MiB", size / 1024 / 1024);
}

std::string durationText(double milliseconds) {
    return milliseconds < 1000 ? fmt::format("{:.1f} ms", milliseconds) : fmt::format("{:.2f} s", milliseconds / 1000);
}

std::string statusText(int status) {
    switch (status) {
        case HTTPStatusCode::ok:
            return "200 OK";
        case HTTPStatusCode::notModified:
            return "304 Not Modified";
        case HTTPStatusCode::notFound:
            return "404 Not Found";
        case HTTPStatusCode::notAllowed:
            return "405 Method Not Allowed";
        case HTTPStatusCode::gone:
            return "410 Gone";
        default:
            break;
    }
    const char* const kind = HTTPStatusCode::isSuccessful(status)    ? "success"
                             : HTTPStatusCode::isRedirection(status) ? "redirection"
                             : HTTPStatusCode::isClientError(status) ? "client error"
                             : HTTPStatusCode::isServerError(status) ? "server error"
                                                                     : "unusual";
    return fmt::format("{} ({})", status, kind);
}

std::optional<std::string> failureText(const SimpleHttpResponse& response) {
    const auto& status = response.statusCode();
    const auto& error = response.error();
    if (!status) return error ? error->localizedDescription() : "there was no response";
    if (response.isNotModified()) return std::nullopt;
    if (!HTTPStatusCode::isSuccessful(*status)) return "the server answered " + statusText(*status);
    if (!response.data()) return "the document is empty";
    return std::nullopt;
}

std::optional<corvane::URL> Downloads::url(std::string_view path) const {
    return corvane::URL::parse(base_ + std::string(path));
}

void Downloads::get(std::string path, Options options, Done done) {
    send(std::move(path), {.ifModifiedSince = std::move(options.ifModifiedSince), .isEphemeral = options.isEphemeral},
         std::move(done));
}

void Downloads::post(std::string path, const corvane::JSONDictionary& payload, Done done) {
    auto data = corvane::JSONSerialization::data(payload);
    send(std::move(path), {.payload = data ? std::move(*data) : corvane::Data()}, std::move(done));
}

void Downloads::send(std::string path, SimpleHttpRequest::Fields fields, Done done) {
    fields.url = url(path);
    fields.description = path;
    const bool isPost = fields.payload.has_value();
    const bool isEphemeral = fields.isEphemeral;
    SimpleHttpManager::sharedInstance()->request(
        SimpleHttpRequest::make(std::move(fields)),
        [path = std::move(path), isPost, isEphemeral, start = std::chrono::steady_clock::now(),
         done = std::move(done)](SimpleHttpResponse response) mutable {
            const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
            corvane::asyncOnMain([download = Download{.method = isPost ? "POST" : "GET",
                                                      .path = std::move(path),
                                                      .isEphemeral = isEphemeral,
                                                      .response = std::move(response),
                                                      .milliseconds = elapsed.count()},
                                  done = std::move(done)] { done(download); });
        });
}

}  // namespace matchday
