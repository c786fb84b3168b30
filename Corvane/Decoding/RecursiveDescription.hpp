#pragma once

#include <chrono>
#include <concepts>
#include <cstddef>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <Corvane/Core/CustomTypes/TaggedType/TaggedText.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/JSON/CompileTimeNames.hpp>
#include <Corvane/Platform/JSON/RawValues.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {

namespace detail {

/// The type's name without its namespaces.
[[nodiscard]] CORVANE_EXPORT std::string descriptionHeading(const std::type_info& type);

/// Appends a line with the label and the value, whose own further lines are indented like the label.
CORVANE_EXPORT void describeField(std::string& description, std::string_view label, std::string_view value);

template <class T>
concept DescribedDictionary = std::ranges::input_range<const T&> && requires { typename T::mapped_type; };

template <class T>
std::string describedValue(const T& value);

template <CodedAggregate T>
std::string describedMembers(const T& value) {
    std::string description = descriptionHeading(typeid(T));
    std::apply(
        [&](const auto&... members) {
            std::size_t index = 0;
            (describeField(description, memberNames<T>[index++], describedValue(members)), ...);
        },
        memberReferences(value));
    return description;
}

template <class T>
std::string describedValue(const T& value) {
    if constexpr (isOptional<T>) {
        return value ? describedValue(*value) : "nil";
    } else if constexpr (std::same_as<T, Date>) {
        return numberText(value.time_since_epoch().count());
    } else if constexpr (HasTextForm<T>) {
        return textForm(value);
    } else if constexpr (CodedEnumeration<T>) {
        if (const auto raw = rawValue(value)) return textForm(*raw);
        return std::to_string(static_cast<std::underlying_type_t<T>>(value));
    } else if constexpr (DescribedDictionary<T>) {
        std::string description = "{" + std::to_string(std::ranges::distance(value)) + "}";
        for (const auto& [key, entry] : value)
            describeField(description, describedValue(key), describedValue(entry));
        return description;
    } else if constexpr (std::ranges::input_range<const T&>) {
        std::string description = "[" + std::to_string(std::ranges::distance(value)) + "]";
        std::size_t index = 0;
        for (const auto& element : value)
            describeField(description, std::to_string(index++), describedValue(element));
        return description;
    } else {
        static_assert(CodedAggregate<T>, "a value is described by its fields or by a description() of its own");
        return describedMembers(value);
    }
}

}  // namespace detail

/// A plain struct for reading by developers: the type's name, then a line for each member with its name and value, and
/// everything inside a member indented below it by four blanks more.
///
///     Team
///         id: 12
///         city: nil
///         colours: [2]
///             0: blue
///             1: white
///
/// Members may be numbers, Booleans, text, `Date` (seconds since 1970), scoped enumerations (their raw values),
/// optionals, lists and dictionaries (how many elements, then each), and plain structs again, of at most 64 members. A
/// member that offers `description()` is shown by that, so a struct may give `recursiveDescription(*this)` as its own.
template <detail::CodedAggregate T>
[[nodiscard]] std::string recursiveDescription(const T& value) {
    return detail::describedMembers(value);
}

}  // namespace corvane
