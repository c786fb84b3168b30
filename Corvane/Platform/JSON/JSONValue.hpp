#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/JSONArray.hpp>
#include <Corvane/Platform/JSON/JSONBlockReference.hpp>
#include <Corvane/Platform/JSON/JSONDictionary.hpp>
#include <Corvane/Platform/JSON/JSONNumber.hpp>

namespace corvane {

/// One loosely typed JSON value: null, a number, text, an array or a dictionary. A Boolean is a number that
/// remembers being one, for writing.
///
/// 16 bytes; texts, arrays and dictionaries share their content between copies, so a copy is cheap. Like any
/// value, one copy belongs to one thread at a time, and different copies may be used from different threads.
/// What an accessor points at lives as long as the value it was asked of.
///
///     const JSONValue payload = JSONDictionary{{"team", 12}, {"live", true}, {"scores", JSONArray{1, 0}}};
///     payload["scores"][0].asInt64();      // 1
///     payload["venue"]["name"].asString(); // absent
class CORVANE_EXPORT JSONValue {
  public:
    enum class Kind : unsigned char { null, number, text, array, dictionary };

    /// Null.
    constexpr JSONValue() noexcept = default;

    constexpr JSONValue(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

    template <std::same_as<bool> T>
    constexpr JSONValue(T value) noexcept : value_(value) {}  // NOLINT(google-explicit-constructor)

    template <JSONInteger T>
    constexpr JSONValue(T value) noexcept  // NOLINT(google-explicit-constructor)
        : value_(static_cast<std::int64_t>(value)) {
        if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8) {
            if (value > INT64_MAX) value_ = static_cast<std::uint64_t>(value);
        }
    }

    template <std::floating_point T>
    constexpr JSONValue(T value) noexcept  // NOLINT(google-explicit-constructor)
        : value_(static_cast<double>(value)) {}

    JSONValue(JSONNumber number) noexcept;  // NOLINT(google-explicit-constructor)

    /// Text is taken as it is and expected to be UTF-8; writing it is what fails otherwise.
    template <class T>
        requires std::is_convertible_v<const T&, std::string_view>
    JSONValue(const T& text)  // NOLINT(google-explicit-constructor)
        : value_(textBlock(text)) {}

    JSONValue(JSONArray array) noexcept : value_(std::move(array)) {}  // NOLINT(google-explicit-constructor)

    JSONValue(JSONDictionary dictionary) noexcept  // NOLINT(google-explicit-constructor)
        : value_(std::move(dictionary)) {}

    [[nodiscard]] Kind kind() const noexcept;

    [[nodiscard]] bool isNull() const noexcept { return value_.index() == 0; }

    /// Whether it is true or false, not merely a number.
    [[nodiscard]] bool isBool() const noexcept { return std::holds_alternative<bool>(value_); }

    /// The Boolean, absent for other numbers and kinds.
    [[nodiscard]] std::optional<bool> asBool() const noexcept;

    /// The number, Booleans included; absent for other kinds.
    [[nodiscard]] std::optional<JSONNumber> asNumber() const noexcept;

    /// The number when it is a whole one within the range (5 and 5.0 alike); absent otherwise. A Boolean
    /// gives 1 or 0.
    [[nodiscard]] std::optional<std::int64_t> asInt64() const noexcept;
    [[nodiscard]] std::optional<std::uint64_t> asUInt64() const noexcept;

    /// The double nearest to the number; absent for other kinds.
    [[nodiscard]] std::optional<double> asDouble() const noexcept;

    /// The text; absent for other kinds.
    [[nodiscard]] std::optional<std::string_view> asString() const noexcept;

    /// The array or dictionary, null (the pointer) for other kinds.
    [[nodiscard]] const JSONArray* asArray() const noexcept { return std::get_if<JSONArray>(&value_); }

    [[nodiscard]] const JSONDictionary* asDictionary() const noexcept { return std::get_if<JSONDictionary>(&value_); }

    /// The value under `key`, null (the pointer) when there is none or this is no dictionary.
    [[nodiscard]] const JSONValue* find(std::string_view key) const noexcept;

    /// The value under `key`, or a null value when there is none or this is no dictionary.
    [[nodiscard]] const JSONValue& operator[](std::string_view key) const noexcept;

    /// The element at `index`, or a null value beyond the end or when this is no array.
    template <JSONInteger T>
    [[nodiscard]] const JSONValue& operator[](T index) const noexcept {
        return element(std::in_range<std::size_t>(index) ? static_cast<std::size_t>(index) : SIZE_MAX);
    }

    /// Whether both are of one kind and equal: numbers by mathematical value (`JSONNumber`, so true equals
    /// 1), dictionaries whatever their order. Shared content is equal without being looked at.
    [[nodiscard]] bool operator==(const JSONValue& other) const;

    /// The value as compact JSON, for reading by developers: what JSON cannot express is shown all the same.
    [[nodiscard]] std::string description() const;

  private:
    friend struct detail::JSONAccess;

    explicit JSONValue(detail::JSONBlockReference text) noexcept : value_(std::move(text)) {}

    static detail::JSONBlockReference textBlock(std::string_view text);
    [[nodiscard]] const JSONValue& element(std::size_t index) const noexcept;

    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, detail::JSONBlockReference, JSONArray,
                 JSONDictionary>
        value_;
};

}  // namespace corvane
