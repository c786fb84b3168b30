#include <cerrno>

#include <Corvane/Platform/HTTP/Private/TransferFailure.hpp>

namespace corvane::http {

namespace {

URLError certificateError(long verifyResult) noexcept {
    switch (verifyResult) {
        case 9:
            return URLError::serverCertificateNotYetValid;
        case 10:
            return URLError::serverCertificateHasBadDate;
        default:
            return URLError::serverCertificateUntrusted;
    }
}

}  // namespace

URLError urlError(const TransferFailure& failure) noexcept {
    switch (failure.code) {
        case CURLE_URL_MALFORMAT:
            return URLError::badURL;
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return URLError::cannotFindHost;
        case CURLE_COULDNT_CONNECT:
            return failure.systemError == ENETUNREACH || failure.systemError == ENETDOWN
                       ? URLError::notConnectedToInternet
                       : URLError::cannotConnectToHost;
        case CURLE_PROXY:
        case CURLE_INTERFACE_FAILED:
        case CURLE_NO_CONNECTION_AVAILABLE:
            return URLError::cannotConnectToHost;
        case CURLE_OPERATION_TIMEDOUT:
            return URLError::timedOut;
        case CURLE_RECV_ERROR:
            // libcurl 7 has no code of its own for a broken chunk; only its text tells it from a lost
            // connection.
            return failure.detail.find("hunk") != std::string::npos ? URLError::cannotParseResponse
                                                                    : URLError::networkConnectionLost;
        case CURLE_PARTIAL_FILE:
        case CURLE_SEND_ERROR:
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_FAIL_REWIND:
        case CURLE_HTTP2:
        case CURLE_HTTP2_STREAM:
        case CURLE_HTTP3:
            return URLError::networkConnectionLost;
        // http is the only protocol allowed here: an answer that is none was taken for another one
        // (HTTP/0.9).
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY:
            return URLError::cannotParseResponse;
        case CURLE_OUT_OF_MEMORY:
            // libcurl's word for a header line beyond its limit, too.
            return failure.hasHead ? URLError::unknown : URLError::cannotParseResponse;
        case CURLE_BAD_CONTENT_ENCODING:
            return URLError::cannotDecodeContentData;
        case CURLE_FILESIZE_EXCEEDED:
            return URLError::dataLengthExceedsMaximum;
        case CURLE_TOO_MANY_REDIRECTS:
            return URLError::httpTooManyRedirects;
        case CURLE_LOGIN_DENIED:
        case CURLE_AUTH_ERROR:
            return URLError::userAuthenticationRequired;
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CIPHER:
        case CURLE_SSL_ENGINE_NOTFOUND:
        case CURLE_SSL_ENGINE_SETFAILED:
        case CURLE_SSL_ENGINE_INITFAILED:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_CRL_BADFILE:
        case CURLE_SSL_SHUTDOWN_FAILED:
        case CURLE_USE_SSL_FAILED:
            return URLError::secureConnectionFailed;
        case CURLE_PEER_FAILED_VERIFICATION:
            return certificateError(failure.verifyResult);
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_INVALIDCERTSTATUS:
        case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
            return URLError::serverCertificateUntrusted;
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_CLIENTCERT:
            return URLError::clientCertificateRejected;
        default:
            return URLError::unknown;
    }
}

PlatformError makeError(const TransferFailure& failure) {
    const URLError code = urlError(failure);
    std::string text(description(code));
    text.append(" (")
        .append(failure.detail.empty() ? curl_easy_strerror(failure.code) : failure.detail.c_str())
        .append(")");
    return makeURLError(code, std::move(text));
}

}  // namespace corvane::http
