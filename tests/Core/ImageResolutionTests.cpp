#include <algorithm>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Core/ImageResolution.hpp>

namespace corvane {

TEST(ImageResolution, HasItsTextsAndItsOrder) {
    const struct {
        ImageResolution resolution;
        std::string_view text, subpath;
        bool isHighRes;
    } cases[] = {
        {ImageResolution::medium, "medium", "medium", false},
        {ImageResolution::high, "high", "high", true},
        {ImageResolution::extraLarge, "extraLarge", "xl", true},
        {ImageResolution::tripleExtraLarge, "tripleExtraLarge", "3xl", true},
    };

    for (const auto& [resolution, text, path, isHigh] : cases) {
        EXPECT_EQ(description(resolution), text);
        EXPECT_EQ(rawValue(resolution), text);
        EXPECT_EQ(fromRawValue<ImageResolution>(text), resolution);
        EXPECT_EQ(subpath(resolution), path);
        EXPECT_EQ(isHighRes(resolution), isHigh);
    }
    for (const std::string_view text : {"xl", "3xl", "Medium", "high ", ""})
        EXPECT_EQ(fromRawValue<ImageResolution>(text), std::nullopt) << text;
    EXPECT_TRUE(std::ranges::equal(allImageResolutions, cases, {}, {}, [](const auto& row) { return row.resolution; }));
    EXPECT_TRUE(std::ranges::is_sorted(allImageResolutions));
    EXPECT_LT(ImageResolution::medium, ImageResolution::tripleExtraLarge);
}

}  // namespace corvane
