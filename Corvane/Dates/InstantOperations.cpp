#include <chrono>

#include <Corvane/Dates/InstantOperations.hpp>
#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dispatch/Clock.hpp>

namespace corvane {

namespace {

DateComponents untilNow(CalendarUnit unit, Date date) {
    return Calendar().dateComponents(unit, date, Clock::current().now());
}

}  // namespace

std::optional<std::int64_t> secondsToNow(Date date) {
    return untilNow(CalendarUnit::second, date).second;
}

std::optional<std::int64_t> minutesToNow(Date date) {
    return untilNow(CalendarUnit::minute, date).minute;
}

std::optional<std::int64_t> hoursToNow(Date date) {
    return untilNow(CalendarUnit::hour, date).hour;
}

std::optional<std::int64_t> daysToNow(Date date) {
    return untilNow(CalendarUnit::day, date).day;
}

std::optional<std::int64_t> weeksToNow(Date date) {
    return untilNow(CalendarUnit::weekOfYear, date).weekOfYear;
}

std::optional<std::int64_t> monthsToNow(Date date) {
    return untilNow(CalendarUnit::month, date).month;
}

std::optional<std::int64_t> yearsToNow(Date date) {
    return untilNow(CalendarUnit::year, date).year;
}

Date startOfDay(Date date) {
    return Calendar().startOfDay(date);
}

Date startOfDayInUTC(Date date) {
    Calendar calendar = Calendar::gregorian();
    calendar.setTimeZone(TimeZone::utc());
    return calendar.startOfDay(date);
}

Date localDate(Date date) {
    return date + std::chrono::seconds(TimeZone::current().secondsFromGMT(date));
}

bool isOlderThan(Date date, double seconds) {
    return date < Clock::current().now() - std::chrono::duration<double>(seconds);
}

}  // namespace corvane
