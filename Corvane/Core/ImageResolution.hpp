#pragma once

#include <array>
#include <string_view>

#include <Corvane/Platform/JSON/RawValues.hpp>

namespace corvane {

/// The sizes of images that the image service has, smallest first; `<` compares by size. The raw values are the
/// enumerators' names: `rawValue`, `fromRawValue<ImageResolution>("high")`, and in JSON.
enum class ImageResolution : unsigned char { medium, high, extraLarge, tripleExtraLarge };

/// All sizes in order.
inline constexpr std::array allImageResolutions = {ImageResolution::medium, ImageResolution::high,
                                                   ImageResolution::extraLarge, ImageResolution::tripleExtraLarge};

/// The raw value.
[[nodiscard]] constexpr std::string_view description(ImageResolution resolution) noexcept {
    return rawValue(resolution).value_or("");
}

/// The component of an image's address that stands for the size; for the large ones it is not the raw value.
[[nodiscard]] constexpr std::string_view subpath(ImageResolution resolution) noexcept {
    switch (resolution) {
        case ImageResolution::medium:
            return "medium";
        case ImageResolution::high:
            return "high";
        case ImageResolution::extraLarge:
            return "xl";
        case ImageResolution::tripleExtraLarge:
            return "3xl";
    }
    return "";
}

/// Whether the size is high or larger.
[[nodiscard]] constexpr bool isHighRes(ImageResolution resolution) noexcept {
    return resolution >= ImageResolution::high;
}

}  // namespace corvane
