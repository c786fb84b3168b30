#include <algorithm>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Platform/Data.hpp>

namespace corvane {
namespace {

TEST(Data, CopiesItsBytesIntoABufferWithReadablePadding) {
    std::string source("a\0b", 3);
    const Data data{std::string_view(source)};
    source.assign("xyz");
    EXPECT_EQ(data.text(), std::string_view("a\0b", 3));
    for (std::size_t i = data.size(); i < data.size() + Data::padding; ++i)
        EXPECT_EQ(data.data()[i], std::byte{0});
}

TEST(Data, SharesTheAdoptedBufferBetweenCopies) {
    const std::shared_ptr<std::byte[]> buffer = std::make_shared<std::byte[]>(3 + Data::padding);
    buffer[0] = std::byte{'x'};
    {
        const Data data = Data::adopting(buffer, 3);
        const Data copy = data;
        EXPECT_EQ(copy.data(), buffer.get());
        EXPECT_EQ(buffer.use_count(), 3);
    }
    EXPECT_EQ(buffer.use_count(), 1);
}

TEST(Data, ComparesContentNotBuffers) {
    const std::shared_ptr<std::byte[]> buffer = std::make_shared<std::byte[]>(4 + Data::padding);
    std::ranges::copy(std::as_bytes(std::span("abcd", 4)), buffer.get());
    EXPECT_EQ(Data(std::string_view("abcd")), Data::adopting(buffer, 4));
    EXPECT_NE(Data::adopting(buffer, 3), Data::adopting(buffer, 4)) << "one buffer, two lengths";
    EXPECT_NE(Data(std::string_view("abcx")), Data::adopting(buffer, 4));
    EXPECT_EQ(Data(), Data(std::string_view()));
    EXPECT_EQ(Data().text(), "");
}

}  // namespace
}  // namespace corvane
