#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <system_error>

#include <Corvane/Platform/JSON/JSONDigits.hpp>
#include <Corvane/Platform/JSON/Private/JSONCharacters.hpp>

namespace corvane::detail {

/// How many of the first eight characters are digits. All eight must be readable.
[[nodiscard, gnu::always_inline]] inline std::size_t leadingDigits(const char* text) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t highHalves = 0xF0F0F0F0F0F0F0F0;
        constexpr std::uint64_t zeros = 0x3030303030303030;
        constexpr std::uint64_t sixes = 0x0606060606060606;
        std::uint64_t word = 0;
        std::memcpy(&word, text, sizeof word);
        // A digit's high half is 3, also when 6 is added. Carries only reach what comes behind the first other
        // character.
        const std::uint64_t others = ((word & highHalves) ^ zeros) | (((word + sixes) & highHalves) ^ zeros);
        return static_cast<std::size_t>(std::countr_zero(others)) / 8;
    } else {
        std::size_t count = 0;
        while (count < sizeof(std::uint64_t) && isDigit(text[count]))
            ++count;
        return count;
    }
}

/// The value of so many digits, at most eight, without a loop. Eight characters must be readable.
[[nodiscard, gnu::always_inline]] inline std::uint64_t digitsValue(const char* text, std::size_t count) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        if (count == 0) return 0;
        std::uint64_t word = 0;
        std::memcpy(&word, text, sizeof word);
        return joinedDigits((word - 0x3030303030303030) << (64 - count * 8));
    } else {
        std::uint64_t value = 0;
        std::from_chars(text, text + count, value);
        return value;
    }
}

/// Whether the character ends a number inside an array or a dictionary, where nothing is between them.
[[nodiscard]] constexpr bool endsNumber(char c) noexcept {
    return c == ',' || c == '}' || c == ']';
}

inline constexpr std::array<std::uint64_t, 8> powersOfTen = {1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000};

/// The value of a number of up to seven digits before the point and behind it, without exponent; false for every other
/// number, be it one or not. Only for a number with a token behind it.
[[nodiscard, gnu::always_inline]] inline bool scanShortDecimal(const char* text, double& value) noexcept {
    const bool negative = *text == '-';
    if (negative) ++text;
    const std::size_t count = leadingDigits(text);
    if (count == 0 || count == 8 || (count > 1 && *text == '0')) return false;
    std::uint64_t digits = digitsValue(text, count);
    text += count;
    std::size_t fraction = 0;
    if (*text == '.') {
        fraction = leadingDigits(++text);
        if (fraction == 0 || fraction == 8) return false;
        digits = digits * powersOfTen[fraction] + digitsValue(text, fraction);
        text += fraction;
    }
    if (!endsNumber(*text)) return false;
    // A double holds either exactly, so that the quotient is the only thing that is rounded.
    const double magnitude = static_cast<double>(digits) / static_cast<double>(powersOfTen[fraction]);
    value = negative ? -magnitude : magnitude;
    return true;
}

/// A number's text and, when it is an integer of up to 64 bits, its value.
struct JSONNumberText {
    const char* begin = nullptr;
    const char* end = nullptr;
    std::uint64_t magnitude = 0;
    bool negative = false;
    bool isWhole = true;
    bool hasExponent = false;

    /// False for nearly every number there is, so that those passed over need not be converted.
    [[nodiscard]] bool mayBeTooLarge() const noexcept { return hasExponent || end - begin > 300; }
};

/// Finds the number that begins at `begin` and ends at `limit` or at white space before it; false when there is none.
/// Eight characters must be readable behind every one of the text. (The result is no return value, as copying it would
/// wait for the stores of its small members.)
[[nodiscard]] inline bool scanNumber(const char* begin, const char* limit, JSONNumberText& number) noexcept {
    // The end of the digits; what may be read behind the limit may look like digits too.
    const auto passDigits = [limit](const char* p) {
        while (true) {
            const std::size_t count = leadingDigits(p);
            p += count;
            if (count < 8 || p >= limit) return p < limit ? p : limit;
        }
    };
    number.begin = begin;
    number.negative = *begin == '-';
    const char* const digits = number.negative ? begin + 1 : begin;
    const char* p = passDigits(digits);
    if (p <= digits || (p - digits > 1 && *digits == '0')) return false;
    const auto count = static_cast<std::size_t>(p - digits);
    if (p < limit && (*p == '.' || *p == 'e' || *p == 'E')) {
        number.isWhole = false;
        if (*p == '.') {
            const char* const fraction = p + 1;
            p = passDigits(fraction);
            if (p <= fraction) return false;
        }
        if (p < limit && (*p == 'e' || *p == 'E')) {
            number.hasExponent = true;
            ++p;
            if (p < limit && (*p == '+' || *p == '-')) ++p;
            const char* const exponent = p;
            p = passDigits(exponent);
            if (p <= exponent) return false;
        }
    } else if (count <= 8) {
        number.magnitude = digitsValue(digits, count);
    } else if (count <= 16) {
        // Neither half is empty, and the whole is far from 64 bits.
        constexpr std::uint64_t eightDigits = 100'000'000;
        number.magnitude = digitsValue(digits, count - 8) * eightDigits + digitsValue(p - 8, 8);
    } else {
        number.isWhole = std::from_chars(digits, p, number.magnitude).ec == std::errc();
    }
    number.end = p;
    return p == limit || isWhitespace(*p);
}

}  // namespace corvane::detail
