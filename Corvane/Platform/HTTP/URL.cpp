#include <algorithm>
#include <charconv>
#include <utility>

#include <curl/curl.h>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>
#include <Corvane/Platform/HTTP/URL.hpp>

namespace corvane {

namespace {

struct HandleDeleter {
    void operator()(CURLU* handle) const noexcept { curl_url_cleanup(handle); }
};

using Handle = std::unique_ptr<CURLU, HandleDeleter>;

// Foreign schemes are read too: saying that one is not supported is better than saying it is no URL.
constexpr unsigned setFlags = CURLU_NON_SUPPORT_SCHEME;

std::optional<std::string> part(CURLU* handle, CURLUPart which, unsigned flags = 0) {
    char* text = nullptr;
    if (curl_url_get(handle, which, &text, flags) != CURLUE_OK) return std::nullopt;
    std::string result(text);
    curl_free(text);
    return result;
}

bool hasControlCharacters(std::string_view text) noexcept {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f) return true;
    }
    return false;
}

/// Percent-encodes what RFC 3986 does not allow in a path, query or fragment, and leaves the authority alone:
/// a name outside ASCII there is translated by the resolver (RFC 5891), not percent-encoded.
std::string encoded(std::string_view text) {
    std::size_t start = 0;
    const auto slashes = text.find_first_of("/?#");
    if (slashes != std::string_view::npos && text.substr(slashes).starts_with("//") &&
        (slashes == 0 || text[slashes - 1] == ':')) {
        start = std::min(text.find_first_of("/?#", slashes + 2), text.size());
    }
    std::string result(text.substr(0, start));
    result.reserve(text.size());
    for (const char c : text.substr(start)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 || std::string_view(" \"<>\\^`{|}").find(c) != std::string_view::npos) {
            constexpr std::string_view digits = "0123456789ABCDEF";
            result += '%';
            result += digits[byte >> 4U];
            result += digits[byte & 15U];
        } else {
            result += c;
        }
    }
    return result;
}

std::string originOf(std::string_view scheme, std::string_view hostWithBrackets, std::optional<std::uint16_t> port) {
    std::string origin(scheme);
    origin.append("://").append(hostWithBrackets);
    for (char& c : origin) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    }
    const bool usual = !port || (scheme == "http" && *port == 80) || (scheme == "https" && *port == 443);
    if (!usual) origin.append(":").append(std::to_string(*port));
    return origin;
}

}  // namespace

struct URL::Parts {
    std::string absolute;
    std::string scheme;
    std::string host;
    std::optional<std::uint16_t> port;
    std::string path;
    std::optional<std::string> query;
    std::optional<std::string> fragment;
    std::optional<std::string> user;
    std::optional<std::string> password;
    std::string origin;
};

URL::URL(std::shared_ptr<const Parts> parts) noexcept : parts_(std::move(parts)) {}

std::optional<URL> URL::fromHandle(void* handle, std::string text) {
    auto* const source = static_cast<CURLU*>(handle);
    auto parts = std::make_shared<Parts>();
    parts->absolute = std::move(text);
    parts->scheme = part(source, CURLUPART_SCHEME).value_or("");
    std::string host = part(source, CURLUPART_HOST).value_or("");
    if (host.empty() && parts->scheme != "file") return std::nullopt;
    if (const auto port = part(source, CURLUPART_PORT)) {
        std::uint16_t number = 0;
        const auto read = std::from_chars(port->data(), port->data() + port->size(), number);
        if (read.ec != std::errc{}) return std::nullopt;
        parts->port = number;
    }
    parts->origin = originOf(parts->scheme, host, parts->port);
    if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
    parts->host = std::move(host);
    parts->path = part(source, CURLUPART_PATH).value_or("/");
    parts->query = part(source, CURLUPART_QUERY);
    parts->fragment = part(source, CURLUPART_FRAGMENT);
    parts->user = part(source, CURLUPART_USER, CURLU_URLDECODE);
    parts->password = part(source, CURLUPART_PASSWORD, CURLU_URLDECODE);
    return URL(std::move(parts));
}

std::optional<URL> URL::parse(std::string_view text) {
    if (hasControlCharacters(text)) return std::nullopt;
    // libcurl overlooks a slash too many or too few.
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || !text.substr(colon).starts_with("://")) return std::nullopt;
    if (text.substr(colon).starts_with(":///") && !http::equalNames(text.substr(0, colon), "file")) {
        return std::nullopt;
    }
    std::string absolute = encoded(text);
    const Handle handle(curl_url());
    if (!handle || curl_url_set(handle.get(), CURLUPART_URL, absolute.c_str(), setFlags) != CURLUE_OK) {
        return std::nullopt;
    }
    return fromHandle(handle.get(), std::move(absolute));
}

std::optional<URL> URL::resolving(std::string_view reference) const {
    if (hasControlCharacters(reference)) return std::nullopt;
    // libcurl 7 drops path and query with the old fragment.
    if (reference.empty() || reference.front() == '#') {
        const std::string_view whole = parts_->absolute;
        return parse(std::string(whole.substr(0, whole.find('#'))).append(reference));
    }
    const Handle handle(curl_url());
    if (!handle || curl_url_set(handle.get(), CURLUPART_URL, parts_->absolute.c_str(), setFlags) != CURLUE_OK ||
        curl_url_set(handle.get(), CURLUPART_URL, encoded(reference).c_str(), setFlags) != CURLUE_OK) {
        return std::nullopt;
    }
    auto absolute = part(handle.get(), CURLUPART_URL);
    if (!absolute) return std::nullopt;
    return fromHandle(handle.get(), std::move(*absolute));
}

const std::string& URL::absoluteString() const noexcept {
    return parts_->absolute;
}

const std::string& URL::scheme() const noexcept {
    return parts_->scheme;
}

const std::string& URL::host() const noexcept {
    return parts_->host;
}

std::optional<std::uint16_t> URL::port() const noexcept {
    return parts_->port;
}

const std::string& URL::path() const noexcept {
    return parts_->path;
}

const std::optional<std::string>& URL::query() const noexcept {
    return parts_->query;
}

const std::optional<std::string>& URL::fragment() const noexcept {
    return parts_->fragment;
}

const std::optional<std::string>& URL::user() const noexcept {
    return parts_->user;
}

const std::optional<std::string>& URL::password() const noexcept {
    return parts_->password;
}

const std::string& URL::origin() const noexcept {
    return parts_->origin;
}

}  // namespace corvane
