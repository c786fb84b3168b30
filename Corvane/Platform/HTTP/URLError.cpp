#include <utility>

#include <Corvane/Platform/HTTP/URLError.hpp>

namespace corvane {

std::string_view description(URLError code) noexcept {
    switch (code) {
        case URLError::unknown:
            return "The request failed for an unknown reason.";
        case URLError::cancelled:
            return "The request was cancelled.";
        case URLError::badURL:
            return "The request cannot be sent.";
        case URLError::timedOut:
            return "The request timed out.";
        case URLError::unsupportedURL:
            return "Only http and https URLs are supported.";
        case URLError::cannotFindHost:
            return "The server's name could not be resolved.";
        case URLError::cannotConnectToHost:
            return "Could not connect to the server.";
        case URLError::networkConnectionLost:
            return "The network connection was lost.";
        case URLError::dnsLookupFailed:
            return "Looking up the server's name failed.";
        case URLError::httpTooManyRedirects:
            return "The server redirects too often.";
        case URLError::resourceUnavailable:
            return "The resource is not available.";
        case URLError::notConnectedToInternet:
            return "There is no connection to the network.";
        case URLError::redirectToNonExistentLocation:
            return "The server redirects to a place that is no URL.";
        case URLError::badServerResponse:
            return "The server sent a bad response.";
        case URLError::userCancelledAuthentication:
            return "The authentication was cancelled.";
        case URLError::userAuthenticationRequired:
            return "The server wants authentication.";
        case URLError::zeroByteResource:
            return "The resource is empty.";
        case URLError::cannotDecodeRawData:
            return "The response's content cannot be decoded.";
        case URLError::cannotDecodeContentData:
            return "The response's content encoding is broken.";
        case URLError::cannotParseResponse:
            return "The server's response cannot be parsed.";
        case URLError::dataLengthExceedsMaximum:
            return "The response is larger than the accepted maximum.";
        case URLError::secureConnectionFailed:
            return "A secure connection could not be made.";
        case URLError::serverCertificateHasBadDate:
            return "The server's certificate has expired.";
        case URLError::serverCertificateUntrusted:
            return "The server's certificate is not trusted.";
        case URLError::serverCertificateHasUnknownRoot:
            return "The server's certificate has an unknown issuer.";
        case URLError::serverCertificateNotYetValid:
            return "The server's certificate is not valid yet.";
        case URLError::clientCertificateRejected:
            return "The server rejected the client's certificate.";
    }
    return "The request failed for an unknown reason.";
}

PlatformError makeURLError(URLError code, std::string text) {
    if (text.empty()) text = description(code);
    return {std::string(urlErrorDomain), std::to_underlying(code), std::move(text)};
}

bool operator==(const PlatformError& error, URLError code) noexcept {
    return error.code() == std::to_underlying(code) && error.domain() == urlErrorDomain;
}

}  // namespace corvane
