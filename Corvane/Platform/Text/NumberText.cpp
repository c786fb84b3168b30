#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {

std::string numberText(double number) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
    const double magnitude = std::fabs(number);
    const bool plain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    // The longest plain text is a sign, "0.000" and 17 digits.
    std::array<char, 32> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer.data(), end.ptr);
    if (plain && text.find('.') == std::string::npos) text += ".0";
    return text;
}

}  // namespace corvane
