#pragma once

#include <concepts>
#include <optional>

namespace corvane {

/// A type whose values have an order.
template <class T>
concept Comparable = requires(const T& a, const T& b) {
    { a < b } -> std::convertible_to<bool>;
};

/// The smaller of two values of which any may be absent: the other one when one is absent, absent when both
/// are.
///
/// Also what an unqualified call means where `std::min` is visible: this template is the more specialised
/// one. (The standard one would take an absent value for the smallest.) Of two equal values it gives the
/// first.
template <Comparable T>
[[nodiscard]] constexpr std::optional<T> min(const std::optional<T>& a, const std::optional<T>& b) {
    if (!a || !b) return a ? a : b;
    return *b < *a ? b : a;
}

/// The larger of two values of which any may be absent, by the rules of `min`.
template <Comparable T>
[[nodiscard]] constexpr std::optional<T> max(const std::optional<T>& a, const std::optional<T>& b) {
    if (!a || !b) return a ? a : b;
    return *a < *b ? b : a;
}

}  // namespace corvane
