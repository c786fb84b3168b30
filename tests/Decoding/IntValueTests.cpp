#include <gtest/gtest.h>

#include <Corvane/Decoding/DynamicKey.hpp>

namespace corvane {

TEST(IntValue, IsTheWholeTextInDecimal) {
    for (const std::string text : {"42", "+42", "-5", "007", "-0", "9223372036854775807", "-9223372036854775808",
                                   "+000000000000000000000000000001"})
        EXPECT_EQ(intValue(text), std::stoll(text)) << text;
    using namespace std::string_view_literals;
    for (const std::string_view text :
         {"9223372036854775808"sv, "-9223372036854775809"sv, ""sv, "+"sv, "-"sv, "+-5"sv, "-+5"sv, "++5"sv, " 2"sv,
          "2 "sv, "3a"sv, "0x10"sv, "1.0"sv, "1e3"sv, "1,000"sv, "1\0"sv, "٣"sv})
        EXPECT_EQ(intValue(text), std::nullopt) << text;
}

TEST(DynamicKey, IsTextOrTheTextOfAnInteger) {
    EXPECT_EQ(detail::DynamicKey(-12).stringValue(), "-12");
    EXPECT_EQ(detail::DynamicKey(-12).intValue(), -12);
    EXPECT_EQ(detail::DynamicKey(INT64_MIN).intValue(), INT64_MIN);
    EXPECT_EQ(detail::DynamicKey("x").stringValue(), "x");
    EXPECT_EQ(detail::DynamicKey("x").intValue(), std::nullopt);
}

}  // namespace corvane
