#pragma once

#include <cstdint>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Calendar.hpp>

namespace corvane {

/// How many whole years of `calendar` lie between two instants; negative when the end is the earlier one. Absent when
/// one of them has no date. Any thread.
[[nodiscard]] CORVANE_EXPORT std::optional<std::int64_t> yearsBetweenDate(const Calendar& calendar, Date startDate,
                                                                          Date endDate);

/// How many days of `calendar` one instant's day is before that of another; negative when the end is the earlier one,
/// and 0 when one of them has no date. Any thread.
[[nodiscard]] CORVANE_EXPORT std::int64_t numberOfDaysBetween(const Calendar& calendar, Date startDate, Date endDate);

}  // namespace corvane
