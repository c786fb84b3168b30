#include <cerrno>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/TransferFailure.hpp>

namespace corvane::http {
namespace {

TEST(TransferFailure, HasOneCodeForEveryKind) {
    const struct {
        TransferFailure failure;
        URLError code;
    } cases[] = {
        {{.code = CURLE_COULDNT_CONNECT, .systemError = ENETUNREACH}, URLError::notConnectedToInternet},
        {{.code = CURLE_SEND_ERROR}, URLError::networkConnectionLost},
        {{.code = CURLE_RECV_ERROR, .detail = "Recv failure: Connection reset by peer"},
         URLError::networkConnectionLost},
        {{.code = CURLE_RECV_ERROR, .detail = "Problem (3) in the Chunked-Encoded data"},
         URLError::cannotParseResponse},
        {{.code = CURLE_UNSUPPORTED_PROTOCOL}, URLError::cannotParseResponse},
        {{.code = CURLE_OUT_OF_MEMORY}, URLError::cannotParseResponse},
        {{.code = CURLE_OUT_OF_MEMORY, .hasHead = true}, URLError::unknown},
        {{.code = CURLE_PEER_FAILED_VERIFICATION, .verifyResult = 9}, URLError::serverCertificateNotYetValid},
        {{.code = CURLE_FTP_ACCEPT_FAILED}, URLError::unknown},
    };

    for (const auto& [failure, code] : cases) {
        EXPECT_EQ(urlError(failure), code) << curl_easy_strerror(failure.code) << ' ' << failure.detail;
    }
}

TEST(TransferFailure, TellsUserAndDeveloper) {
    const auto error = makeError({.code = CURLE_COULDNT_CONNECT, .detail = "Failed to connect to h port 1"});
    EXPECT_EQ(error.domain(), "URLErrorDomain");
    EXPECT_EQ(error.code(), -1004);
    EXPECT_EQ(error.localizedDescription(), "Could not connect to the server. (Failed to connect to h port 1)");
}

}  // namespace
}  // namespace corvane::http
