#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <Corvane/Decoding/DynamicKey.hpp>
#include <Corvane/Platform/Collections/SeededHash.hpp>
#include <Corvane/Platform/JSON/RawValues.hpp>

// How the name of a member becomes a typed key. A type that would do in several ways is taken by the first of these.

namespace corvane {

namespace detail {

template <class Key, class Raw>
std::remove_cvref_t<Raw> rawValueTaken(Key (*)(Raw));
template <class Key, class Raw>
std::remove_cvref_t<Raw> rawValueTaken(std::optional<Key> (*)(Raw));

/// What a class's `fromRawValue` takes, or an enumeration's raw values are.
template <class Key>
struct KeyRawValue {
    using Type = void;
};

template <class Key>
    requires requires { rawValueTaken<Key>(&Key::fromRawValue); }
struct KeyRawValue<Key> {
    using Type = decltype(rawValueTaken<Key>(&Key::fromRawValue));
};

template <CodedEnumeration Key>
struct KeyRawValue<Key> {
    using Type = RawValueOf<Key>;
};

template <class Key>
using KeyRawValueOf = typename KeyRawValue<Key>::Type;

/// An enumeration whose raw values are texts, or a class with `static` `fromRawValue` from text.
template <class Key>
concept TextRawKey =
    std::same_as<KeyRawValueOf<Key>, std::string> || std::same_as<KeyRawValueOf<Key>, std::string_view>;

/// An enumeration whose raw values are integers, or a class with `static` `fromRawValue` from an integer.
template <class Key>
concept IntegerRawKey = JSONInteger<KeyRawValueOf<Key>>;

template <class Key>
concept NumericKey = JSONInteger<Key> || std::floating_point<Key>;

/// Text itself, what is made from any text, or a class with `static std::optional<Key>
/// fromDescription(std::string_view)`. No view, which would end with the payload.
template <class Key>
concept TextKey = (std::constructible_from<Key, std::string_view> && !std::same_as<Key, std::string_view>) ||
                  requires(std::string_view text) {
                      { Key::fromDescription(text) } -> std::same_as<std::optional<Key>>;
                  };

template <class Key, class Raw>
std::optional<Key> keyFromRawValue(const Raw& raw) {
    if constexpr (CodedEnumeration<Key>) {
        return fromRawValue<Key>(raw);
    } else {
        return Key::fromRawValue(KeyRawValueOf<Key>(raw));
    }
}

/// The integer as a `Key`; absent unless it is exactly that.
template <NumericKey Key>
constexpr std::optional<Key> keyExactly(std::int64_t integer) noexcept {
    if constexpr (std::floating_point<Key>) {
        constexpr Key limit = 0x1p63F;
        const Key key = static_cast<Key>(integer);
        if (key >= limit || static_cast<std::int64_t>(key) != integer) return std::nullopt;
        return key;
    } else {
        if (!std::in_range<Key>(integer)) return std::nullopt;
        return static_cast<Key>(integer);
    }
}

template <class Key>
std::optional<Key> keyNamed(const DynamicKey& name) {
    if constexpr (TextRawKey<Key>) {
        return keyFromRawValue<Key>(name.stringValue());
    } else if constexpr (IntegerRawKey<Key>) {
        using Raw = KeyRawValueOf<Key>;
        const auto integer = name.intValue();
        if (!integer || !std::in_range<Raw>(*integer)) return std::nullopt;
        return keyFromRawValue<Key>(static_cast<Raw>(*integer));
    } else if constexpr (NumericKey<Key>) {
        const auto integer = name.intValue();
        return integer ? keyExactly<Key>(*integer) : std::nullopt;
    } else if constexpr (std::constructible_from<Key, std::string_view>) {
        return Key(name.stringValue());
    } else {
        return Key::fromDescription(name.stringValue());
    }
}

}  // namespace detail

/// A type that the names of a dictionary's members can be turned into, in one of four ways. The first that the type
/// offers counts:
///
/// - raw values that are texts: a scoped enumeration (see `RawValue`), a tagged text;
/// - raw values that are integers: the name has to be one (`intValue`) and a raw value of the type;
/// - a number: the name has to be an integer that the type holds exactly;
/// - text: what any text makes one of, as `std::string`, or what has a
///   `static std::optional<Key> fromDescription(std::string_view)`.
template <class Key>
concept OrderedDictionaryKey =
    (detail::TextRawKey<Key> || detail::IntegerRawKey<Key> || detail::NumericKey<Key> || detail::TextKey<Key>) &&
    std::equality_comparable<Key> && requires(const Key& key) { SeededHash<Key>()(key); };

}  // namespace corvane
