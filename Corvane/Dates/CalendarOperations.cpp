#include <chrono>

#include <Corvane/Dates/CalendarOperations.hpp>

namespace corvane {

std::optional<std::int64_t> yearsBetweenDate(const Calendar& calendar, Date startDate, Date endDate) {
    return calendar.dateComponents(CalendarUnit::year, startDate, endDate).year;
}

std::int64_t numberOfDaysBetween(const Calendar& calendar, Date startDate, Date endDate) {
    // Counted at UTC: where clocks skip midnight a day starts late, and at the next midnight it would not be over.
    const TimeZone zone = calendar.timeZone();
    Calendar days = calendar;
    days.setTimeZone(TimeZone::utc());
    const auto start = [&](Date date) {
        return days.startOfDay(date + std::chrono::seconds(zone.secondsFromGMT(date)));
    };
    return days.dateComponents(CalendarUnit::day, start(startDate), start(endDate)).day.value_or(0);
}

}  // namespace corvane
