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

TEST(JSONNumber, TruncatesAndClampsToIntegersUnlessTheyAreToBeExact) {
    struct Case {
        JSONNumber number;
        std::int64_t asSigned;
        std::uint64_t asUnsigned;
        bool isExactlySigned, isExactlyUnsigned;
    };

    const Case cases[] = {
        {5.0, 5, 5, true, true},
        {12.9, 12, 12, false, false},
        {-12.9, -12, 0, false, false},
        {true, 1, 1, true, true},
        {-1, -1, 0, true, false},
        {int64Min, int64Min, 0, true, false},
        {uint64Max, int64Max, uint64Max, false, true},
        {0x1p63, int64Max, std::uint64_t{1} << 63, false, true},
        {-0x1p63, int64Min, 0, true, false},
        {0x1p64, int64Max, uint64Max, false, false},
        {-HUGE_VAL, int64Min, 0, false, false},
        {std::nan(""), 0, 0, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.number.description());
        EXPECT_EQ(c.number.int64Value(), c.asSigned);
        EXPECT_EQ(c.number.uint64Value(), c.asUnsigned);
        EXPECT_EQ(c.number.exactInt64(), c.isExactlySigned ? std::optional(c.asSigned) : std::nullopt);
        EXPECT_EQ(c.number.exactUInt64(), c.isExactlyUnsigned ? std::optional(c.asUnsigned) : std::nullopt);
    }
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

}  // namespace
}  // namespace corvane
