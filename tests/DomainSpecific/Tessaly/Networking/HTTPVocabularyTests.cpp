#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/ApiDataProviderFailureReason.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/ClientAPIError.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>
#include <Corvane/DomainSpecific/Tessaly/Networking/HTTPStatusCode.hpp>
#include <Corvane/Platform/AnyError.hpp>

namespace corvane {

// The application may reassign the members.
TEST(DataLoadOptions, HasTheBitsThatReceiversKnow) {
    const DataLoadOptions six(6);
    EXPECT_TRUE(six.contains(DataLoadOptions::IgnoreCache) && six.contains(DataLoadOptions::TimeInUTC));
    EXPECT_EQ(six.subtracting(DataLoadOptions::IgnoreCache), DataLoadOptions(4));
    const auto former = std::exchange(DataLoadOptions::IgnoreDates, DataLoadOptions(8));
    EXPECT_EQ(former, DataLoadOptions(1));
    EXPECT_FALSE(DataLoadOptions(1).contains(DataLoadOptions::IgnoreDates));
    DataLoadOptions::IgnoreDates = former;
}

TEST(HTTPStatusCode, KnowsFiveCodesAndTheRangesOfAll) {
    std::string known;
    for (int status = -200; status <= 700; ++status) {
        SCOPED_TRACE(status);
        const int hundreds = status / 100;
        EXPECT_EQ(HTTPStatusCode::isInformational(status), hundreds == 1);
        EXPECT_EQ(HTTPStatusCode::isSuccessful(status), hundreds == 2);
        EXPECT_EQ(HTTPStatusCode::isRedirection(status), hundreds == 3);
        EXPECT_EQ(HTTPStatusCode::isClientError(status), hundreds == 4);
        EXPECT_EQ(HTTPStatusCode::isServerError(status), hundreds == 5);
        EXPECT_EQ(HTTPStatusCode::isClientOrServerError(status), hundreds == 4 || hundreds == 5);
        EXPECT_EQ(HTTPStatusCode::isNotError(status), hundreds != 4 && hundreds != 5);
        if (const auto code = HTTPStatusCode::fromRawValue(status))
            known.append(code->description()) += ' ' + std::to_string(code->rawValue()) + ' ';
    }
    EXPECT_EQ(known, "ok 200 notModified 304 notFound 404 notAllowed 405 gone 410 ");
    EXPECT_EQ(HTTPStatusCode::fromRawValue(304), HTTPStatusCode::notModified);
    EXPECT_FALSE(HTTPStatusCode::fromRawValue((std::int64_t{1} << 32) + 200)) << "looked at whole";
}

TEST(FailureCases, TellUsersAndDevelopersTheirTexts) {
    using Client = ClientAPIError;
    using Reason = ApiDataProviderFailureReason;

    const struct {
        AnyError error;
        const char* userText;
        const char* developerText;
    } rows[] = {
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

    for (const auto& row : rows) {
        EXPECT_EQ(row.error.localizedDescription(), row.userText);
        EXPECT_EQ(row.error.description(), row.developerText);
    }
}

}  // namespace corvane
