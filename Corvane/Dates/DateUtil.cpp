#include <chrono>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Dates/InstantOperations.hpp>
#include <Corvane/Decoding/IntValue.hpp>
#include <Corvane/Platform/Dates/DateComponentsFormatter.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Platform/FatalError.hpp>
#include <Corvane/Platform/Text/LetterCase.hpp>

namespace corvane {

namespace {

using enum CalendarUnit;

constexpr CalendarUnits dateUnits = year | month | day;
constexpr CalendarUnits timeUnits = hour | minute | second;

constexpr std::string_view dateTimePattern = "yyyyMMddHHmmss";

Calendar utcCalendar() {
    Calendar calendar = Calendar::gregorian();
    calendar.setTimeZone(TimeZone::utc());
    return calendar;
}

/// A formatter of the fixed English texts. Without a zone it follows the device.
DateFormatter englishFormatter(std::string_view pattern, std::optional<TimeZone> zone) {
    DateFormatter formatter(pattern, Locale("en_US"), zone);
    formatter.setCalendar(utcCalendar());
    return formatter;
}

/// The digits of a date-time number, each group with the number's sign.
DateComponents unpacked(std::int64_t number) noexcept {
    return {.year = number / 10'000'000'000,
            .month = number / 100'000'000 % 100,
            .day = number / 1'000'000 % 100,
            .hour = number / 10'000 % 100,
            .minute = number / 100 % 100,
            .second = number % 100};
}

std::optional<std::int64_t> packedDate(const DateComponents& parts) noexcept {
    if (!parts.year || !parts.month || !parts.day) return std::nullopt;
    return *parts.year * 10'000 + *parts.month * 100 + *parts.day;
}

std::optional<std::int64_t> packedTime(const DateComponents& parts) noexcept {
    if (!parts.hour || !parts.minute || !parts.second) return std::nullopt;
    return *parts.hour * 10'000 + *parts.minute * 100 + *parts.second;
}

/// A date-time number moved by the seconds that `shift` makes of its instant; 0 when it cannot be read.
template <class Shift>
std::int64_t moved(const DateFormatter& formatter, std::int64_t timestamp, Shift shift) {
    const auto date = formatter.date(std::to_string(timestamp));
    if (!date) return 0;
    return intValue(formatter.string(*date + std::chrono::seconds(shift(*date)))).value_or(0);
}

}  // namespace

DateUtil::DateUtil()
    : calendar_(utcCalendar()),
      dateTimeFormatter_(englishFormatter(dateTimePattern, TimeZone::utc())),
      dateOnlyFormatter_(englishFormatter("yyyyMMdd", TimeZone::utc())),
      dateOnlySeparatedFormatter_(englishFormatter("dd.MM.yyyy", TimeZone::utc())),
      localShortDateFormatter_(englishFormatter("d MMM", std::nullopt)),
      longDateTimeFormatter_(englishFormatter("H:mm, d MMMM yyyy", TimeZone::utc())),
      mediumDateFormatter_(englishFormatter("MMM d, yyyy", TimeZone::utc())),
      timeOnlyFormatter_(englishFormatter("HH:mm", std::nullopt)),
      yearOnlyFormatter_(englishFormatter("yyyy", std::nullopt)),
      durationTimeFormatter_("m:ss") {}

const std::shared_ptr<DateUtil>& DateUtil::sharedInstance() {
    static const auto* const shared = new std::shared_ptr<DateUtil>(std::make_shared<DateUtil>());
    return *shared;
}

double DateUtil::now() {
    return Clock::current().now().time_since_epoch().count();
}

std::optional<Date> DateUtil::getDateTime(std::optional<std::string_view> text) const {
    return dateTimeFormatter_.date(text);
}

std::optional<Date> DateUtil::formatDate(std::string_view text) const {
    return dateOnlyFormatter_.date(text);
}

std::optional<Date> DateUtil::formatSeparatedDate(std::string_view text) const {
    return dateOnlySeparatedFormatter_.date(text);
}

std::string DateUtil::formatDateTime(Date date) const {
    return dateTimeFormatter_.string(date);
}

std::string DateUtil::formatDate(Date date) const {
    return dateOnlyFormatter_.string(date);
}

std::string DateUtil::formatLongDateTime(Date date) const {
    return longDateTimeFormatter_.string(date);
}

std::string DateUtil::formatTimeOnly(Date date) const {
    return timeOnlyFormatter_.string(date);
}

std::string DateUtil::formatYearOnly(Date date) const {
    return yearOnlyFormatter_.string(date);
}

std::string DateUtil::formatDuration(double seconds) const {
    return durationTimeFormatter_.string(Date(std::chrono::duration<double>(seconds)));
}

std::int64_t DateUtil::dateTimestamp(Date date, bool includeTime) const {
    const auto parts = calendar().dateComponents(dateUnits | timeUnits, date);
    const auto packed = packedDate(parts);
    if (!packed) fatalError("There is no timestamp of an instant without a date");
    // Years have seven digits at most, so that nothing overflows.
    return *packed * 1'000'000 + (includeTime ? packedTime(parts).value_or(0) : 0);
}

std::int64_t DateUtil::currentUtcDateTimestamp() const {
    return dateTimestamp(Clock::current().now(), true);
}

std::int64_t DateUtil::currentLocalDateTimestamp() const {
    return dateTimestamp(localDate(Clock::current().now()), false);
}

std::int64_t DateUtil::currentLocalShortDateTimestamp() const {
    return currentLocalDateTimestamp() / 1'000'000;
}

Date DateUtil::localDateFrom(Date utcDate) const {
    return localDate(utcDate);
}

std::int64_t DateUtil::utcTimestampFromUtcDate(Date utcDate) const {
    return dateTimestamp(utcDate, true);
}

std::optional<std::int64_t> DateUtil::utcTimestampFromUtcDate(std::optional<Date> maybeUtcDate) const {
    return maybeUtcDate.transform([&](Date utcDate) { return utcTimestampFromUtcDate(utcDate); });
}

std::optional<std::int64_t> DateUtil::dateShortTimestampFromDate(Date date) const {
    return packedDate(calendar().dateComponents(dateUnits, date));
}

std::string DateUtil::formatTrackingDateFromShortTimestamp(std::int64_t timestamp) const {
    return fmt::format(FMT_COMPILE("{:04}-{:02}-{:02}"), timestamp / 10'000, timestamp / 100 % 100, timestamp % 100);
}

std::string DateUtil::formatTrackingDateFromScheduledStartDateNumber(std::int64_t number) const {
    return formatTrackingDateFromShortTimestamp(number / 1'000'000);
}

std::optional<std::string> DateUtil::formatTrackingDateFromScheduledStartDateNumber(
    std::optional<std::int64_t> number) const {
    return number.transform(
        [&](std::int64_t present) { return formatTrackingDateFromScheduledStartDateNumber(present); });
}

std::optional<double> DateUtil::getCurrentTime(Date date) const {
    return packedTime(calendar().dateComponents(timeUnits, date)).transform([](std::int64_t time) {
        return static_cast<double>(time);
    });
}

std::int64_t DateUtil::utcTimestampToLocal(std::int64_t timestamp) const {
    return moved(dateTimeFormatter_, timestamp, [](Date) { return TimeZone::system().secondsFromGMT(); });
}

std::int64_t DateUtil::localTimestampToUtc(std::int64_t timestamp) const {
    return moved(dateTimeFormatter_, timestamp, [](Date) { return -TimeZone::system().secondsFromGMT(); });
}

std::int64_t DateUtil::utcTimestampToCorrectedLocal(std::int64_t timestamp) const {
    return moved(dateTimeFormatter_, timestamp, [](Date date) {
        const TimeZone current = TimeZone::current();
        return TimeZone::system().secondsFromGMT() + current.daylightSavingTimeOffset(date) -
               current.daylightSavingTimeOffset(Clock::current().now());
    });
}

BarTitles DateUtil::barTitlesForDate(Date date, const Locale& locale) const {
    DateFormatter formatter("EEE", locale, TimeZone::utc());
    BarTitles titles{.dayOfWeek = uppercased(formatter.string(date)), .date = {}};
    formatter.setDateFormat("dd MMM");
    titles.date = uppercased(formatter.string(date));
    return titles;
}

std::optional<Date> DateUtil::getFormattedDate(std::optional<std::int64_t> number) const {
    if (!number) return std::nullopt;
    return DateFormatter(dateTimePattern, Locale("en_US_POSIX")).date(std::to_string(*number));
}

std::string DateUtil::utcDateString(Date date) const {
    return DateFormatter("yyyy-MM-dd HH:mm:ss").string(date);
}

std::optional<Date> DateUtil::dateFromNum(std::int64_t number) const {
    return Calendar().date(unpacked(number)).transform(localDate);
}

std::optional<std::string> DateUtil::getDurationString(std::optional<std::int64_t> seconds) const {
    if (!seconds) return std::nullopt;
    DateComponentsFormatter formatter{.allowedUnits = minute | second,
                                      .zeroFormattingBehavior = DateComponentsFormatter::ZeroFormattingBehavior::pad};
    if (*seconds >= 3600) formatter.allowedUnits |= hour;
    return formatter.string(static_cast<double>(*seconds));
}

}  // namespace corvane
