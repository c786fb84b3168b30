#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/HeaderRules.hpp>

namespace corvane::http {
namespace {

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

}  // namespace
}  // namespace corvane::http
