#include <gtest/gtest.h>

#include <Corvane/Networking/API/APIRepositoryError.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/FetchResultMetadata.hpp>
#include <Corvane/Platform/HTTP/URLError.hpp>

namespace corvane {
namespace {

const DecodingError noKey =
    DecodingError::keyNotFound(CodingKey("id"), {.codingPath = {}, .debugDescription = "No id."});

TEST(CommonAPIError, TellsUsersItsTextWithThePayload) {
    using Error = CommonAPIError;
    const std::pair<AnyError, const char*> rows[] = {
        {Error::clientFault(404), "Client fault (404)"},
        {Error::serverFault(503), "Server fault (503)"},
        {Error::clientAPIError(ClientAPIError::emptyData()), "Client API Error: emptyData"},
        {Error::decodingError(noKey), "Decoding Error: (No id."},
        {Error::urlSessionError(PlatformError("D", 7)), "URL Session Error: Error Domain=D Code=7"},
        {Error::invalidURL(), "Invalid URL"},
        {Error::invalidResponse(), "Invalid response"},
        {Error::notModified(), "Data not modified"},
        {Error::redirection(), "Redirection"},
    };
    for (const auto& [error, text] : rows)
        EXPECT_EQ(error.localizedDescription(), text);
}

TEST(FetchResultMetadata, PrintsItsSecondFlagInverted) {
    EXPECT_EQ((FetchResultMetadata{true, true, 1700000000.0}.debugDescription()),
              "didRequestCached: true, didPenetrateCache: false, created: Optional(1700000000.0)");
    EXPECT_EQ((FetchResultMetadata{false, false, std::nullopt}.debugDescription()),
              "didRequestCached: false, didPenetrateCache: true, created: nil");
}

TEST(APIRepositoryError, TakesItsCaseAndTextFromTheErrorBehind) {
    const FetchResultMetadata metadata{.cachedDataRequested = true};
    const auto error = [&metadata](const AnyError& behind) { return APIRepositoryError::from(behind, metadata); };

    EXPECT_TRUE(error(noKey).isAPIDecoding());
    EXPECT_EQ(error(noKey).errorDescription(), "No id.");
    EXPECT_TRUE(error(CommonAPIError::decodingError(noKey)).isAPINetworking());
    EXPECT_EQ(error(CommonAPIError::decodingError(noKey)).errorDescription(), "Decoding Error: (No id.");
    EXPECT_TRUE(error(ClientAPIError::emptyData()).isAPIClient());
    EXPECT_EQ(error(ClientAPIError::emptyData()).errorDescription(), "Empty data");
    EXPECT_TRUE(error(makeURLError(URLError::timedOut)).isGeneric());
    EXPECT_EQ(error(makeURLError(URLError::timedOut)).errorDescription(), description(URLError::timedOut));

    EXPECT_EQ(error(noKey).metadata(), metadata);
    EXPECT_EQ(error(PlatformError("D", 7)), error(PlatformError("D", 7)));
    EXPECT_NE(error(PlatformError("D", 7)), error(PlatformError("D", 8)));
}

}  // namespace
}  // namespace corvane
