#include <string>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/Private/RequestRules.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

namespace corvane::http {

namespace {

bool isSupportedScheme(std::string_view scheme) noexcept {
    return scheme == "http" || scheme == "https";
}

PlatformError unsupportedScheme(const URL& url) {
    return makeURLError(URLError::unsupportedURL,
                        "The URL's scheme \"" + url.scheme() + "\" is not supported: only http and https are.");
}

/// The text with whatever could upset a log shown as "?".
std::string printable(std::string_view text) {
    std::string result(text.substr(0, 80));
    for (char& c : result) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    }
    return result;
}

}  // namespace

std::optional<PlatformError> problem(const URLRequest& request) {
    const URL& url = request.url();
    if (!isSupportedScheme(url.scheme())) return unsupportedScheme(url);
    if (url.host().empty()) return makeURLError(URLError::badURL, "The URL has no host.");
    if (url.absoluteString().size() > maximumURLBytes) {
        return makeURLError(URLError::badURL, "The URL is longer than 64 KiB.");
    }
    const std::string& method = request.httpMethod();
    if (!isToken(method)) {
        return makeURLError(URLError::badURL, "\"" + printable(method) + "\" is no HTTP method.");
    }
    if (method == "CONNECT") {
        return makeURLError(URLError::badURL, "The method CONNECT speaks to proxies, not to servers.");
    }
    if (auto found = problem(request.headerFields())) return found;
    if (request.cachePolicy() == URLRequestCachePolicy::returnCacheDataDontLoad) {
        return makeURLError(URLError::resourceUnavailable,
                            "The request asks for cached data only, and the transport keeps no cache.");
    }
    return std::nullopt;
}

std::optional<PlatformError> problem(const std::vector<HTTPHeaderField>& fields) {
    for (const auto& field : fields) {
        if (!isToken(field.name)) {
            return makeURLError(URLError::badURL, "\"" + printable(field.name) + "\" is no header field name.");
        }
        if (!isFieldValue(field.value)) {
            return makeURLError(URLError::badURL,
                                "The value of the header field \"" + field.name + "\" holds control characters.");
        }
    }
    return std::nullopt;
}

bool isRedirect(int statusCode) noexcept {
    return statusCode == 301 || statusCode == 302 || statusCode == 303 || statusCode == 307 || statusCode == 308;
}

std::expected<URLRequest, PlatformError> redirected(const URLRequest& request, int statusCode,
                                                    std::string_view location,
                                                    const std::vector<std::string>& originBound) {
    auto target = request.url().resolving(location);
    if (!target) {
        return std::unexpected(
            makeURLError(URLError::redirectToNonExistentLocation,
                         "The server redirects to \"" + printable(location) + "\", which is no URL."));
    }
    if (!isSupportedScheme(target->scheme())) return std::unexpected(unsupportedScheme(*target));
    // A fragment lives on unless the Location has one of its own (RFC 9110, 10.2.2).
    if (request.url().fragment() && !target->fragment()) {
        if (auto whole = target->resolving("#" + *request.url().fragment())) target = std::move(whole);
    }
    URLRequest next = request;
    if (target->origin() != request.url().origin()) {
        for (const std::string& field : originBound)
            next.removeValue(field);
        // It names the host that was left.
        next.removeValue("Host");
    }
    const std::string& method = request.httpMethod();
    const bool becomesGet = statusCode == 303 ? method != "GET" && method != "HEAD"
                                              : (statusCode == 301 || statusCode == 302) && method == "POST";
    if (becomesGet) {
        next.setHttpMethod("GET");
        next.setHttpBody(std::nullopt);
        for (const std::string_view ofBody :
             {"Content-Type", "Content-Encoding", "Content-Language", "Content-Location", "Content-Length"}) {
            next.removeValue(ofBody);
        }
    }
    next.setURL(std::move(*target));
    return next;
}

}  // namespace corvane::http
