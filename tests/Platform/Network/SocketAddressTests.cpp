#include <gtest/gtest.h>

#include <Corvane/Platform/Network/SocketAddress.hpp>

namespace corvane {
namespace {

TEST(SocketAddress, ReadsAndWritesTexts) {
    const struct {
        const char* text;
        const char* description;
        bool isLinkLocal = false;
        bool isLoopback = false;
    } cases[] = {
        {"192.0.2.1", "192.0.2.1:80"},
        {"0.0.0.0", "0.0.0.0:80"},
        {"2001:DB8:0::1", "[2001:db8::1]:80"},
        {"fe80::1%7", "[fe80::1%7]:80", true},
        {"fe80::1%lo", "[fe80::1%1]:80", true},
        {"febf::1", "[febf::1]:80", true},
        {"fec0::1", "[fec0::1]:80"},
        {"169.254.9.9", "169.254.9.9:80", true},
        {"169.25.4.9", "169.25.4.9:80"},
        {"127.9.9.9", "127.9.9.9:80", false, true},
        {"::1", "[::1]:80", false, true},
    };

    for (const auto& each : cases) {
        const auto address = SocketAddress::parse(each.text, 80);
        ASSERT_TRUE(address) << each.text;
        EXPECT_EQ(address->description(), each.description);
        EXPECT_EQ(address->isLinkLocal(), each.isLinkLocal) << each.text;
        EXPECT_EQ(address->isLoopback(), each.isLoopback) << each.text;
    }
    for (const char* const text : {"", "example.com", "192.0.2", "192.0.2.1 ", "fe80::1%", "fe80::1%nowhere", "1%lo"})
        EXPECT_FALSE(SocketAddress::parse(text)) << text;
    EXPECT_FALSE(SocketAddress::parse(std::string_view("192.0.2.1\0", 10)));
}

}  // namespace
}  // namespace corvane
