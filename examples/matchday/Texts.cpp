#include "Texts.hpp"

#include <fmt/format.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>

namespace matchday {

using corvane::HTTPStatusCode;

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

}  // namespace matchday
