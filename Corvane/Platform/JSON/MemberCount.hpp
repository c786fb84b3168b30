#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>
#include <utility>

namespace corvane::detail {

/// Stands for a value of whatever type a member has, where nothing is evaluated.
struct AnyMember {
    template <class T>
        requires(!std::same_as<T, std::string_view>)
    operator T() const {  // NOLINT(google-explicit-constructor)
        std::unreachable();
    }

    // Types that are made from anything that becomes a view ask that of a constant; they are not to take this for text.
    operator std::string_view() && { std::unreachable(); }  // NOLINT(google-explicit-constructor)
};

inline constexpr std::size_t maximumMembers = 64;

template <class T, std::size_t... I>
constexpr bool takesMembers(std::index_sequence<I...>) {
    return requires { T{(static_cast<void>(I), AnyMember{})...}; };
}

/// How many members the plain struct `T` has: the most values it can be initialised from.
template <class T, std::size_t Most = maximumMembers>
constexpr std::size_t memberCount() {
    if constexpr (Most == maximumMembers) {
        static_assert(!takesMembers<T>(std::make_index_sequence<maximumMembers + 1>{}),
                      "a struct of more than 64 members has to decode and encode itself");
    }
    if constexpr (Most == 0 || takesMembers<T>(std::make_index_sequence<Most>{})) {
        return Most;
    } else {
        return memberCount<T, Most - 1>();
    }
}

}  // namespace corvane::detail
