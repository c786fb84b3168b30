#include <gtest/gtest.h>

#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {
namespace {

TEST(PlatformError, DescribesItselfWithoutATextOfItsOwn) {
    const PlatformError silent("Invalid URL", 999);
    EXPECT_EQ(silent.localizedDescription(), "The operation couldn’t be completed. (Invalid URL error 999.)");
    EXPECT_EQ(silent.description(), "Error Domain=Invalid URL Code=999");
}

TEST(PlatformError, IsEqualByDomainAndCode) {
    const PlatformError error("A", 1, "text");
    EXPECT_EQ(error, PlatformError("A", 1));
    EXPECT_NE(error, PlatformError("A", 2, "text"));
    EXPECT_NE(error, PlatformError("B", 1, "text"));
}

}  // namespace
}  // namespace corvane
