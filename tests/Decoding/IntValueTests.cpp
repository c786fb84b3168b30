#include <cstdint>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Decoding/DynamicKey.hpp>

namespace corvane {
namespace {

TEST(IntValue, IsTheWholeTextInDecimal) {
    struct Case {
        std::string_view text;
        std::optional<std::int64_t> value;
    };

    using namespace std::string_view_literals;
    for (const auto& [text, value] : {
             Case{"42", 42},
             Case{"+42", 42},
             Case{"-5", -5},
             Case{"007", 7},
             Case{"-0", 0},
             Case{"9223372036854775807", INT64_MAX},
             Case{"-9223372036854775808", INT64_MIN},
             Case{"+000000000000000000000000000001", 1},
             Case{"9223372036854775808", {}},
             Case{"-9223372036854775809", {}},
             Case{"", {}},
             Case{"+", {}},
             Case{"-", {}},
             Case{"+-5", {}},
             Case{"-+5", {}},
             Case{"++5", {}},
             Case{" 2", {}},
             Case{"2 ", {}},
             Case{"3a", {}},
             Case{"0x10", {}},
             Case{"1.0", {}},
             Case{"1e3", {}},
             Case{"1,000", {}},
             Case{"1\0"sv, {}},
             Case{"٣", {}},
         }) {
        EXPECT_EQ(intValue(text), value) << text;
    }
}

TEST(DynamicKey, IsTextOrTheTextOfAnInteger) {
    EXPECT_EQ(detail::DynamicKey(-12).stringValue(), "-12");
    EXPECT_EQ(detail::DynamicKey(-12).intValue(), -12);
    EXPECT_EQ(detail::DynamicKey(INT64_MIN).intValue(), INT64_MIN);
    EXPECT_EQ(detail::DynamicKey("x").stringValue(), "x");
    EXPECT_EQ(detail::DynamicKey("x").intValue(), std::nullopt);
}

}  // namespace
}  // namespace corvane
