#pragma once

#include <optional>
#include <ranges>
#include <type_traits>

namespace corvane {

/// Whether there is no text, list or dictionary, or one with nothing in it.
template <class Container>
    requires requires(const Container& container) { container.empty(); }
[[nodiscard]] constexpr bool isNilOrEmpty(const std::optional<Container>& container) {
    return !container || container->empty();
}

/// Whether there is no number, or zero.
template <class Number>
    requires std::is_arithmetic_v<Number>
[[nodiscard]] constexpr bool isNilOrZero(const std::optional<Number>& number) noexcept {
    return !number || *number == Number{};
}

}  // namespace corvane
