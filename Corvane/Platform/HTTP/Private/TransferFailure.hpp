#pragma once

#include <string>

#include <curl/curl.h>

#include <Corvane/Platform/HTTP/URLError.hpp>

namespace corvane::http {

/// What libcurl tells of a transfer that failed.
struct TransferFailure {
    CURLcode code = CURLE_OK;
    /// The `errno` of the system call that failed, 0 if none did.
    long systemError = 0;
    /// How checking the server's certificate went, as OpenSSL's X509_V_... number.
    long verifyResult = 0;
    /// Whether a final head had arrived.
    bool hasHead = false;
    /// libcurl's own words.
    std::string detail = {};
};

/// The code under which a session reports the failure.
[[nodiscard]] URLError urlError(const TransferFailure& failure) noexcept;

/// The same as an error whose text ends with libcurl's own words, in parentheses.
[[nodiscard]] PlatformError makeError(const TransferFailure& failure);

}  // namespace corvane::http
