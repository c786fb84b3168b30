#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/CalendarUnits.hpp>
#include <Corvane/Platform/Dates/Locale.hpp>

namespace corvane {

/// Writes how long something takes.
///
///     const DateComponentsFormatter clock{.allowedUnits = CalendarUnit::minute | CalendarUnit::second};
///     clock.string(75);  // "1:15"
///
/// Constant operations are for any thread.
struct CORVANE_EXPORT DateComponentsFormatter {
    enum class UnitsStyle : std::uint8_t {
        /// Digits with colons between the units, two for every unit but the first: "1:02:05". The same in all locales.
        positional,
        /// "1h 2m 5s", in the locale's words, as are those that follow.
        abbreviated,
        /// "1 hr, 2 min, 5 sec"
        brief,
        /// "1 hour, 2 minutes, 5 seconds"
        full,
    };

    /// What becomes of units of which there are none. One unit always stays.
    enum class ZeroFormattingBehavior : std::uint8_t {
        /// Those before the first of which there are some are left out.
        dropLeading,
        /// Those after the last of which there are some are left out.
        dropTrailing,
        /// All are left out; not for the positional style, which would tell another time.
        dropAll,
        /// All stay.
        pad,
    };

    /// Those of year, month, weekOfYear, day, hour, minute and second that are written. The largest of them takes all
    /// that is more than it: 90 minutes where there are no hours.
    CalendarUnits allowedUnits = CalendarUnit::hour | CalendarUnit::minute | CalendarUnit::second;
    UnitsStyle unitsStyle = UnitsStyle::positional;
    ZeroFormattingBehavior zeroFormattingBehavior = ZeroFormattingBehavior::dropLeading;
    /// Absent: the device's.
    std::optional<Locale> locale{};

    /// The text of `seconds`, of which parts of the smallest unit are cut off. Months and years are those from the
    /// first of January 2001 on, days have 24 hours. A negative duration has a minus sign before its first unit. Absent
    /// when the number is not finite or makes millions of years, and when no unit is allowed.
    [[nodiscard]] std::optional<std::string> string(double seconds) const;
};

}  // namespace corvane
