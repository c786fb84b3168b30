#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/Private/BodyBuffer.hpp>

namespace corvane::http {
namespace {

TEST(BodyBuffer, NeverSharesMemoryAmongLivingBodies) {
    std::vector<Data> living(30);
    for (std::size_t i = 0; i < 300; ++i) {
        BodyBuffer buffer;
        ASSERT_TRUE(buffer.append(std::string(100'000 + i, static_cast<char>('a' + i % living.size()))));
        // Ends the body that stood here, whose memory may be used again.
        living[i % living.size()] = buffer.take();
    }
    for (std::size_t i = 0; i < living.size(); ++i) {
        EXPECT_TRUE(living[i].text() == std::string(100'270 + i, static_cast<char>('a' + i)));
    }
}

TEST(BodyBuffer, DoesNotBelieveHugeLengths) {
    BodyBuffer buffer;
    EXPECT_TRUE(buffer.reserve(static_cast<std::size_t>(-1)));
    EXPECT_TRUE(buffer.append("x"));
    EXPECT_EQ(buffer.take().text(), "x");
}

}  // namespace
}  // namespace corvane::http
