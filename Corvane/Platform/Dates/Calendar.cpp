#include <algorithm>
#include <cstdlib>
#include <limits>

#include <Corvane/Platform/Dates/Calendar.hpp>
#include <Corvane/Platform/Dates/Private/CivilTime.hpp>
#include <Corvane/Platform/Dates/Private/ZoneAccess.hpp>

namespace corvane {

namespace {

using Count = std::optional<std::int64_t>;

/// What clocks and calendars of a zone show at an instant.
struct Wall {
    std::int64_t day;
    std::int64_t second;
    double fraction;

    Wall(const TimeZone& zone, double instant) noexcept {
        const std::int64_t seconds = civil::floorSeconds(instant);
        const std::int64_t local = seconds + ZoneAccess::offset(zone, seconds);
        day = civil::floorDivide(local, civil::secondsPerDay);
        second = local - day * civil::secondsPerDay;
        fraction = instant - static_cast<double>(seconds);
    }
};

std::int64_t nanoseconds(double fraction) noexcept {
    return std::min(static_cast<std::int64_t>(fraction * 1e9), std::int64_t{999'999'999});
}

/// The instant of a clock time, when it has a date.
std::optional<double> instant(const TimeZone& zone, std::int64_t day, std::int64_t second, double fraction) noexcept {
    const std::int64_t local = day * civil::secondsPerDay + second;
    const double seconds = static_cast<double>(ZoneAccess::resolve(zone, local).seconds) + fraction;
    return civil::isInstant(seconds) ? std::optional(seconds) : std::nullopt;
}

struct Week {
    std::int64_t year;
    std::int64_t number;
};

/// The first day of the week that is a year's first.
std::int64_t firstWeek(std::int64_t year, int firstWeekday, int minimumDays) noexcept {
    const std::int64_t newYear = civil::daysFrom(year, 1, 1);
    const std::int64_t intoWeek = civil::floorModulo(static_cast<int>(civil::weekday(newYear)) - firstWeekday, 7);
    const std::int64_t start = newYear - intoWeek;
    return 7 - intoWeek >= minimumDays ? start : start + 7;
}

Week weekOf(std::int64_t day, std::int64_t year, int firstWeekday, int minimumDays) noexcept {
    for (std::int64_t candidate = year + 1;; --candidate) {
        const std::int64_t start = firstWeek(candidate, firstWeekday, minimumDays);
        if (day >= start) return {candidate, (day - start) / 7 + 1};
    }
}

/// `day` moved by months; a day that the month lacks becomes its last. Absent when that is too far away.
std::optional<std::int64_t> addMonths(std::int64_t day, std::int64_t months) noexcept {
    constexpr std::int64_t most = 200'000'000;
    if (months < -most || months > most) return std::nullopt;
    const civil::Day names = civil::dayOf(day);
    const std::int64_t month = names.year * 12 + names.month - 1 + months;
    const std::int64_t year = civil::floorDivide(month, 12);
    const auto monthOfYear = static_cast<unsigned>(month - year * 12) + 1;
    if (year < -6'000'000 || year > 6'000'000) return std::nullopt;
    return civil::daysFrom(year, monthOfYear, std::min(names.day, civil::daysInMonth(year, monthOfYear)));
}

/// How many seconds a unit of plain time has; zero for other units. A nanosecond counts as a part of a second, which
/// divides exactly.
struct PlainTime {
    double seconds = 0;
    double parts = 1;
};

PlainTime plainTime(CalendarUnit unit) noexcept {
    switch (unit) {
        case CalendarUnit::hour:
            return {.seconds = 3600};
        case CalendarUnit::minute:
            return {.seconds = 60};
        case CalendarUnit::second:
            return {.seconds = 1};
        case CalendarUnit::nanosecond:
            return {.seconds = 1, .parts = 1e9};
        default:
            return {};
    }
}

std::optional<double> add(const TimeZone& zone, CalendarUnit unit, std::int64_t count, double from) noexcept {
    if (const PlainTime plain = plainTime(unit); plain.seconds > 0) {
        const double to = from + static_cast<double>(count) * plain.seconds / plain.parts;
        return civil::isInstant(to) ? std::optional(to) : std::nullopt;
    }
    const Wall wall(zone, from);
    constexpr std::int64_t mostDays = 5'000'000'000;
    std::optional<std::int64_t> day;
    if (unit == CalendarUnit::year || unit == CalendarUnit::month) {
        const std::int64_t months = unit == CalendarUnit::year ? 12 : 1;
        day = std::abs(count) > mostDays ? std::nullopt : addMonths(wall.day, count * months);
    } else if (std::abs(count) <= mostDays) {
        day = wall.day + count * (unit == CalendarUnit::weekOfYear ? 7 : 1);
    }
    return day ? instant(zone, *day, wall.second, wall.fraction) : std::nullopt;
}

/// How many units fit between two instants. `add` grows with the count, so an estimate needs few corrections.
std::int64_t fit(const TimeZone& zone, CalendarUnit unit, double from, double to) noexcept {
    if (const PlainTime plain = plainTime(unit); plain.seconds > 0)
        return static_cast<std::int64_t>(std::clamp((to - from) * plain.parts / plain.seconds, -9e18, 9e18));
    double days = 1;
    if (unit == CalendarUnit::weekOfYear) days = 7;
    if (unit == CalendarUnit::month) days = 30.436875;
    if (unit == CalendarUnit::year) days = 365.2425;
    auto count = static_cast<std::int64_t>((to - from) / (days * static_cast<double>(civil::secondsPerDay)));
    const int direction = to < from ? -1 : 1;
    const auto isWithin = [&](std::int64_t units) {
        const auto reached = add(zone, unit, units, from);
        return reached && (direction > 0 ? *reached <= to : *reached >= to);
    };
    while (count != 0 && !isWithin(count))
        count -= direction;
    while (isWithin(count + direction))
        count += direction;
    return count;
}

}  // namespace

const Calendar& Calendar::gregorian() noexcept {
    static const Calendar calendar;
    return calendar;
}

void Calendar::setFirstWeekday(int weekday) noexcept {
    if (weekday >= 1 && weekday <= 7) firstWeekday_ = weekday;
}

void Calendar::setMinimumDaysInFirstWeek(int days) noexcept {
    if (days >= 1 && days <= 7) minimumDaysInFirstWeek_ = days;
}

DateComponents Calendar::dateComponents(CalendarUnits units, Date date) const {
    DateComponents parts;
    const double seconds = date.time_since_epoch().count();
    if (!civil::isInstant(seconds)) return parts;
    const Wall wall(timeZone(), seconds);
    const civil::Day names = civil::dayOf(wall.day);
    const auto set = [&](CalendarUnit unit, Count& part, std::int64_t value) {
        if (units.contains(unit)) part = value;
    };
    set(CalendarUnit::era, parts.era, names.year > 0 ? 1 : 0);
    set(CalendarUnit::year, parts.year, names.year > 0 ? names.year : 1 - names.year);
    set(CalendarUnit::month, parts.month, names.month);
    set(CalendarUnit::weekday, parts.weekday, civil::weekday(wall.day));
    set(CalendarUnit::day, parts.day, names.day);
    set(CalendarUnit::hour, parts.hour, wall.second / 3600);
    set(CalendarUnit::minute, parts.minute, wall.second / 60 % 60);
    set(CalendarUnit::second, parts.second, wall.second % 60);
    set(CalendarUnit::nanosecond, parts.nanosecond, nanoseconds(wall.fraction));
    if (units.contains(CalendarUnit::dayOfYear)) parts.dayOfYear = wall.day - civil::daysFrom(names.year, 1, 1) + 1;
    if (units.contains(CalendarUnit::weekOfYear) || units.contains(CalendarUnit::yearForWeekOfYear)) {
        const Week week = weekOf(wall.day, names.year, firstWeekday_, minimumDaysInFirstWeek_);
        set(CalendarUnit::weekOfYear, parts.weekOfYear, week.number);
        set(CalendarUnit::yearForWeekOfYear, parts.yearForWeekOfYear, week.year);
    }
    return parts;
}

DateComponents Calendar::dateComponents(CalendarUnits units, Date from, Date to) const {
    DateComponents parts;
    double start = from.time_since_epoch().count();
    const double end = to.time_since_epoch().count();
    if (!civil::isInstant(start) || !civil::isInstant(end)) return parts;
    const TimeZone zone = timeZone();
    const auto take = [&](CalendarUnit unit, Count& part) {
        if (!units.contains(unit)) return;
        part = fit(zone, unit, start, end);
        start = add(zone, unit, *part, start).value_or(end);
    };
    take(CalendarUnit::year, parts.year);
    take(CalendarUnit::month, parts.month);
    take(CalendarUnit::weekOfYear, parts.weekOfYear);
    take(CalendarUnit::day, parts.day);
    take(CalendarUnit::hour, parts.hour);
    take(CalendarUnit::minute, parts.minute);
    take(CalendarUnit::second, parts.second);
    take(CalendarUnit::nanosecond, parts.nanosecond);
    return parts;
}

std::optional<Date> Calendar::date(const DateComponents& components) const {
    // Wide enough for any date, narrow enough for any sum.
    constexpr std::int64_t most = 1'000'000'000'000'000;
    for (const Count& part : {components.month, components.day, components.hour, components.minute, components.second,
                              components.nanosecond, components.year}) {
        if (part && (*part < -most || *part > most)) return std::nullopt;
    }
    const std::int64_t yearOfEra = components.year.value_or(1);
    const std::int64_t months = components.month.value_or(1) - 1;
    const std::int64_t years = civil::floorDivide(months, 12);
    const std::int64_t year = (components.era == 0 ? 1 - yearOfEra : yearOfEra) + years;
    if (year < -6'000'000 || year > 6'000'000) return std::nullopt;

    const std::int64_t time =
        components.hour.value_or(0) * 3600 + components.minute.value_or(0) * 60 + components.second.value_or(0);
    const std::int64_t day =
        civil::daysFrom(year, static_cast<unsigned>(months - years * 12) + 1, components.day.value_or(1));
    // What is this far away has no date, and its seconds would not fit a number.
    if (std::abs(day) > 10'000'000'000'000) return std::nullopt;
    const auto seconds = instant(timeZone(), day, time, static_cast<double>(components.nanosecond.value_or(0)) * 1e-9);
    return seconds.transform([](double value) { return Date(std::chrono::duration<double>(value)); });
}

std::optional<Date> Calendar::dateByAdding(CalendarUnit unit, std::int64_t count, Date date) const {
    const double seconds = date.time_since_epoch().count();
    switch (unit) {
        case CalendarUnit::era:
        case CalendarUnit::yearForWeekOfYear:
        case CalendarUnit::weekday:
        case CalendarUnit::dayOfYear:
            return std::nullopt;
        default:
            break;
    }
    if (!civil::isInstant(seconds) || count == std::numeric_limits<std::int64_t>::min()) return std::nullopt;
    return add(timeZone(), unit, count, seconds).transform([](double value) {
        return Date(std::chrono::duration<double>(value));
    });
}

Date Calendar::startOfDay(Date date) const {
    const double seconds = date.time_since_epoch().count();
    if (!civil::isInstant(seconds)) return date;
    const TimeZone zone = timeZone();
    const auto midnight = ZoneAccess::resolve(zone, Wall(zone, seconds).day * civil::secondsPerDay);
    const std::int64_t start = midnight.isSkipped ? midnight.transition : midnight.seconds;
    return Date(std::chrono::duration<double>(static_cast<double>(start)));
}

bool Calendar::isDateInSameDayAs(Date date, Date other) const {
    return startOfDay(date) == startOfDay(other);
}

}  // namespace corvane
