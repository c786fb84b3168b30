#include <Corvane/Dates/CalendarOperations.hpp>

namespace corvane {

std::optional<std::int64_t> yearsBetweenDate(const Calendar& calendar, Date startDate, Date endDate) {
    return calendar.dateComponents(CalendarUnit::year, startDate, endDate).year;
}

std::int64_t numberOfDaysBetween(const Calendar& calendar, Date startDate, Date endDate) {
    const Date start = calendar.startOfDay(startDate);
    const Date end = calendar.startOfDay(endDate);
    return calendar.dateComponents(CalendarUnit::day, start, end).day.value_or(0);
}

}  // namespace corvane
