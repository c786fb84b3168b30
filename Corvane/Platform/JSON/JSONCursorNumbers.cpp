#include <charconv>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/Private/ClippedText.hpp>
#include <Corvane/Platform/JSON/Private/JSONCharacters.hpp>
#include <Corvane/Platform/JSON/Private/JSONNumberText.hpp>
#include <Corvane/Platform/JSON/Private/JSONScalars.hpp>

namespace corvane::detail {

namespace {

/// Whether the first digit that counts stands before the point, for numbers that are beyond one end of a double's range
/// or the other.
bool isAboveOne(std::string_view number) {
    std::size_t i = number.front() == '-' ? 1 : 0;
    std::int64_t magnitude = 0;
    bool behindPoint = false;
    bool counts = false;
    for (; i < number.size() && (isDigit(number[i]) || number[i] == '.'); ++i) {
        if (number[i] == '.') {
            behindPoint = true;
            continue;
        }
        counts = counts || number[i] != '0';
        if (behindPoint && !counts) --magnitude;
        if (!behindPoint && counts) ++magnitude;
    }
    if (i == number.size()) return magnitude > 0;
    const bool small = number[++i] == '-';
    if (small || number[i] == '+') ++i;
    std::int64_t exponent = 0;
    const auto result = std::from_chars(number.data() + i, number.data() + number.size(), exponent);
    if (result.ec != std::errc()) return !small;
    return magnitude + (small ? -exponent : exponent) > 0;
}

}  // namespace

bool JSONCursor::numberValue(const JSONNumberText& number, double& value) noexcept {
    constexpr std::uint64_t exactly = std::uint64_t{1} << 53;
    if (number.isWhole && number.magnitude <= exactly) {
        value = std::copysign(static_cast<double>(number.magnitude), number.negative ? -1.0 : 1.0);
        return true;
    }
    if (std::from_chars(number.begin, number.end, value).ec == std::errc()) return true;
    if (isAboveOne({number.begin, number.end})) return false;
    value = number.negative ? -0.0 : 0.0;
    return true;
}

bool JSONCursor::readNumber(JSONNumberText& number, std::string_view expected, const CodingStep* path) {
    const char first = tokens_.peek();
    if (!isDigit(first) && first != '-') return failMismatch(expected, path);
    return scanNumber(tokens_.begin(), tokens_.limit(), number) || failMalformed();
}

bool JSONCursor::read(double& value, const CodingStep* path) {
    if (takeShortDecimal(tokens_, value)) return true;
    JSONNumberText number;
    if (!readNumber(number, "a number", path)) return false;
    if (!numberValue(number, value)) return failMalformed();
    tokens_.pass();
    return true;
}

bool JSONCursor::read(float& value, const CodingStep* path) {
    double wide = 0;
    if (!read(wide, path)) return false;
    value = static_cast<float>(wide);
    if (std::isfinite(value)) return true;
    tokens_.stepBack();
    return failCorrupted(fmt::format("The number {} is beyond the range of a float", clippedText(tokenText())), path);
}

bool JSONCursor::readSigned(std::int64_t& value, std::int64_t least, std::int64_t most, const CodingStep* path) {
    JSONNumberText number;
    if (!readNumber(number, "an integer", path)) return false;
    constexpr auto limit = std::uint64_t{1} << 63;
    std::optional<std::int64_t> whole;
    if (number.isWhole) {
        // Negating in the unsigned type is right at the lowest value too.
        if (number.magnitude < limit || (number.negative && number.magnitude == limit)) {
            whole = static_cast<std::int64_t>(number.negative ? 0 - number.magnitude : number.magnitude);
        }
    } else if (double real = 0; numberValue(number, real)) {
        whole = JSONNumber(real).exactInt64();
    }
    if (!whole || *whole < least || *whole > most) return failRange(least, static_cast<std::uint64_t>(most), path);
    value = *whole;
    tokens_.pass();
    return true;
}

bool JSONCursor::readUnsigned(std::uint64_t& value, std::uint64_t most, const CodingStep* path) {
    JSONNumberText number;
    if (!readNumber(number, "an integer", path)) return false;
    std::optional<std::uint64_t> whole;
    if (number.isWhole) {
        if (!number.negative || number.magnitude == 0) whole = number.magnitude;
    } else if (double real = 0; numberValue(number, real)) {
        whole = JSONNumber(real).exactUInt64();
    }
    if (!whole || *whole > most) return failRange(0, most, path);
    value = *whole;
    tokens_.pass();
    return true;
}

bool JSONCursor::failRange(std::int64_t least, std::uint64_t most, const CodingStep* path) {
    if (!exact_) return false;
    return failCorrupted(
        fmt::format("Expected an integer from {} to {} but found {}", least, most, clippedText(tokenText())), path);
}

}  // namespace corvane::detail
