#include <cmath>
#include <limits>

#include <Corvane/Platform/JSON/JSONNumber.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane {

namespace {

// The first doubles beyond the integer types, which no double equals the last of.
constexpr double signedLimit = 0x1p63;
constexpr double unsignedLimit = 0x1p64;

template <std::integral Integer>
Integer clampedInteger(double value, double limit) noexcept {
    if (std::isnan(value)) return 0;
    if (value >= limit) return std::numeric_limits<Integer>::max();
    constexpr Integer lowest = std::numeric_limits<Integer>::min();
    return value <= static_cast<double>(lowest) ? lowest : static_cast<Integer>(value);
}

bool isWhole(double value) noexcept {
    return std::trunc(value) == value;
}

}  // namespace

bool JSONNumber::boolValue() const noexcept {
    return std::visit([](auto value) { return value != decltype(value){}; }, value_);
}

std::int64_t JSONNumber::int64Value() const noexcept {
    if (const auto* real = std::get_if<double>(&value_)) return clampedInteger<std::int64_t>(*real, signedLimit);
    if (std::holds_alternative<std::uint64_t>(value_)) return std::numeric_limits<std::int64_t>::max();
    return std::visit([](auto value) { return static_cast<std::int64_t>(value); }, value_);
}

std::uint64_t JSONNumber::uint64Value() const noexcept {
    if (const auto* real = std::get_if<double>(&value_)) return clampedInteger<std::uint64_t>(*real, unsignedLimit);
    if (const auto* whole = std::get_if<std::int64_t>(&value_); whole != nullptr && *whole < 0) return 0;
    return std::visit([](auto value) { return static_cast<std::uint64_t>(value); }, value_);
}

double JSONNumber::doubleValue() const noexcept {
    return std::visit([](auto value) { return static_cast<double>(value); }, value_);
}

std::optional<std::int64_t> JSONNumber::exactInt64() const noexcept {
    if (std::holds_alternative<std::uint64_t>(value_)) return std::nullopt;
    if (const auto* real = std::get_if<double>(&value_)) {
        if (!isWhole(*real) || *real < -signedLimit || *real >= signedLimit) return std::nullopt;
    }
    return int64Value();
}

std::optional<std::uint64_t> JSONNumber::exactUInt64() const noexcept {
    if (const auto* whole = std::get_if<std::int64_t>(&value_); whole != nullptr && *whole < 0) return std::nullopt;
    if (const auto* real = std::get_if<double>(&value_)) {
        if (!isWhole(*real) || *real < 0 || *real >= unsignedLimit) return std::nullopt;
    }
    return uint64Value();
}

std::string JSONNumber::description() const {
    if (const auto* real = std::get_if<double>(&value_)) return numberText(*real);
    if (const auto* large = std::get_if<std::uint64_t>(&value_)) return std::to_string(*large);
    return std::to_string(int64Value());
}

bool JSONNumber::operator==(const JSONNumber& other) const noexcept {
    const auto mine = exactInt64();
    const auto theirs = other.exactInt64();
    if (mine || theirs) return mine == theirs;
    const auto myLarge = exactUInt64();
    const auto theirLarge = other.exactUInt64();
    if (myLarge || theirLarge) return myLarge == theirLarge;
    // Neither is an integer that the integer types could hold, so both are doubles.
    return doubleValue() == other.doubleValue();
}

}  // namespace corvane
