#include <gtest/gtest.h>

#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {
namespace {

TEST(PlatformError, DescribesItselfWithAndWithoutATextOfItsOwn) {
    const PlatformError silent("Invalid URL", 999);
    EXPECT_EQ(silent.localizedDescription(), "The operation couldn’t be completed. (Invalid URL error 999.)");
    EXPECT_EQ(silent.description(), "Error Domain=Invalid URL Code=999");

    const PlatformError telling("URLErrorDomain", -1001, "The request timed out.");
    EXPECT_EQ(telling.localizedDescription(), "The request timed out.");
    EXPECT_EQ(telling.description(), "Error Domain=URLErrorDomain Code=-1001 \"The request timed out.\"");
}

TEST(PlatformError, IsEqualByDomainAndCode) {
    const PlatformError error("A", 1, "text");
    EXPECT_EQ(error, PlatformError("A", 1));
    EXPECT_NE(error, PlatformError("A", 2, "text"));
    EXPECT_NE(error, PlatformError("B", 1, "text"));
}

}  // namespace
}  // namespace corvane
