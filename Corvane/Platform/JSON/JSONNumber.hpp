#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include <Corvane/Export.hpp>

namespace corvane {

/// An integer type that holds numbers, not characters or Booleans.
template <class T>
concept JSONInteger =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t> && sizeof(T) <= 8;

/// A number as JSON has it: a Boolean, a signed or unsigned 64-bit integer kept exactly, or a double.
///
/// Two are equal when their mathematical values are, whatever they are held as: 1, 1.0 and true are equal,
/// and an integer is never rounded to be compared. Not a number equals nothing. Immutable but for assignment.
class CORVANE_EXPORT JSONNumber {
  public:
    template <std::same_as<bool> T>
    constexpr JSONNumber(T value) noexcept : value_(value) {}  // NOLINT(google-explicit-constructor)

    /// An unsigned value that fits in the signed type is held in that.
    template <JSONInteger T>
    constexpr JSONNumber(T value) noexcept  // NOLINT(google-explicit-constructor)
        : value_(static_cast<std::int64_t>(value)) {
        if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8) {
            if (value > INT64_MAX) value_ = static_cast<std::uint64_t>(value);
        }
    }

    template <std::floating_point T>
    constexpr JSONNumber(T value) noexcept  // NOLINT(google-explicit-constructor)
        : value_(static_cast<double>(value)) {}

    /// Whether it was made from (or read as) true or false.
    [[nodiscard]] bool isBoolean() const noexcept { return std::holds_alternative<bool>(value_); }

    /// Whether it is held as a double.
    [[nodiscard]] bool isFloatingPoint() const noexcept { return std::holds_alternative<double>(value_); }

    /// True for everything but zero.
    [[nodiscard]] bool boolValue() const noexcept;

    /// The integer value: a fraction is cut off, a value out of range gives the nearest end of the range, not
    /// a number gives 0.
    [[nodiscard]] std::int64_t int64Value() const noexcept;
    [[nodiscard]] std::uint64_t uint64Value() const noexcept;

    /// The nearest double; exact up to 2^53.
    [[nodiscard]] double doubleValue() const noexcept;

    /// The nearest float; infinite beyond its range.
    [[nodiscard]] float floatValue() const noexcept { return static_cast<float>(doubleValue()); }

    /// The value when it is a whole number within the range, however it is held; absent otherwise.
    [[nodiscard]] std::optional<std::int64_t> exactInt64() const noexcept;
    [[nodiscard]] std::optional<std::uint64_t> exactUInt64() const noexcept;

    /// Integers in decimal, Booleans as "1" and "0", doubles as `numberText` has them.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] bool operator==(const JSONNumber& other) const noexcept;

  private:
    friend class JSONValue;

    std::variant<bool, std::int64_t, std::uint64_t, double> value_;
};

}  // namespace corvane
