#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <Corvane/Platform/JSON/JSONDigits.hpp>
#include <Corvane/Platform/JSON/JSONTokens.hpp>
#include <Corvane/Platform/JSON/Private/JSONCharacters.hpp>
#include <Corvane/Platform/JSON/Private/JSONNumberText.hpp>

// What nearly all scalars of nearly all documents are, taken from the tokens inside the loops that walk through them.
// Every operation that says no leaves the tokens where they were, and says nothing about whether the scalar is valid.

namespace corvane::detail {

inline constexpr std::size_t escapeBlock = 16;

/// For each of the characters from `text` on, which must all be readable, one bit: whether it is a backslash.
[[nodiscard]] inline unsigned backslashes(const char* text) noexcept {
#ifdef __SSE2__
    __m128i block;
    std::memcpy(&block, text, sizeof block);
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\\'))));
#else
    unsigned found = 0;
    for (std::size_t i = 0; i < escapeBlock; ++i)
        found |= static_cast<unsigned>(text[i] == '\\') << i;
    return found;
#endif
}

/// Whether there is a backslash. Reads whole blocks, also beyond the end.
[[nodiscard, gnu::always_inline]] inline bool hasEscape(std::string_view raw) noexcept {
    for (std::size_t i = 0; i < raw.size(); i += escapeBlock) {
        const unsigned found = backslashes(raw.data() + i);
        if (found != 0) return i + static_cast<std::size_t>(std::countr_zero(found)) < raw.size();
    }
    return false;
}

/// Whether behind each backslash there is one of the characters that need nothing more.
[[nodiscard]] bool hasOnlySimpleEscapes(std::string_view raw) noexcept;

/// What is between the quotes of the text at the tokens; false when something else follows it.
[[nodiscard, gnu::always_inline]] inline bool rawText(const JSONTokens& tokens, std::string_view& raw) noexcept {
    // Behind a text's closing quote there is at most white space before the next token.
    const char* const begin = tokens.begin() + 1;
    const char* last = tokens.limit() - 1;
    while (isWhitespace(*last))
        --last;
    if (last < begin || *last != '"') return false;
    raw = {begin, last};
    return true;
}

/// Takes a key and the colon behind it.
[[nodiscard, gnu::always_inline]] inline bool takeKey(JSONTokens& tokens, std::string_view& raw) noexcept {
    if (tokens.left() < 2 || *tokens.begin() != '"' || tokens.peekNext() != ':' || !rawText(tokens, raw)) return false;
    tokens.pass(2);
    return true;
}

/// Whether the token, which is not behind the last one, is this literal.
template <std::size_t Size>
[[nodiscard, gnu::always_inline]] inline bool isLiteral(const JSONTokens& tokens,
                                                        const char (&literal)[Size]) noexcept {
    const char* const end = tokens.begin() + (Size - 1);
    return end <= tokens.limit() && std::memcmp(tokens.begin(), literal, Size - 1) == 0 &&
           (end == tokens.limit() || isWhitespace(*end));
}

[[nodiscard, gnu::always_inline]] inline bool takeNull(JSONTokens& tokens) noexcept {
    if (tokens.peek() != 'n' || !isLiteral(tokens, "null")) return false;
    tokens.pass();
    return true;
}

[[nodiscard, gnu::always_inline]] inline bool takeBoolean(JSONTokens& tokens, bool& value) noexcept {
    const char first = tokens.peek();
    if ((first != 't' || !isLiteral(tokens, "true")) && (first != 'f' || !isLiteral(tokens, "false"))) return false;
    value = first == 't';
    tokens.pass();
    return true;
}

/// Takes a number of up to seven digits before the point and behind it, without exponent.
[[nodiscard, gnu::always_inline]] inline bool takeShortDecimal(JSONTokens& tokens, double& value) noexcept {
    if (tokens.left() < 2 || !scanShortDecimal(tokens.begin(), value)) return false;
    tokens.pass();
    return true;
}

/// Takes a text without escapes.
[[nodiscard, gnu::always_inline]] inline bool takePlainText(JSONTokens& tokens, std::string_view& text) noexcept {
    if (tokens.peek() != '"' || !rawText(tokens, text) || hasEscape(text)) return false;
    tokens.pass();
    return true;
}

/// Passes a text whose escapes are simple, a literal, or a short number.
[[nodiscard, gnu::always_inline]] inline bool passPlainScalar(JSONTokens& tokens) noexcept {
    if (tokens.left() < 2) return false;
    const char first = *tokens.begin();
    if (first == '"') {
        std::string_view raw;
        if (!rawText(tokens, raw) || (hasEscape(raw) && !hasOnlySimpleEscapes(raw))) return false;
    } else if (first == '-' || isDigit(first)) {
        const bool isDigitAlone = tokens.limit() == tokens.begin() + 1 && first != '-';
        if (double ignored = 0; !isDigitAlone && !scanShortDecimal(tokens.begin(), ignored)) return false;
    } else if (!isLiteral(tokens, "null") && !isLiteral(tokens, "true") && !isLiteral(tokens, "false")) {
        return false;
    }
    tokens.pass();
    return true;
}

/// Passes an array of such scalars.
[[nodiscard, gnu::always_inline]] inline bool passPlainArray(JSONTokens& tokens) noexcept {
    JSONTokens inside = tokens;
    if (!inside.take('[')) return false;
    do {
        if (!passPlainScalar(inside)) return false;
    } while (inside.take(','));
    if (!inside.take(']')) return false;
    tokens = inside;
    return true;
}

}  // namespace corvane::detail
