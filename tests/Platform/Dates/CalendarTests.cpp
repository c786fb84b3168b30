#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/Calendar.hpp>

namespace corvane {

using enum CalendarUnit;

namespace {

Calendar calendarOf(std::string_view zone) {
    return Calendar(*TimeZone::named(zone));
}

const Calendar utc(TimeZone::utc());

Date date(const Calendar& calendar, std::int64_t year, int month, int day, int hour = 0, int minute = 0,
          int second = 0) {
    return *calendar.date({.year = year, .month = month, .day = day, .hour = hour, .minute = minute, .second = second});
}

double seconds(std::optional<Date> date) {
    return date ? date->time_since_epoch().count() : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

TEST(Calendar, TakesDatesApart) {
    const auto all = era | year | month | weekOfYear | yearForWeekOfYear | weekday | dayOfYear | day | hour | minute |
                     second | nanosecond;
    const Date date(std::chrono::duration<double>(1'704'067'199.5));
    EXPECT_EQ(utc.dateComponents(all, date), (DateComponents{.era = 1,
                                                             .year = 2023,
                                                             .month = 12,
                                                             .weekOfYear = 1,
                                                             .yearForWeekOfYear = 2024,
                                                             .weekday = 1,
                                                             .dayOfYear = 365,
                                                             .day = 31,
                                                             .hour = 23,
                                                             .minute = 59,
                                                             .second = 59,
                                                             .nanosecond = 500'000'000}));
    Calendar iso = utc;
    iso.setFirstWeekday(2);
    iso.setMinimumDaysInFirstWeek(4);
    EXPECT_EQ(iso.dateComponents(weekOfYear | yearForWeekOfYear, date),
              (DateComponents{.weekOfYear = 52, .yearForWeekOfYear = 2023}));
    for (const double none : {std::numeric_limits<double>::quiet_NaN(), 1e15, -1e300}) {
        const Date impossible{std::chrono::duration<double>(none)};
        EXPECT_EQ(utc.dateComponents(all, impossible), DateComponents());
        EXPECT_EQ(utc.dateComponents(all, date, impossible), DateComponents());
    }
}

TEST(Calendar, PutsDatesTogether) {
    struct Row {
        DateComponents parts;
        double expected;
    };

    const Row rows[] = {
        {{}, -62'135'769'600},
        {{.year = 1582, .month = 10, .day = 15}, -12'219'292'800},
        {{.year = 1582, .month = 10, .day = 4}, -12'219'379'200},
        {{.era = 0, .year = 1, .month = 12, .day = 31}, -62'135'856'000},
        {{.year = 0, .month = 12, .day = 31}, -62'135'856'000},
        {{.year = 9999, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 59}, 253'402'300'799},
        {{.year = 2023, .month = 14, .day = 30, .hour = 24, .minute = -1}, 1'709'337'540},
        {{.year = 2024, .month = 0, .day = 31}, 1'703'980'800},
        {{.year = 1970, .second = -1, .nanosecond = 500'000'000}, -0.5},
    };
    for (const Row& row : rows)
        EXPECT_EQ(seconds(utc.date(row.parts)), row.expected);
    EXPECT_EQ(utc.date({.year = 922'337'203}), std::nullopt);
    EXPECT_EQ(utc.date({.hour = std::numeric_limits<std::int64_t>::max()}), std::nullopt);
    EXPECT_EQ(utc.date({.day = 999'999'999'999'999}), std::nullopt);
}

TEST(Calendar, DecidesOnTimesThatComeTwiceOrNever) {
    const Calendar paris = calendarOf("Europe/Paris");
    EXPECT_EQ(seconds(date(paris, 2024, 10, 27, 2, 30)), 1'729'989'000) << "the first of two";
    EXPECT_EQ(seconds(date(paris, 2024, 3, 31, 2, 30)), 1'711'848'600) << "shown as 3:30";
    EXPECT_EQ(seconds(date(paris, 2424, 3, 31, 2, 30)), 1'711'848'600 + 12'622'780'800.0);
    EXPECT_EQ(seconds(date(calendarOf("Pacific/Apia"), 2011, 12, 30, 12)), 1'325'282'400) << "a day that was left out";
}

TEST(Calendar, FindsTheFirstMomentOfADay) {
    const auto start = [](std::string_view zone, int year, int month, int day) {
        const Calendar calendar = calendarOf(zone);
        return seconds(calendar.startOfDay(date(calendar, year, month, day, 12)));
    };
    EXPECT_EQ(start("Europe/Paris", 2024, 3, 31), 1'711'839'600);
    EXPECT_EQ(start("America/Sao_Paulo", 2018, 11, 4), 1'541'300'400) << "begins at 1:00";
    EXPECT_EQ(start("America/Toronto", 1919, 3, 31), -1'601'753'400) << "begins at 0:30, as the gap is from 23:30";
    EXPECT_EQ(start("America/St_Johns", 2010, 11, 7), 1'289'097'000) << "begins twice";
    EXPECT_TRUE(calendarOf("Asia/Tokyo").isDateInSameDayAs(date(utc, 2024, 1, 1, 15), date(utc, 2024, 1, 2, 14, 59)));
    EXPECT_FALSE(calendarOf("Asia/Tokyo").isDateInSameDayAs(date(utc, 2024, 1, 1, 14), date(utc, 2024, 1, 1, 15)));
}

TEST(Calendar, CountsWholeUnits) {
    const auto years = [](Date from, Date to) { return *utc.dateComponents(year, from, to).year; };
    const auto months = [](Date from, Date to) { return *utc.dateComponents(month, from, to).month; };
    const Date leapDay = date(utc, 2024, 2, 29);
    EXPECT_EQ(years(leapDay, date(utc, 2025, 2, 28)), 1) << "ends on the month's last day";
    EXPECT_EQ(years(date(utc, 2025, 2, 28), leapDay), 0);
    EXPECT_EQ(years(date(utc, 2025, 3, 1), leapDay), -1);
    EXPECT_EQ(months(date(utc, 2024, 1, 31), leapDay), 1);
    EXPECT_EQ(months(leapDay, date(utc, 2024, 1, 31)), 0);
    EXPECT_EQ(years(date(utc, 1, 1, 1), date(utc, 9999, 12, 31)), 9998);

    const Calendar paris = calendarOf("Europe/Paris");
    const Date noonBefore = date(paris, 2024, 3, 30, 12);
    const Date noonAfter = date(paris, 2024, 3, 31, 12);
    EXPECT_EQ(paris.dateComponents(day | hour, noonBefore, noonAfter), (DateComponents{.day = 1, .hour = 0}));
    EXPECT_EQ(paris.dateComponents(hour, noonBefore, noonAfter), (DateComponents{.hour = 23}));
    EXPECT_EQ(utc.dateComponents(year | month | weekOfYear | day | hour | minute | second, date(utc, 2020, 1, 31),
                                 date(utc, 2024, 3, 15, 1, 2, 3)),
              (DateComponents{.year = 4, .month = 1, .weekOfYear = 2, .day = 1, .hour = 1, .minute = 2, .second = 3}));
    EXPECT_EQ(utc.dateComponents(second | nanosecond, date(utc, 1970, 1, 1), Date(std::chrono::duration<double>(-1.5))),
              (DateComponents{.second = -1, .nanosecond = -500'000'000}));
    EXPECT_NE(utc.dateComponents(nanosecond, Date(std::chrono::duration<double>(-1.8e14)), leapDay).nanosecond, 0);

    EXPECT_EQ(utc.dateByAdding(month, 12, leapDay), date(utc, 2025, 2, 28));
    EXPECT_EQ(paris.dateByAdding(day, 1, noonBefore), noonAfter);
    EXPECT_EQ(utc.dateByAdding(year, std::numeric_limits<std::int64_t>::max(), leapDay), std::nullopt);
    EXPECT_EQ(utc.dateByAdding(era, 1, leapDay), std::nullopt);
}

}  // namespace corvane
