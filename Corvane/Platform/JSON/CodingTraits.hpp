#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/JSON/Coding.hpp>
#include <Corvane/Platform/JSON/CompileTimeNames.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>
#include <Corvane/Platform/JSON/JSONNumber.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

// What the compiler can tell about how a type is coded.

namespace corvane {

namespace detail {

template <class T>
concept CodedAsItIs = std::same_as<T, bool> || JSONInteger<T> || std::same_as<T, float> || std::same_as<T, double> ||
                      std::same_as<T, std::string> || std::same_as<T, JSONValue> || std::same_as<T, Date>;

template <class T>
concept HasDecodingCoding = requires(const Decoder& decoder) {
    { Coding<T>::decode(decoder) } -> std::same_as<std::expected<T, DecodingError>>;
};

template <class T>
concept HasOwnDecoding = requires(const Decoder& decoder) {
    { T::decode(decoder) } -> std::same_as<std::expected<T, DecodingError>>;
};

template <class T>
concept HasEncodingCoding = requires(const T& value, Encoder& encoder) { Coding<T>::encode(value, encoder); };

template <class T>
concept HasOwnEncoding = requires(const T& value, Encoder& encoder) { value.encode(encoder); };

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class T>
inline constexpr bool isVector = false;
template <class T, class Allocator>
inline constexpr bool isVector<std::vector<T, Allocator>> = true;

/// A dictionary that keeps the order of its entries (`OrderedDictionary`).
template <class T>
concept CodedOrderedDictionary = requires(T& dictionary, typename T::key_type key) {
    { dictionary.tryEmplace(std::move(key)).first } -> std::same_as<typename T::mapped_type&>;
};

template <class T>
concept CodedDictionary = CodedOrderedDictionary<T> || requires(T& dictionary, typename T::key_type key) {
    { dictionary.try_emplace(std::move(key)).first->second } -> std::same_as<typename T::mapped_type&>;
};

template <class T>
concept CodedEnumeration = std::is_scoped_enum_v<T>;

/// A struct whose members are coded one by one. (Types with a tuple's size are lists in disguise.)
template <class T>
concept CodedAggregate = std::is_aggregate_v<T> && std::is_class_v<T> && !requires { std::tuple_size<T>::value; };

template <class T>
concept CodedByKind =
    CodedAsItIs<T> || isOptional<T> || isVector<T> || CodedDictionary<T> || CodedEnumeration<T> || CodedAggregate<T>;

template <class T>
constexpr std::span<const CodingRule> codingRules() {
    if constexpr (requires { Coding<T>::codingRules; }) {
        return Coding<T>::codingRules;
    } else if constexpr (requires { T::codingRules; }) {
        return T::codingRules;
    } else {
        return {};
    }
}

/// How the members of a plain struct are coded, by position.
template <class T>
inline constexpr auto memberRules = [] {
    std::array<CodingRule, memberNames<T>.size()> rules;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        rules[i] = {.member = memberNames<T>[i]};
        for (const CodingRule& rule : codingRules<T>()) {
            if (rule.member == rules[i].member) rules[i] = rule;
        }
        if (rules[i].key.empty()) rules[i].key = rules[i].member;
    }
    return rules;
}();

/// Whether every rule is about a member and no two members have one key.
template <class T>
consteval bool hasSoundRules() {
    for (const CodingRule& rule : codingRules<T>()) {
        bool found = false;
        for (const std::string_view name : memberNames<T>)
            found = found || name == rule.member;
        if (!found) return false;
    }
    const auto& rules = memberRules<T>;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const bool bothCoded =
                rules[i].presence != CodingPresence::notCoded && rules[j].presence != CodingPresence::notCoded;
            if (bothCoded && rules[i].key == rules[j].key) return false;
        }
    }
    return true;
}

}  // namespace detail

/// A type that `JSONDecoder` can make values of. Of vectors, optionals and structs only the outside is looked at; a
/// member that cannot be decoded stops the compiler where it is used.
template <class T>
concept Decodable = detail::HasDecodingCoding<T> || detail::HasOwnDecoding<T> || detail::CodedByKind<T>;

/// A type whose values `JSONEncoder` can write; looked at as for `Decodable`.
template <class T>
concept Encodable = detail::HasEncodingCoding<T> || detail::HasOwnEncoding<T> || detail::CodedByKind<T> ||
                    std::convertible_to<const T&, std::string_view>;

}  // namespace corvane
