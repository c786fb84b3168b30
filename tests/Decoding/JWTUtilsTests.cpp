#include <string>

#include <gtest/gtest.h>

#include <Corvane/Decoding/JWTUtils.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {
namespace {

/// What became of a token: the claims, "absent" or the error.
std::string decoded(const std::string& token) {
    const auto claims = JWTUtils::decodePayload(token);
    if (!claims) return claims.error().description();
    return *claims ? JSONValue(**claims).description() : "absent";
}

TEST(JWTUtils, ReadsTheSecondPart) {
    struct {
        std::string token, expected;
    } const cases[] = {
        {"", "absent"},
        {"eyJhIjoxfQ", "absent"},
        {"eyJhIjoxfQ.eyJhIjoxfQ.x", R"({"a":1})"},  // ten characters, padded to twelve
        {"!.eyJhIjoxfQ==", R"({"a":1})"},
        {".eyJhIjoxMn0=.", R"({"a":12})"},
        {"h.eyJhIjoxMjN9.s.more", R"({"a":123})"},
        {"h.eyJhIjoiPz4/In0.s", R"({"a":"?>?"})"},
        {"h.eyJhIjoiPz4_In0.s", "badToken"},
        {"h.eyJhI.s", "badToken"},
        {"h.eyJh IjoxfQ.s", "badToken"},
        {"h.WzFd.s", "other"},
        {"h.MTI.s", "other"},
        {"h.bnVsbA.s", "other"},
    };

    for (const auto& test : cases)
        EXPECT_EQ(decoded(test.token), test.expected) << test.token;
}

TEST(JWTUtils, PassesOnTheReadersErrorUnchanged) {
    for (const auto& [payload, json] : {std::pair{"", ""}, {"e30gIHg", "{}  x"}, {"gA", "\x80"}}) {
        const auto claims = JWTUtils::decodePayload(std::string("h.") + payload + ".s");
        ASSERT_FALSE(claims);
        const auto* error = claims.error().as<PlatformError>();
        ASSERT_NE(error, nullptr) << claims.error().description();
        EXPECT_EQ(*error, JSONSerialization::jsonObject(json).error());
    }
}

TEST(JWTUtils, ReadsALargeToken) {
    std::string payload = "eyJhIjoi";  // {"a":"
    for (int i = 0; i < 2'500'000; ++i)
        payload += "eHh4";  // xxx
    const auto claims = JWTUtils::decodePayload("h." + payload + "In0.s");
    ASSERT_TRUE(claims) << claims.error().description();
    EXPECT_EQ((*claims)->find("a")->asString()->size(), 7'500'000);
}

}  // namespace
}  // namespace corvane
