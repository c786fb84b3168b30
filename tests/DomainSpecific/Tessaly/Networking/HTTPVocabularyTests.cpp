#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiDataProviderFailureReason.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Platform/AnyError.hpp>

namespace corvane {
namespace {

TEST(HTTPStatusCode, KnowsOnlyTheCodesTheDownloadRoadReactsTo) {
    for (const HTTPStatusCode known : {HTTPStatusCode::ok, HTTPStatusCode::notModified, HTTPStatusCode::notFound,
                                       HTTPStatusCode::notAllowed, HTTPStatusCode::gone}) {
        EXPECT_EQ(HTTPStatusCode::fromRawValue(known.rawValue()), known) << known.description();
    }
    constexpr std::int64_t wrapsTo200 = (std::int64_t{1} << 32) + 200;
    for (const std::int64_t unknown : {std::int64_t{-200}, std::int64_t{0}, std::int64_t{201}, std::int64_t{302},
                                       std::int64_t{401}, std::int64_t{500}, wrapsTo200}) {
        EXPECT_EQ(HTTPStatusCode::fromRawValue(unknown), std::nullopt) << unknown;
    }
}

TEST(HTTPStatusCode, RangesIncludeTheirLowerBoundOnly) {
    for (const std::int64_t status : {-1, 99, 100, 199, 200, 299, 300, 399, 400, 499, 500, 599, 600}) {
        SCOPED_TRACE(status);
        const std::int64_t hundreds = status / 100;
        EXPECT_EQ(HTTPStatusCode::isInformational(status), hundreds == 1);
        EXPECT_EQ(HTTPStatusCode::isSuccessful(status), hundreds == 2);
        EXPECT_EQ(HTTPStatusCode::isRedirection(status), hundreds == 3);
        EXPECT_EQ(HTTPStatusCode::isClientError(status), hundreds == 4);
        EXPECT_EQ(HTTPStatusCode::isServerError(status), hundreds == 5);
        EXPECT_EQ(HTTPStatusCode::isClientOrServerError(status), hundreds == 4 || hundreds == 5);
        EXPECT_EQ(HTTPStatusCode::isNotError(status), hundreds != 4 && hundreds != 5);
    }
}

TEST(FailureCases, TellUsersAndDevelopersTheirTexts) {
    struct Row {
        AnyError error;
        const char* userText;
        const char* developerText;
    };

    using Client = ClientAPIError;
    using Reason = ApiDataProviderFailureReason;
    const Row rows[] = {
        {Client::invalidResponse("a \"b\""), "Undefined", R"(invalidResponse(description: "a \"b\""))"},
        {Client::invalidUrl(), "Invalid URL", "invalidUrl"},
        {Client::invalidJson(), "Invalid JSON", "invalidJson"},
        {Client::decryptionError(), "Decryption error", "decryptionError"},
        {Client::parsingError(), "Parsing error", "parsingError"},
        {Client::cancelled(), "Undefined", "cancelled"},
        {Client::timeout(), "Timeout", "timeout"},
        {Client::undefined(), "Undefined", "undefined"},
        {Client::emptyData(), "Empty data", "emptyData"},
        {Reason::invalidResponse("abc"), "Invalid response: abc", R"(invalidResponse(description: "abc"))"},
        {Reason::invalidUrl(), "Invalid URL", "invalidUrl"},
        {Reason::invalidJson(), "Invalid JSON", "invalidJson"},
        {Reason::decryptionError(), "Decryption Error", "decryptionError"},
        {Reason::parsingError(), "Parsing Error", "parsingError"},
        {Reason::cancelled(), "Cancelled", "cancelled"},
        {Reason::timeout(), "Timeout", "timeout"},
        {Reason::undefined(), "Undefined", "undefined"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.error.localizedDescription(), row.userText);
        EXPECT_EQ(row.error.description(), row.developerText);
    }
}

}  // namespace
}  // namespace corvane
