#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {
namespace {

TEST(NumberText, IsPlainWithAFractionBetweenItsBoundsAndHasAnExponentOutside) {
    const std::pair<double, const char*> cases[] = {
        {0, "0.0"},
        {-0.0, "-0.0"},
        {1.5, "1.5"},
        {-42, "-42.0"},
        {1700000000, "1700000000.0"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e-4, "0.0001"},
        {std::nextafter(1e-4, 0), "9.999999999999999e-05"},
        {-1.2345678901234567e-4, "-0.00012345678901234567"},
        {std::nextafter(1e16, 0), "9999999999999998.0"},
        {1e16, "1e+16"},
        {-1e300, "-1e+300"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {std::nan(""), "nan"},
        {HUGE_VAL, "inf"},
        {-HUGE_VAL, "-inf"},
    };
    for (const auto& [number, text] : cases)
        EXPECT_EQ(numberText(number), text);
}

TEST(NumberText, ReadsBackAsTheSameDouble) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) continue;
        const std::string text = numberText(number);
        EXPECT_EQ(std::strtod(text.c_str(), nullptr), number) << text;
    }
}

}  // namespace
}  // namespace corvane
