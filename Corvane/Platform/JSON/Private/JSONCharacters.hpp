#pragma once

namespace corvane::detail {

/// White space and digits as JSON has them.
[[nodiscard]] constexpr bool isWhitespace(char c) noexcept {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

[[nodiscard]] constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

}  // namespace corvane::detail
