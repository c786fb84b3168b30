#pragma once

#include <string>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// The domain of the errors that a `URLSession` reports.
inline constexpr std::string_view urlErrorDomain = "URLErrorDomain";

/// The codes of the errors that a `URLSession` reports, for comparing: `if (error == URLError::cancelled)`.
enum class URLError : int {
    unknown = -1,
    /// The task was cancelled, or made on a session that had been invalidated.
    cancelled = -999,
    /// The request cannot be sent as it stands: URL too long or without a host, a bad method or header field.
    badURL = -1000,
    /// Nothing was heard from the server for the request's timeout interval.
    timedOut = -1001,
    /// The scheme is neither http nor https.
    unsupportedURL = -1002,
    cannotFindHost = -1003,
    cannotConnectToHost = -1004,
    /// The connection ended before the whole response had arrived.
    networkConnectionLost = -1005,
    dnsLookupFailed = -1006,
    /// More than 20 redirects.
    httpTooManyRedirects = -1007,
    resourceUnavailable = -1008,
    /// The machine has no road to the network at all.
    notConnectedToInternet = -1009,
    /// A redirect's Location cannot be read as a URL.
    redirectToNonExistentLocation = -1010,
    badServerResponse = -1011,
    userCancelledAuthentication = -1012,
    userAuthenticationRequired = -1013,
    zeroByteResource = -1014,
    cannotDecodeRawData = -1015,
    /// The body is not what its Content-Encoding says.
    cannotDecodeContentData = -1016,
    /// What arrived is no HTTP: no status line, a header section over 256 KiB, a bad chunk size.
    cannotParseResponse = -1017,
    /// The decoded body is larger than the session's `maximumResponseBytes`.
    dataLengthExceedsMaximum = -1103,
    secureConnectionFailed = -1200,
    serverCertificateHasBadDate = -1201,
    serverCertificateUntrusted = -1202,
    serverCertificateHasUnknownRoot = -1203,
    serverCertificateNotYetValid = -1204,
    clientCertificateRejected = -1205,
};

/// One English sentence for the code: "The request timed out."
[[nodiscard]] CORVANE_EXPORT std::string_view description(URLError code) noexcept;

/// An error of `urlErrorDomain`. Its text is `text` or, when that is empty, `description(code)`.
[[nodiscard]] CORVANE_EXPORT PlatformError makeURLError(URLError code, std::string text = {});

/// Whether the error is one of `urlErrorDomain` with that code.
[[nodiscard]] CORVANE_EXPORT bool operator==(const PlatformError& error, URLError code) noexcept;

}  // namespace corvane
