#pragma once

#include <cstdint>
#include <optional>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/CalendarUnits.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Dates/DateComponents.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

namespace corvane {

/// The Gregorian calendar in a time zone; before 1582-10-15, the Julian one, as history had it.
///
///     const auto parts = Calendar(zone).dateComponents(CalendarUnit::day | CalendarUnit::month, kickOff);
///
/// Dates reach 5.8 million years either way; beyond, and for not-a-number, there is no date, and so there are no
/// components. Of a local time that comes twice, the first is meant; one that is skipped is moved on by as much as is
/// skipped (RFC 5545, section 3.3.5). A small value, free to copy; its constant operations are for any thread.
class CORVANE_EXPORT Calendar {
  public:
    /// A calendar in the current zone, whichever that is at each operation. Weeks begin on Sunday, and the first week
    /// is the one that holds the first of January.
    Calendar() noexcept = default;

    explicit Calendar(TimeZone zone) noexcept : zone_(zone) {}

    /// The calendar that all of the process shares, in the current zone.
    [[nodiscard]] static const Calendar& gregorian() noexcept;

    [[nodiscard]] TimeZone timeZone() const { return zone_ ? *zone_ : TimeZone::current(); }

    /// Without a zone, the calendar follows the current one again.
    void setTimeZone(std::optional<TimeZone> zone) noexcept { zone_ = zone; }

    /// The weekday that weeks begin with, from 1 for Sunday to 7; other numbers leave it as it is.
    [[nodiscard]] int firstWeekday() const noexcept { return firstWeekday_; }

    void setFirstWeekday(int weekday) noexcept;

    /// How many days of the year its first week has at least, 1 to 7 (ISO 8601 has 4, and weeks from Monday).
    [[nodiscard]] int minimumDaysInFirstWeek() const noexcept { return minimumDaysInFirstWeek_; }

    void setMinimumDaysInFirstWeek(int days) noexcept;

    /// The parts of `date` that are asked for.
    [[nodiscard]] DateComponents dateComponents(CalendarUnits units, Date date) const;

    /// How far it is from one instant to another: of the largest unit as many as fit, of the next as many as fit into
    /// the rest, and so on. Whole units, rounded towards zero, none of them positive when `to` is the earlier one.
    /// Months and years of a day that the month lacks end on its last day. Only years, months, weeks, days, hours,
    /// minutes, seconds and nanoseconds are counted.
    [[nodiscard]] DateComponents dateComponents(CalendarUnits units, Date from, Date to) const;

    /// The instant with these parts. What is absent is the first of its kind, in the year 1 of our era. Parts may run
    /// over (the 30th of February is in March, the month 0 is December, and the year 0 is 1 BC). Parts of weeks and
    /// the day of the year are passed over. Absent when there is no such date.
    [[nodiscard]] std::optional<Date> date(const DateComponents& components) const;

    /// The instant `count` units later; earlier when it is negative. Units of a day and more keep the time on the
    /// clock, smaller ones are plain time. Absent for other units and when there is no such date.
    [[nodiscard]] std::optional<Date> dateByAdding(CalendarUnit unit, std::int64_t count, Date date) const;

    /// The first moment of the day: midnight, or later where the clocks skip it. What has no date is left as it is.
    [[nodiscard]] Date startOfDay(Date date) const;

    [[nodiscard]] bool isDateInSameDayAs(Date date, Date other) const;

    [[nodiscard]] bool operator==(const Calendar&) const noexcept = default;

  private:
    std::optional<TimeZone> zone_;
    int firstWeekday_ = 1;
    int minimumDaysInFirstWeek_ = 1;
};

}  // namespace corvane
