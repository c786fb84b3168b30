#pragma once

#include <string_view>

namespace corvane {

/// The header fields that the application sends or reads: standard ones (RFC 9110, RFC 9111) and the back
/// end's own `Client-*` fields. They are sent and compared exactly as spelled here.
struct HTTPHeaders {
    HTTPHeaders() = delete;

    static constexpr std::string_view accept = "Accept";
    static constexpr std::string_view acceptCharset = "Accept-Charset";
    static constexpr std::string_view acceptEncoding = "Accept-Encoding";
    static constexpr std::string_view authorization = "Authorization";
    static constexpr std::string_view cacheControl = "Cache-Control";
    static constexpr std::string_view clientAppVersion = "Client-App-Version";
    static constexpr std::string_view clientId = "Client-Id";
    static constexpr std::string_view clientLanguage = "Client-Language";
    static constexpr std::string_view clientOSVersion = "Client-OS-Version";
    static constexpr std::string_view contentLength = "Content-Length";
    static constexpr std::string_view contentType = "Content-Type";
    static constexpr std::string_view date = "Date";
    static constexpr std::string_view host = "Host";
    static constexpr std::string_view ifModifiedSince = "If-Modified-Since";
    static constexpr std::string_view lastModified = "Last-Modified";
    static constexpr std::string_view requestId = "Request-Id";
    static constexpr std::string_view sessionToken = "Session-Token";
    static constexpr std::string_view userAgent = "User-Agent";
};

}  // namespace corvane
