#pragma once

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>

#include <Corvane/Platform/JSON/JSONTokens.hpp>

// What nearly all integers are, read without a loop where their type is known.

namespace corvane::detail {

/// The value of eight digits, 0 to 9 each, the first in the lowest byte.
[[nodiscard]] constexpr std::uint64_t joinedDigits(std::uint64_t digits) noexcept {
    // Neighbours are joined to pairs, these to fours and all eight.
    digits = digits * 10 + (digits >> 8);
    return (((digits & 0x000000FF000000FF) * 0x000F424000000064) +
            (((digits >> 16) & 0x000000FF000000FF) * 0x0000271000000001)) >>
           32;
}

/// The value of so many digits, one to eight; false when there is something else among them. Eight characters must be
/// readable.
[[nodiscard, gnu::always_inline]] inline bool scanDigits(const char* text, std::size_t count,
                                                         std::uint64_t& value) noexcept {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint64_t word = 0;
        std::memcpy(&word, text, sizeof word);
        // Digits become 0 to 9, with zeros before the first; a byte beyond 9 reaches its highest bit.
        word = (word ^ 0x3030303030303030) << (64 - count * 8);
        if (((word | (word + 0x7676767676767676)) & 0x8080808080808080) != 0) return false;
        value = joinedDigits(word);
        return true;
    } else {
        const auto result = std::from_chars(text, text + count, value);
        return result.ec == std::errc() && result.ptr == text + count;
    }
}

/// The value of an integer of up to sixteen digits that ends at `limit`; false for every other number, be it one or
/// not.
[[nodiscard, gnu::always_inline]] inline bool scanShortInteger(const char* text, const char* limit,
                                                               std::int64_t& value) noexcept {
    const bool negative = *text == '-';
    if (negative) ++text;
    const auto count = static_cast<std::size_t>(limit - text);
    if (count == 1 && !negative) {
        value = *text - '0';
        return value >= 0 && value <= 9;
    }
    if (count - 1 >= 16 || (count > 1 && *text == '0')) return false;
    std::uint64_t magnitude = 0;
    if (!scanDigits(text, count > 8 ? count - 8 : count, magnitude)) return false;
    if (count > 8) {
        constexpr std::uint64_t eightDigits = 100'000'000;
        std::uint64_t last = 0;
        if (!scanDigits(limit - 8, 8, last)) return false;
        magnitude = magnitude * eightDigits + last;
    }
    value = static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
    return true;
}

/// Takes an integer of up to sixteen digits with another token right behind it.
[[nodiscard, gnu::always_inline]] inline bool takeShortInteger(JSONTokens& tokens, std::int64_t& value) noexcept {
    if (tokens.left() < 2 || !scanShortInteger(tokens.begin(), tokens.limit(), value)) return false;
    tokens.pass();
    return true;
}

}  // namespace corvane::detail
