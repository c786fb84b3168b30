#pragma once

#include <algorithm>
#include <string_view>

/// The few rules of RFC 9110 and 9112 that the loopback server needs. The server is an independent witness of
/// what a client sends, so it shares none of them with the client.
namespace corvane::testing::http {

[[nodiscard]] constexpr char lowerCase(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept {
    return std::ranges::equal(a, b, {}, lowerCase, lowerCase);
}

/// Whether `text` is a token (RFC 9110, 5.6.2), as methods and field names are.
[[nodiscard]] constexpr bool isToken(std::string_view text) noexcept {
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    return !text.empty() && std::ranges::all_of(text, [marks](char c) {
        const char lower = lowerCase(c);
        return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || marks.contains(c);
    });
}

/// Whether `text` may stand as a field value: no control characters but the tab (RFC 9110, 5.5).
[[nodiscard]] constexpr bool isFieldValue(std::string_view text) noexcept {
    return std::ranges::none_of(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\t') || byte == 0x7F;
    });
}

/// `text` without the blanks and tabs around it.
[[nodiscard]] constexpr std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Whether the comma-separated list `value` has the member `member` (RFC 9110, 5.6.1).
[[nodiscard]] constexpr bool listContains(std::string_view value, std::string_view member) noexcept {
    while (true) {
        const std::size_t comma = value.find(',');
        if (equalsIgnoringCase(trimmed(value.substr(0, comma)), member)) return true;
        if (comma == std::string_view::npos) return false;
        value.remove_prefix(comma + 1);
    }
}

}  // namespace corvane::testing::http
