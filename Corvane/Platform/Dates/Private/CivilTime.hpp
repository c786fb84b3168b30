#pragma once

#include <array>
#include <cstdint>

/// Days and seconds as a calendar on the wall has them, without any zone. Days are counted from 1970-01-01.
namespace corvane::civil {

inline constexpr std::int64_t secondsPerDay = 86'400;

/// The Gregorian calendar comes round after as many days, which are whole weeks.
inline constexpr std::int64_t daysPerCycle = 146'097;
inline constexpr std::int64_t yearsPerCycle = 400;

/// 1582-10-15; the day before was the 4th, of the Julian calendar.
inline constexpr std::int64_t firstGregorianDay = -141'427;

/// Instants further than this from 1970, in seconds, have no date: some 5.8 million years.
inline constexpr double lastInstant = 184'303'902'528'000.0;

/// A day by its names. Years are astronomical: 0 is 1 BC.
struct Day {
    std::int64_t year;
    unsigned month;
    unsigned day;

    bool operator==(const Day&) const = default;
};

/// False for not-a-number, too.
[[nodiscard]] constexpr bool isInstant(double seconds) noexcept {
    return seconds >= -lastInstant && seconds <= lastInstant;
}

/// Of an instant, the whole seconds; the fraction that is left is never negative.
[[nodiscard]] constexpr std::int64_t floorSeconds(double instant) noexcept {
    const auto truncated = static_cast<std::int64_t>(instant);
    return truncated - (static_cast<double>(truncated) > instant ? 1 : 0);
}

/// Rounds down. `divisor` is positive.
[[nodiscard]] constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) noexcept {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

[[nodiscard]] constexpr std::int64_t floorModulo(std::int64_t value, std::int64_t divisor) noexcept {
    return value - floorDivide(value, divisor) * divisor;
}

/// Sunday is 1.
[[nodiscard]] constexpr unsigned weekday(std::int64_t day) noexcept {
    return static_cast<unsigned>(floorModulo(day + 4, 7)) + 1;
}

namespace detail {

// Years are counted from March, which puts the leap day last. The multiplications stand for divisions by the number of
// days in a month and in a year: C. Neri and L. Schneider, "Euclidean affine functions and their application to
// calendar algorithms", 2022.

/// From the first of March of a year to 1970-01-01 of that count.
inline constexpr std::int64_t marchToEpoch = 719'468;
/// The Julian calendar was two days behind in the year 0.
inline constexpr std::int64_t julianLead = 2;

[[nodiscard]] constexpr Day dayOfMarchYear(std::int64_t yearFromMarch, std::uint32_t dayOfYear) noexcept {
    const std::uint32_t scaled = 2141 * dayOfYear + 197'913;
    const std::uint32_t month = scaled >> 16;
    const bool isNextYear = dayOfYear >= 306;
    return {yearFromMarch + (isNextYear ? 1 : 0), isNextYear ? month - 12 : month, (scaled & 0xffff) / 2141 + 1};
}

inline constexpr std::array<std::uint8_t, 13> monthLengths = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

[[nodiscard]] constexpr std::int64_t daysBeforeMonth(unsigned monthFromMarch) noexcept {
    return (979 * static_cast<std::int64_t>(monthFromMarch) - 2919) >> 5;
}

[[nodiscard]] constexpr Day gregorianDay(std::int64_t days) noexcept {
    const auto quarterDays = static_cast<std::uint64_t>(4 * (days + marchToEpoch) + 3);
    const std::uint64_t century = quarterDays / daysPerCycle;
    const auto quarterDaysOfCentury = static_cast<std::uint32_t>(quarterDays % daysPerCycle) | 3;
    const std::uint64_t product = std::uint64_t{2'939'745} * quarterDaysOfCentury;
    const std::uint64_t yearOfCentury = product >> 32;
    const std::uint32_t dayOfYear = static_cast<std::uint32_t>(product) / 2'939'745 / 4;
    return dayOfMarchYear(static_cast<std::int64_t>(100 * century + yearOfCentury), dayOfYear);
}

[[nodiscard]] constexpr Day julianDay(std::int64_t days) noexcept {
    const std::int64_t quarterDays = 4 * (days + marchToEpoch + julianLead) + 3;
    const std::int64_t year = floorDivide(quarterDays, 1461);
    return dayOfMarchYear(year, static_cast<std::uint32_t>((quarterDays - year * 1461) / 4));
}

}  // namespace detail

/// The names of a day within the range of dates.
[[nodiscard]] constexpr Day dayOf(std::int64_t days) noexcept {
    return days >= firstGregorianDay ? detail::gregorianDay(days) : detail::julianDay(days);
}

// What follows is asked about any month and year in turn, which processors cannot foresee: it does without branches.

/// The day with these names. The month is right and the year within seven million; the day may be any, and runs over.
/// The ten days that were left out in 1582 are taken for Julian ones.
[[nodiscard]] constexpr std::int64_t daysFrom(std::int64_t year, unsigned month, std::int64_t day) noexcept {
    const unsigned isBeforeMarch = month < 3 ? 1 : 0;
    const std::int64_t marchYear = year - isBeforeMarch;
    const std::int64_t sinceEpoch =
        detail::daysBeforeMonth(month + 12 * isBeforeMarch) + day - 1 - detail::marchToEpoch;
    if (marchYear >= 1582) {
        const auto positive = static_cast<std::uint64_t>(marchYear);
        const std::uint64_t century = positive / 100;
        const std::int64_t gregorian =
            static_cast<std::int64_t>(1461 * positive / 4 - century + century / 4) + sinceEpoch;
        if (gregorian >= firstGregorianDay) return gregorian;
    }
    return floorDivide(1461 * marchYear, 4) + sinceEpoch - detail::julianLead;
}

[[nodiscard]] constexpr bool isLeapYear(std::int64_t year) noexcept {
    const bool isFourth = (year & 3) == 0;
    const bool isCentury = year % 25 == 0;
    // Of those that four divides.
    const bool isFourthCentury = (year & 15) == 0;
    return static_cast<bool>(isFourth & (!isCentury | isFourthCentury | (year <= 1582)));
}

/// How many days the month, 1 to 12, has. October 1582 counts as if its ten days were not left out.
[[nodiscard]] constexpr unsigned daysInMonth(std::int64_t year, unsigned month) noexcept {
    return detail::monthLengths[month] + static_cast<unsigned>(month == 2) * static_cast<unsigned>(isLeapYear(year));
}

/// Whether there is such a day, which those that were left out in 1582 are not.
[[nodiscard]] constexpr bool isDay(std::int64_t year, unsigned month, unsigned day) noexcept {
    if (month - 1 > 11 || day - 1 >= daysInMonth(year, month)) return false;
    return year != 1582 || month != 10 || day < 5 || day > 14;
}

}  // namespace corvane::civil
