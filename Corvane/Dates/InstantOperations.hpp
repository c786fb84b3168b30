#pragma once

#include <cstdint>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Date.hpp>

namespace corvane {

// The difference of two instants in seconds is `(left - right).count()`, which `Date` brings with it.

/// How many whole units lie between `date` and now, on the clock in force: positive for the past, negative for the
/// future, rounded towards zero. Days and more are those of the Gregorian calendar in the current zone. Absent for what
/// has no date. Any thread.
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> secondsToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> minutesToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> hoursToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> daysToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> weeksToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> monthsToNow(Date date);
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> yearsToNow(Date date);

/// The first moment of the instant's day in the current zone; any thread.
[[nodiscard]] CORVANE_EXPORT Date startOfDay(Date date);

/// The first moment of the instant's day at UTC; any thread.
[[nodiscard]] CORVANE_EXPORT Date startOfDayInUTC(Date date);

/// The instant shifted by the current zone's offset from GMT at it, so that a formatter at UTC shows local time. For
/// showing alone: it is another instant. Any thread.
[[nodiscard]] CORVANE_EXPORT Date localDate(Date date);

/// Whether the instant is more than `seconds` ago on the clock in force. Any thread.
[[nodiscard]] CORVANE_EXPORT bool isOlderThan(Date date, double seconds);

}  // namespace corvane
