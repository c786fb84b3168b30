#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <Corvane/Core/Atomic.hpp>
#include <Corvane/Export.hpp>
#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dates/Date.hpp>
#include <Corvane/Platform/Dates/DateFormatter.hpp>
#include <Corvane/Platform/Dates/Locale.hpp>

namespace corvane {

/// What a page's bar shows of a date, in capitals.
struct BarTitles {
    /// "SAT"
    std::string dayOfWeek;
    /// "16 MAR"
    std::string date;

    [[nodiscard]] bool operator==(const BarTitles&) const = default;
};

/// Turns instants into the texts and numbers of the sports data, and back. Feeds write moments as packed decimal
/// numbers, always at UTC; screens show them in fixed English forms, some at UTC and some in the device's zone.
///
/// Numbers: a date-time number is 20240315193000, a date-time number without time 20240315000000, a short date number
/// 20240315, a time-of-day number 193000.0. The device's zone is `TimeZone::current()`, which an application may
/// override, except where the operating system's, `TimeZone::system()`, is told; now is that of the clock in force.
///
///     const auto kickOff = DateUtil::sharedInstance()->getDateTime(feed.kickOff);
///
/// Any thread. The formatters are made once and never change; where an operation makes one of its own, its settings are
/// none of theirs. A number or a text that cannot be read gives none, or 0 where a number is asked for.
class CORVANE_EXPORT DateUtil {
  public:
    DateUtil();

    DateUtil(const DateUtil&) = delete;
    DateUtil& operator=(const DateUtil&) = delete;

    /// The one that is shared, made on first use.
    [[nodiscard]] static const std::shared_ptr<DateUtil>& sharedInstance();

    /// Seconds since 1970-01-01T00:00:00Z, with a fraction.
    [[nodiscard]] static double now();

    /// The calendar that instants are taken apart with: Gregorian, at UTC. Changing it leaves the formatters alone.
    [[nodiscard]] Calendar calendar() const { return calendar_.wrappedValue(); }

    void setCalendar(const Calendar& calendar) { calendar_.setWrappedValue(calendar); }

    /// "yyyyMMddHHmmss" at UTC.
    [[nodiscard]] const DateFormatter& dateTimeFormatter() const noexcept { return dateTimeFormatter_; }

    /// "yyyyMMdd" at UTC.
    [[nodiscard]] const DateFormatter& dateOnlyFormatter() const noexcept { return dateOnlyFormatter_; }

    /// "dd.MM.yyyy" at UTC.
    [[nodiscard]] const DateFormatter& dateOnlySeparatedFormatter() const noexcept {
        return dateOnlySeparatedFormatter_;
    }

    /// "d MMM" in the device's zone.
    [[nodiscard]] const DateFormatter& localShortDateFormatter() const noexcept { return localShortDateFormatter_; }

    /// "H:mm, d MMMM yyyy" at UTC.
    [[nodiscard]] const DateFormatter& longDateTimeFormatter() const noexcept { return longDateTimeFormatter_; }

    /// "MMM d, yyyy" at UTC.
    [[nodiscard]] const DateFormatter& mediumDateFormatter() const noexcept { return mediumDateFormatter_; }

    /// "HH:mm" in the device's zone.
    [[nodiscard]] const DateFormatter& timeOnlyFormatter() const noexcept { return timeOnlyFormatter_; }

    /// "yyyy" in the device's zone.
    [[nodiscard]] const DateFormatter& yearOnlyFormatter() const noexcept { return yearOnlyFormatter_; }

    /// "m:ss" in the device's zone, locale and calendar.
    [[nodiscard]] const DateFormatter& durationTimeFormatter() const noexcept { return durationTimeFormatter_; }

    /// Texts to instants, at UTC: "20240315193000", "20240315", "15.03.2024".
    [[nodiscard]] std::optional<Date> getDateTime(std::optional<std::string_view> text) const;
    [[nodiscard]] std::optional<Date> formatDate(std::string_view text) const;
    [[nodiscard]] std::optional<Date> formatSeparatedDate(std::string_view text) const;

    /// Instants to texts, at UTC: "20240315193000", "20240315", "19:30, 15 March 2024".
    [[nodiscard]] std::string formatDateTime(Date date) const;
    [[nodiscard]] std::string formatDate(Date date) const;
    [[nodiscard]] std::string formatLongDateTime(Date date) const;

    /// Instants to texts, in the device's zone: "20:30", "2024".
    [[nodiscard]] std::string formatTimeOnly(Date date) const;
    [[nodiscard]] std::string formatYearOnly(Date date) const;

    /// Minutes and seconds of a duration, "2:05". Hours are dropped, and minutes are those that the device's zone shows
    /// that long after 1970 began at UTC, so that an offset of part of an hour shifts them.
    [[nodiscard]] std::string formatDuration(double seconds) const;

    /// The date-time number of an instant, in the calendar's zone. An instant without a date is a programming error
    /// and stops the process.
    [[nodiscard]] std::int64_t dateTimestamp(Date date, bool includeTime) const;

    /// The date-time number of now at UTC.
    [[nodiscard]] std::int64_t currentUtcDateTimestamp() const;

    /// The date-time number without time, and the short date number, of today in the device's zone.
    [[nodiscard]] std::int64_t currentLocalDateTimestamp() const;
    [[nodiscard]] std::int64_t currentLocalShortDateTimestamp() const;

    /// The instant shifted so that its fields at UTC show the device's local time. For the formatters at UTC alone.
    [[nodiscard]] Date localDateFrom(Date utcDate) const;

    /// As `dateTimestamp` with the time.
    [[nodiscard]] std::int64_t utcTimestampFromUtcDate(Date utcDate) const;
    [[nodiscard]] std::optional<std::int64_t> utcTimestampFromUtcDate(std::optional<Date> maybeUtcDate) const;

    /// The short date number, in the calendar's zone; absent for what has no date.
    [[nodiscard]] std::optional<std::int64_t> dateShortTimestampFromDate(Date date) const;

    /// "2024-03-15" of a short date number, and of a date-time number. Digits are taken as they stand.
    [[nodiscard]] std::string formatTrackingDateFromShortTimestamp(std::int64_t timestamp) const;
    [[nodiscard]] std::string formatTrackingDateFromScheduledStartDateNumber(std::int64_t number) const;
    [[nodiscard]] std::optional<std::string> formatTrackingDateFromScheduledStartDateNumber(
        std::optional<std::int64_t> number) const;

    /// The time-of-day number, in the calendar's zone; absent for what has no date.
    [[nodiscard]] std::optional<double> getCurrentTime(Date date) const;

    /// Date-time numbers from UTC to the operating system's zone and back, by its offset as it is now, not as it was
    /// then. 0 when the number is none of fourteen digits or no date.
    [[nodiscard]] std::int64_t utcTimestampToLocal(std::int64_t timestamp) const;
    [[nodiscard]] std::int64_t localTimestampToUtc(std::int64_t timestamp) const;

    /// As `utcTimestampToLocal`, corrected for a daylight-saving state that is another one then than now. Deliberately,
    /// the offset is the operating system's and the correction that of the current zone.
    [[nodiscard]] std::int64_t utcTimestampToCorrectedLocal(std::int64_t timestamp) const;

    /// The names of the day at UTC, by the locale's customs and in capitals.
    [[nodiscard]] BarTitles barTitlesForDate(Date date, const Locale& locale) const;

    /// The instant that a date-time number means in the device's zone, unlike `getDateTime`, which reads it at UTC.
    [[nodiscard]] std::optional<Date> getFormattedDate(std::optional<std::int64_t> number) const;

    /// "2024-03-15 20:30:00", deliberately in the device's zone and locale.
    [[nodiscard]] std::string utcDateString(Date date) const;

    /// The instant of a date-time number in the device's zone, shifted by that zone's offset, so that its fields at UTC
    /// are those of the number. Parts that are too large run over. Absent when there is no such date.
    [[nodiscard]] std::optional<Date> dateFromNum(std::int64_t number) const;

    /// "0:05", "59:59", "1:02:05": with hours from 3,600 seconds on.
    [[nodiscard]] std::optional<std::string> getDurationString(std::optional<std::int64_t> seconds) const;

  private:
    Atomic<Calendar> calendar_;
    DateFormatter dateTimeFormatter_;
    DateFormatter dateOnlyFormatter_;
    DateFormatter dateOnlySeparatedFormatter_;
    DateFormatter localShortDateFormatter_;
    DateFormatter longDateTimeFormatter_;
    DateFormatter mediumDateFormatter_;
    DateFormatter timeOnlyFormatter_;
    DateFormatter yearOnlyFormatter_;
    DateFormatter durationTimeFormatter_;
};

}  // namespace corvane
