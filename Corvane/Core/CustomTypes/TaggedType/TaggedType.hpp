#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <Corvane/Core/CustomTypes/TaggedType/AnyTaggedType.hpp>
#include <Corvane/Core/CustomTypes/TaggedType/CacheIdentifiableTagType.hpp>
#include <Corvane/Core/CustomTypes/TaggedType/TaggedText.hpp>
#include <Corvane/Core/OptionalComparison.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/CodingTraits.hpp>
#include <Corvane/Platform/JSON/Decoder.hpp>
#include <Corvane/Platform/JSON/Encoder.hpp>

namespace corvane {

/// What a tag adds to the tagged values of one type: the members of a specialisation, which stands beside the tag, are
/// members of `TaggedType<Tag, Value>`. Its static `convert` functions, which give a `Value`, say what else than a
/// `Value` a tagged value is made from.
template <class Tag, class Value>
struct TaggedOperations {};

namespace detail {

template <class T>
concept Hashable = requires(const T& value) {
    { std::hash<T>()(value) } -> std::convertible_to<std::size_t>;
};

template <class T>
concept HasEmptiness = requires(const T& collection) {
    collection.begin();
    { collection.empty() } -> std::convertible_to<bool>;
};

template <class T>
concept LosslessStringConvertible = std::same_as<T, std::string> || std::is_arithmetic_v<T>;

template <class Source, class Tag, class Value>
concept TagConvertible = !std::same_as<Source, Value> && requires(const Source& source) {
    { TaggedOperations<Tag, Value>::convert(source) } -> std::same_as<Value>;
};

/// The character as UTF-8; U+FFFD for what is no Unicode scalar value.
[[nodiscard]] CORVANE_EXPORT std::string utf8Text(char32_t scalar);

CORVANE_EXPORT void reportLosslessConstruction() noexcept;

}  // namespace detail

/// A value with a meaning: two tagged values of the same `Value` but different `Tag`s have different types, which are
/// not assigned to, compared with or made from each other.
///
///     using FlagName = TaggedType<FlagNameTag, std::string>;
///     using TeamID = TaggedType<struct TeamIDTag, std::int64_t>;
///
///     const FlagName flag = "no";
///     const TeamID team(4710);
///
/// `Tag` is a type that nobody makes values of. The tagged value can do what its value can: equality, order, hashing,
/// emptiness and being coded are there when `Value` has them, and mean those of the value. As JSON it is the bare
/// value. It is as large as its value; a value itself, without shared state.
template <class Tag, class Value>
class TaggedType : public TaggedOperations<Tag, Value> {
  public:
    using ValueType = Value;

    /// The empty or zero value, which a struct with tagged members starts from.
    constexpr TaggedType()
        requires std::default_initializable<Value>
        : value_() {}

    explicit constexpr TaggedType(Value value) : value_(std::move(value)) {}

    template <detail::TagConvertible<Tag, Value> Source>
    explicit constexpr TaggedType(const Source& source) : value_(TaggedOperations<Tag, Value>::convert(source)) {}

    /// From a string literal, whole, with the zeros that may be in it.
    template <std::size_t size>
        requires std::same_as<Value, std::string>
    constexpr TaggedType(const char (&literal)[size])  // NOLINT(google-explicit-constructor)
        : value_(literal, size - 1) {}

    /// A buffer is no literal: its text ends before its last byte.
    template <std::size_t size>
        requires std::same_as<Value, std::string>
    TaggedType(char (&buffer)[size]) = delete;

    /// From a character literal of one byte.
    template <std::same_as<char> Character>
        requires std::same_as<Value, std::string>
    constexpr TaggedType(Character literal) : value_(1, literal) {}  // NOLINT(google-explicit-constructor)

    /// From a character literal of a Unicode scalar value, which becomes UTF-8.
    template <std::same_as<char32_t> Character>
        requires std::same_as<Value, std::string>
    TaggedType(Character literal) : value_(detail::utf8Text(literal)) {}  // NOLINT(google-explicit-constructor)

    /// The raw value is the value, so this never fails.
    [[nodiscard]] static constexpr TaggedType fromRawValue(Value rawValue) { return TaggedType(std::move(rawValue)); }

    /// A tagged value that means something else with the same value; the way to change a tag.
    template <AnyTaggedType Source>
        requires std::same_as<typename Source::ValueType, Value>
    [[nodiscard]] static constexpr TaggedType copyValue(const Source& source) {
        return TaggedType(source.value());
    }

    /// The same for one that may be absent; absent for absent.
    template <AnyTaggedType Source>
        requires std::same_as<typename Source::ValueType, Value>
    [[nodiscard]] static constexpr std::optional<TaggedType> copyOptionalValue(const std::optional<Source>& source) {
        return source ? std::optional(copyValue(*source)) : std::nullopt;
    }

    /// Not supported, as no text says which tag was meant: reports a programming error and gives absent.
    [[nodiscard]] static std::optional<TaggedType> fromDescription(std::string_view /*description*/)
        requires detail::LosslessStringConvertible<Value>
    {
        detail::reportLosslessConstruction();
        return std::nullopt;
    }

    [[nodiscard]] constexpr const Value& value() const& noexcept { return value_; }

    [[nodiscard]] constexpr Value value() && { return std::move(value_); }

    [[nodiscard]] constexpr const Value& rawValue() const noexcept { return value_; }

    /// The text of the value: text as it stands, integers in decimal, doubles as `numberText` has them, Booleans as
    /// "true" and "false"; otherwise the value's own `description()`.
    [[nodiscard]] std::string description() const
        requires detail::HasTextForm<Value>
    {
        return detail::textForm(value_);
    }

    /// The same as `description`.
    [[nodiscard]] std::string debugDescription() const
        requires detail::HasTextForm<Value>
    {
        return description();
    }

    [[nodiscard]] constexpr bool isEmpty() const
        requires detail::HasEmptiness<Value>
    {
        return value_.empty();
    }

    [[nodiscard]] constexpr bool isNotEmpty() const
        requires detail::HasEmptiness<Value>
    {
        return !value_.empty();
    }

    /// The key that what has this name is cached under: the text itself.
    [[nodiscard]] constexpr const std::string& cacheID() const noexcept
        requires(std::same_as<Value, std::string> && std::derived_from<Tag, CacheIdentifiableTagType>)
    {
        return value_;
    }

    [[nodiscard]] friend constexpr bool operator==(const TaggedType& a, const TaggedType& b)
        requires std::equality_comparable<Value>
    {
        return a.value_ == b.value_;
    }

    /// As strong as the order of the value; weak where the value has nothing but `<`.
    [[nodiscard]] friend constexpr auto operator<=>(const TaggedType& a, const TaggedType& b)
        requires Comparable<Value>
    {
        if constexpr (std::three_way_comparable<Value>) {
            return a.value_ <=> b.value_;
        } else {
            if (a.value_ < b.value_) return std::weak_ordering::less;
            return b.value_ < a.value_ ? std::weak_ordering::greater : std::weak_ordering::equivalent;
        }
    }

    [[nodiscard]] static std::expected<TaggedType, DecodingError> decode(const Decoder& decoder)
        requires Decodable<Value>
    {
        auto value = decoder.decode<Value>();
        if (!value) return std::unexpected(std::move(value).error());
        return TaggedType(*std::move(value));
    }

    void encode(Encoder& encoder) const
        requires Encodable<Value>
    {
        encoder.encode(value_);
    }

  private:
    Value value_;
};

}  // namespace corvane

/// Hashes the value alone: whatever the tag, equal values have equal hashes.
template <class Tag, corvane::detail::Hashable Value>
struct std::hash<corvane::TaggedType<Tag, Value>> {
    [[nodiscard]] std::size_t operator()(const corvane::TaggedType<Tag, Value>& tagged) const {
        return std::hash<Value>()(tagged.value());
    }
};
