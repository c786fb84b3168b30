#include <algorithm>
#include <cstddef>

#include <gtest/gtest.h>

#include <Corvane/Core/ImageResolution.hpp>

namespace corvane {

TEST(ImageResolution, HasItsTextsAndItsOrder) {
    const std::string_view texts[] = {"medium", "high", "extraLarge", "tripleExtraLarge"};
    const std::string_view subpaths[] = {"medium", "high", "xl", "3xl"};
    for (std::size_t i = 0; i < allImageResolutions.size(); ++i) {
        const ImageResolution resolution = allImageResolutions[i];
        EXPECT_EQ(description(resolution), texts[i]);
        EXPECT_EQ(fromRawValue<ImageResolution>(texts[i]), resolution);
        EXPECT_EQ(subpath(resolution), subpaths[i]);
        EXPECT_EQ(isHighRes(resolution), i > 0);
    }
    EXPECT_TRUE(std::ranges::is_sorted(allImageResolutions));
    for (const std::string_view text : {"xl", "Medium", "high ", ""})
        EXPECT_EQ(fromRawValue<ImageResolution>(text), std::nullopt) << text;
}

}  // namespace corvane
