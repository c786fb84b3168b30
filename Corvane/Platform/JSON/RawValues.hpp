#pragma once

#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>

#include <Corvane/Platform/JSON/CodingTraits.hpp>

namespace corvane {

namespace detail {

template <class Enumeration>
concept HasRawValues = requires { Coding<Enumeration>::rawValues[0].rawValue; };

template <class Enumeration>
struct RawValueType {
    using Type = std::string_view;
};

template <HasRawValues Enumeration>
struct RawValueType<Enumeration> {
    using Type = std::remove_cvref_t<decltype(Coding<Enumeration>::rawValues[0].rawValue)>;
};

}  // namespace detail

/// Text or a number: what an enumeration's values are in JSON.
template <detail::CodedEnumeration Enumeration>
using RawValueOf = typename detail::RawValueType<Enumeration>::Type;

/// The raw value of an enumerator; absent for a value that is none.
template <detail::CodedEnumeration Enumeration>
[[nodiscard]] constexpr std::optional<RawValueOf<Enumeration>> rawValue(Enumeration enumerator) noexcept {
    if constexpr (detail::HasRawValues<Enumeration>) {
        for (const auto& pair : Coding<Enumeration>::rawValues) {
            if (pair.enumerator == enumerator) return pair.rawValue;
        }
    } else {
        const auto value = static_cast<std::underlying_type_t<Enumeration>>(enumerator);
        const auto& names = detail::enumeratorNames<Enumeration>;
        if (std::in_range<std::size_t>(value) && static_cast<std::size_t>(value) < names.size()) {
            const std::string_view name = names[static_cast<std::size_t>(value)];
            if (!name.empty()) return name;
        }
    }
    return std::nullopt;
}

/// The enumerator with exactly that raw value; absent when there is none.
template <detail::CodedEnumeration Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(RawValueOf<Enumeration> raw) noexcept {
    if constexpr (detail::HasRawValues<Enumeration>) {
        for (const auto& pair : Coding<Enumeration>::rawValues) {
            if (pair.rawValue == raw) return pair.enumerator;
        }
    } else if (!raw.empty()) {
        const auto& names = detail::enumeratorNames<Enumeration>;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == raw) return static_cast<Enumeration>(i);
        }
    }
    return std::nullopt;
}

}  // namespace corvane
