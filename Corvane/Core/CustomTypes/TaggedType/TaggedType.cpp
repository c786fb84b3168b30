#include <source_location>

#include <Corvane/Core/CustomTypes/TaggedType/TaggedType.hpp>
#include <Corvane/Core/FatalErrorInDebug.hpp>

namespace corvane::detail {

std::string utf8Text(char32_t scalar) {
    if (scalar > 0x10FFFF || (scalar >= 0xD800 && scalar <= 0xDFFF)) scalar = 0xFFFD;

    std::string text;
    const auto append = [&](char32_t marks, char32_t bits) { text += static_cast<char>(marks | bits); };
    const auto appendTail = [&](unsigned shift) { append(0x80, (scalar >> shift) & 0x3F); };
    if (scalar < 0x80) {
        append(0, scalar);
    } else if (scalar < 0x800) {
        append(0xC0, scalar >> 6);
        appendTail(0);
    } else if (scalar < 0x10000) {
        append(0xE0, scalar >> 12);
        appendTail(6);
        appendTail(0);
    } else {
        append(0xF0, scalar >> 18);
        appendTail(12);
        appendTail(6);
        appendTail(0);
    }
    return text;
}

void reportLosslessConstruction() noexcept {
    // The blank after the slash is deliberate.
    fatalErrorInDebug(
        "TaggedType initialisation via LosslessStringConvertible is not supported, use .init(value: ) instead",
        {"Core/Custom Types/TaggedType/ TaggedType + LosslessStringConvertible", "init(_:)",
         std::source_location::current().line()});
}

}  // namespace corvane::detail
