#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace corvane {

/// A type that can be a key of the standard's unordered containers.
template <class T>
concept Hashable = std::equality_comparable<T> && std::copyable<T> && requires(const T& value) {
    { std::hash<T>{}(value) } -> std::convertible_to<std::size_t>;
};

namespace detail {

/// The item's `id`, a field or an operation without arguments.
template <class Item>
    requires requires(const Item& item) { item.id; } || requires(const Item& item) { item.id(); }
[[nodiscard]] constexpr decltype(auto) identifier(const Item& item) {
    if constexpr (requires { item.id(); }) {
        return item.id();
    } else {
        return static_cast<const decltype(item.id)&>(item.id);
    }
}

}  // namespace detail

/// A type whose values have an identifier: a field `id` or an operation `id()` of a hashable type.
template <class T>
concept Identifiable =
    requires(const T& item) { requires Hashable<std::remove_cvref_t<decltype(detail::identifier(item))>>; };

/// The type of an identifiable item's identifiers.
template <Identifiable T>
using IdentifierOf = std::remove_cvref_t<decltype(detail::identifier(std::declval<const T&>()))>;

}  // namespace corvane
