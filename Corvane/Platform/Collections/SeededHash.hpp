#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>

#include <Corvane/Export.hpp>

namespace corvane {

namespace detail {

[[nodiscard]] CORVANE_EXPORT std::size_t seededHash(std::string_view text) noexcept;
[[nodiscard]] CORVANE_EXPORT std::size_t seededHash(std::uint64_t word) noexcept;

}  // namespace detail

/// The hash that Corvane's collections use for their keys, under a seed that every process draws anew: a back end that
/// answers with chosen keys must not be able to make them all collide. Never the same in two processes, so nothing may
/// store it. (`Hasher` is for hashes that are stored.)
///
/// Texts, integers, enumerations, and types whose `rawValue()` is one of these are protected in this way. Other types
/// are hashed by their `std::hash` first, and are as safe from chosen keys as that is.
template <class Key>
struct SeededHash {
    [[nodiscard]] std::size_t operator()(const Key& key) const noexcept {
        if constexpr (std::is_enum_v<Key> || std::integral<Key>) {
            return detail::seededHash(static_cast<std::uint64_t>(key));
        } else if constexpr (requires { key.rawValue(); }) {
            return SeededHash<std::remove_cvref_t<decltype(key.rawValue())>>()(key.rawValue());
        } else {
            return detail::seededHash(static_cast<std::uint64_t>(std::hash<Key>()(key)));
        }
    }
};

/// Texts are looked up by anything that is seen as text, without a copy.
template <class Key>
    requires std::convertible_to<const Key&, std::string_view>
struct SeededHash<Key> {
    using is_transparent = void;

    [[nodiscard]] std::size_t operator()(std::string_view key) const noexcept { return detail::seededHash(key); }
};

}  // namespace corvane
