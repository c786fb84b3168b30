#pragma once

/// Conversions of second counts, in a namespace of their own because of their short names:
///
///     secondCounts::hour(2);     // 7200 seconds
///     secondCounts::to_ms(1.5);  // 1500 milliseconds
namespace corvane::secondCounts {

/// Seconds in smaller units.
[[nodiscard]] constexpr double to_ns(double seconds) noexcept {  // NOLINT(readability-identifier-naming)
    return seconds * 1e9;
}

[[nodiscard]] constexpr double to_us(double seconds) noexcept {  // NOLINT(readability-identifier-naming)
    return seconds * 1e6;
}

[[nodiscard]] constexpr double to_ms(double seconds) noexcept {  // NOLINT(readability-identifier-naming)
    return seconds * 1000;
}

/// Counts of larger units in seconds. A year has 365.25 days.
[[nodiscard]] constexpr double minute(double minutes) noexcept {
    return minutes * 60;
}

[[nodiscard]] constexpr double hour(double hours) noexcept {
    return hours * 3600;
}

[[nodiscard]] constexpr double day(double days) noexcept {
    return days * 86'400;
}

[[nodiscard]] constexpr double year(double years) noexcept {
    return years * (365.25 * 86'400);
}

/// Whether a number is not whole. True for not-a-number, false for the infinities.
[[nodiscard]] constexpr bool hasFractionalPart(double value) noexcept {
    // From 2^52 on, doubles are whole.
    constexpr double firstWhole = 0x1p52;
    if (value >= firstWhole || value <= -firstWhole) return false;
    return !(value == value) || value != static_cast<double>(static_cast<long long>(value));
}

}  // namespace corvane::secondCounts
