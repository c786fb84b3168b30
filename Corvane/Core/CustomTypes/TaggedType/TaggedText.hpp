#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane::detail {

/// A type of which there is one plain text form: text, a number, a Boolean, or what says its own by `description()`,
/// a member or a free function beside the type.
template <class T>
concept HasTextForm = std::convertible_to<const T&, std::string_view> || std::integral<T> || std::floating_point<T> ||
                      requires(const T& value) {
                          { value.description() } -> std::convertible_to<std::string_view>;
                      } || requires(const T& value) {
                          { description(value) } -> std::convertible_to<std::string_view>;
                      };

template <HasTextForm T>
[[nodiscard]] std::string textForm(const T& value) {
    if constexpr (std::convertible_to<const T&, std::string_view>) {
        return std::string(std::string_view(value));
    } else if constexpr (std::same_as<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::same_as<T, char>) {
        return std::string(1, value);
    } else if constexpr (std::integral<T>) {
        return std::to_string(value);
    } else if constexpr (std::floating_point<T>) {
        return numberText(static_cast<double>(value));
    } else if constexpr (requires { value.description(); }) {
        return std::string(value.description());
    } else {
        return std::string(description(value));
    }
}

}  // namespace corvane::detail
