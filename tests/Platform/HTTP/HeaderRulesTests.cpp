#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>

namespace corvane::http {
namespace {

using namespace std::string_view_literals;

TEST(HeaderRules, KnowTokens) {
    for (const auto text : {"GET"sv, "X-Day"sv, "!#$%&'*+-.^_`|~09azAZ"sv})
        EXPECT_TRUE(isToken(text)) << text;
    for (const auto text : {""sv, "A B"sv, "A:"sv, "A\r"sv, "A\0"sv, "é"sv, "(x)"sv, "a/b"sv}) {
        EXPECT_FALSE(isToken(text)) << text;
    }
}

TEST(HeaderRules, KnowFieldValues) {
    for (const auto text : {""sv, "a\tb"sv, "Fri, 15 Mar 2024"sv, "\xc3\xa9\xff"sv}) {
        EXPECT_TRUE(isFieldValue(text)) << text;
    }
    for (const auto text : {"a\r\nX: y"sv, "a\n"sv, "\0"sv, "\x7f"sv, "\x01"sv})
        EXPECT_FALSE(isFieldValue(text));
}

TEST(HeaderRules, GiveNamesTheirUsualCapitals) {
    const struct {
        std::string_view name;
        std::string_view canonical;
    } cases[] = {
        {"last-modified", "Last-Modified"},
        {"etag", "ETag"},
        {"www-authenticate", "WWW-Authenticate"},
        {"x-a--b", "X-A--B"},
        {"date", "Date"},
        {"CONTENT-TYPE", "Content-Type"},
        {"content-md5", "Content-MD5"},
        {"te", "TE"},
        {"x-3d", "X-3d"},
    };

    for (const auto& [name, canonical] : cases)
        EXPECT_EQ(canonicalName(name), canonical);
}

TEST(HeaderRules, TrimOnlyBlanksAndTabs) {
    EXPECT_EQ(trimmed(" \t a\tb \t"), "a\tb");
    EXPECT_EQ(trimmed(" \t "), "");
    EXPECT_EQ(trimmed("\xa0x\v"), "\xa0x\v");
}

}  // namespace
}  // namespace corvane::http
