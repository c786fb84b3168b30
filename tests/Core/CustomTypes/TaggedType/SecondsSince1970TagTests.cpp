#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Core/CustomTypes/TaggedType/SecondsSince1970Tag.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

static_assert(SecondsSince1970(1.9).value() == 1 && SecondsSince1970(-0.5) == SecondsSince1970::zero());

TEST(SecondsSince1970, CutsOffWhatIsBehindThePoint) {
    EXPECT_EQ(SecondsSince1970(-0.999).value(), 0U);
    EXPECT_EQ(SecondsSince1970(0x1.fffffffffffffp63).value(), 0xFFFFFFFFFFFFF800U);
    EXPECT_EQ(SecondsSince1970(7).value(), 7U);
    EXPECT_EQ(SecondsSince1970(std::int64_t{9007199254740993}).value(), 9007199254740992U) << "through a double";
    EXPECT_EQ(SecondsSince1970(UINT64_MAX).value(), UINT64_MAX) << "exactly";
    EXPECT_EQ(SecondsSince1970(9).timeInterval(), 9.0);
    EXPECT_EQ(SecondsSince1970(4) - SecondsSince1970(9), -5.0);

    testing::VirtualClock clock(Date(std::chrono::duration<double>(1710504000.75)));
    EXPECT_EQ(SecondsSince1970::now().value(), 1710504000U);
}

TEST(SecondsSince1970DeathTest, StopsForImpossibleTimestamps) {
    EXPECT_DEATH(SecondsSince1970(-1.0), "Fatal error: There is no timestamp -1.0 seconds since 1970");
    EXPECT_DEATH(SecondsSince1970(-1), "no timestamp -1.0");
    EXPECT_DEATH(SecondsSince1970(0x1p64), "no timestamp 1.8");
    EXPECT_DEATH((void)SecondsSince1970::fromOptional(std::numeric_limits<double>::infinity()), "no timestamp inf");
    EXPECT_DEATH((void)SecondsSince1970::fromOptionalNumber(std::numeric_limits<double>::quiet_NaN()), "timestamp nan");
}

TEST(SecondsSince1970, IsAbsentForWhatIsAbsentOrUnreadable) {
    EXPECT_EQ(SecondsSince1970::fromOptional(std::nullopt), std::nullopt);
    EXPECT_EQ(SecondsSince1970::fromOptional(2.5), SecondsSince1970(2));
    EXPECT_EQ(SecondsSince1970::fromOptionalNumber(std::nullopt), std::nullopt);
    EXPECT_EQ(SecondsSince1970::fromOptionalNumber(JSONNumber(3)), SecondsSince1970(3));

    EXPECT_EQ(SecondsSince1970::fromResponseTimeStampString("Sun, 06 Nov 1994 08:49:37 GMT"),
              SecondsSince1970(784111777));
    for (const auto& text : {std::optional<std::string_view>(), {""}, {"784111777"}, {"Wed, 31 Dec 1969 23:59:59 GMT"}})
        EXPECT_EQ(SecondsSince1970::fromResponseTimeStampString(text), std::nullopt);
}

}  // namespace corvane
