#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONNumber.hpp>

namespace corvane {
namespace {

constexpr auto int64Max = std::numeric_limits<std::int64_t>::max();
constexpr auto int64Min = std::numeric_limits<std::int64_t>::min();
constexpr auto uint64Max = std::numeric_limits<std::uint64_t>::max();

TEST(JSONNumber, TruncatesAndClampsToIntegers) {
    struct Case {
        JSONNumber number;
        std::int64_t asSigned;
        std::uint64_t asUnsigned;
    };

    const Case cases[] = {
        {12.9, 12, 12},
        {-12.9, -12, 0},
        {true, 1, 1},
        {int64Min, int64Min, 0},
        {uint64Max, int64Max, uint64Max},
        {0x1p63, int64Max, std::uint64_t{1} << 63},
        {-0x1p63, int64Min, 0},
        {1e300, int64Max, uint64Max},
        {-HUGE_VAL, int64Min, 0},
        {std::nan(""), 0, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.number.int64Value(), c.asSigned) << c.number.description();
        EXPECT_EQ(c.number.uint64Value(), c.asUnsigned) << c.number.description();
    }
}

TEST(JSONNumber, GivesExactIntegersOnlyForWholeNumbersInRange) {
    EXPECT_EQ(JSONNumber(5.0).exactInt64(), 5);
    EXPECT_EQ(JSONNumber(5.5).exactInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(0x1p63).exactInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(0x1p63).exactUInt64(), std::uint64_t{1} << 63);
    EXPECT_EQ(JSONNumber(0x1p64).exactUInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(-1).exactUInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(uint64Max).exactInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(HUGE_VAL).exactInt64(), std::nullopt);
    EXPECT_EQ(JSONNumber(std::nan("")).exactUInt64(), std::nullopt);
}

TEST(JSONNumber, IsEqualByMathematicalValue) {
    EXPECT_EQ(JSONNumber(1), JSONNumber(1.0));
    EXPECT_EQ(JSONNumber(true), JSONNumber(1U));
    EXPECT_EQ(JSONNumber(0), JSONNumber(-0.0));
    EXPECT_EQ(JSONNumber(1e300), JSONNumber(1e300));
    // 2^53 + 1 and 2^64 - 1 would round to these doubles.
    EXPECT_NE(JSONNumber((std::int64_t{1} << 53) + 1), JSONNumber(0x1p53));
    EXPECT_NE(JSONNumber(uint64Max), JSONNumber(0x1p64));
    EXPECT_NE(JSONNumber(uint64Max), JSONNumber(-1));
    EXPECT_NE(JSONNumber(std::nan("")), JSONNumber(std::nan("")));
}

TEST(JSONNumber, DescribesItself) {
    EXPECT_EQ(JSONNumber(5).description(), "5");
    EXPECT_EQ(JSONNumber(1.5).description(), "1.5");
    EXPECT_EQ(JSONNumber(true).description(), "1");
    EXPECT_EQ(JSONNumber(uint64Max).description(), "18446744073709551615");
    EXPECT_FALSE(JSONNumber(0.0).boolValue());
    EXPECT_TRUE(JSONNumber(-0.5).boolValue());
}

}  // namespace
}  // namespace corvane
