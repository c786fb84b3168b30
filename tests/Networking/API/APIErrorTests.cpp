#include <gtest/gtest.h>

#include <Corvane/Networking/API/APIRepositoryError.hpp>
#include <Corvane/Networking/API/CommonAPIError.hpp>
#include <Corvane/Networking/API/FetchResultMetadata.hpp>

namespace corvane {

TEST(APIErrors, TellUsersTheirTexts) {
    using Error = CommonAPIError;
    const DecodingError noKey =
        DecodingError::keyNotFound(CodingKey("id"), {.codingPath = {}, .debugDescription = "No id."});
    const auto from = [](const AnyError& error) { return APIRepositoryError::from(error, {}); };
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
        {from(noKey), "No id."},
        {from(Error::decodingError(noKey)), "Decoding Error: (No id."},
        {from(ClientAPIError::emptyData()), "Empty data"},
        {from(PlatformError("D", 7, "Seven.")), "Seven."},
    };
    for (const auto& [error, text] : rows)
        EXPECT_EQ(error.localizedDescription(), text);
}

TEST(FetchResultMetadata, PrintsItsSecondFlagInverted) {
    EXPECT_EQ((FetchResultMetadata{true, true, 1700000000.0}.debugDescription()),
              "didRequestCached: true, didPenetrateCache: false, created: Optional(1700000000.0)");
    EXPECT_EQ((FetchResultMetadata{false, false, {}}.debugDescription()),
              "didRequestCached: false, didPenetrateCache: true, created: nil");
}

}  // namespace corvane
