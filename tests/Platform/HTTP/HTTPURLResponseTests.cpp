#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/HTTPURLResponse.hpp>

namespace corvane {
namespace {

TEST(HTTPURLResponse, LooksFieldsUpBothWays) {
    const HTTPURLResponse response(*URL::parse("http://h/"), 599, "HTTP/1.1",
                                   {{"last-modified", "a"},
                                    {"Vary", "x"},
                                    {"Set-Cookie", "a=1, b"},
                                    {"vary", "y"},
                                    {"Vary", "z"},
                                    {"Set-Cookie", "c=2"},
                                    {"Empty", ""}});
    EXPECT_EQ(response.statusCode(), 599);
    // The letter case counts in one look-up and not in the other.
    EXPECT_FALSE(response.headerField("Last-Modified"));
    EXPECT_EQ(response.headerField("last-modified"), "a");
    EXPECT_EQ(response.value("LAST-MODIFIED"), "a");
    // Repeated lines are one field, but for the field whose values hold commas.
    EXPECT_EQ(response.headerField("Vary"), "x, z");
    EXPECT_EQ(response.value("Vary"), "x, y, z");
    EXPECT_EQ(response.value("set-cookie"), "a=1, b");
    // Present and empty is not absent.
    EXPECT_EQ(response.value("Empty"), "");
    EXPECT_FALSE(response.value("Empt"));
}

}  // namespace
}  // namespace corvane
