#include <algorithm>
#include <cstdint>

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <Corvane/Platform/Text/LetterCase.hpp>

namespace corvane {

std::string uppercased(std::string_view text) {
    std::string upper(text);
    if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        std::ranges::transform(upper, upper.begin(),
                               [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        return upper;
    }
    auto letters = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    letters.toUpper(icu::Locale::getRoot());
    upper.clear();
    return letters.toUTF8String(upper);
}

}  // namespace corvane
