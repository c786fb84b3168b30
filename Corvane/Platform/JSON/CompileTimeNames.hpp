#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include <Corvane/Platform/JSON/MemberReferences.hpp>

namespace corvane::detail {

/// Room for a `T` of which only the addresses of its members are of interest.
template <class T>
union Unmade {
    constexpr Unmade() noexcept : nothing() {}

    constexpr ~Unmade() {}

    char nothing;
    T value;
};

template <class T>
inline constexpr Unmade<T> unmade{};

/// The compiler's spelling of a template argument: "[with auto Constant = (& ...::Team::name)]" or
/// "[Constant = &unmade.value.name]".
template <auto Constant>
consteval const char* spelling() {
    return __PRETTY_FUNCTION__;
}

/// The last name in such a spelling.
consteval std::string_view lastName(std::string_view spelling) {
    while (spelling.ends_with(']') || spelling.ends_with(')'))
        spelling.remove_suffix(1);
    return spelling.substr(spelling.find_last_of(" .:)") + 1);
}

template <class T, std::size_t Member>
consteval std::string_view memberName() {
    return lastName(spelling<&std::get<Member>(memberReferences(unmade<T>.value))>());
}

/// The names of a plain struct's members, in their order.
template <class T>
inline constexpr auto memberNames = []<std::size_t... I>(std::index_sequence<I...>) {
    return std::array<std::string_view, sizeof...(I)>{memberName<T, I>()...};
}(std::make_index_sequence<memberCount<T>()>{});

/// The values among which the enumerators of an enumeration without raw values are looked for: from zero up to this.
inline constexpr std::size_t namedEnumerators = 64;

/// The names of the enumerators by value, empty where no enumerator has that value.
template <class Enumeration>
inline constexpr auto enumeratorNames = []<std::size_t... I>(std::index_sequence<I...>) {
    const auto named = [](std::string_view name) consteval {
        return name.front() >= '0' && name.front() <= '9' ? std::string_view() : name;
    };
    return std::array<std::string_view, sizeof...(I)>{named(lastName(spelling<static_cast<Enumeration>(I)>()))...};
}(std::make_index_sequence<namedEnumerators>{});

}  // namespace corvane::detail
