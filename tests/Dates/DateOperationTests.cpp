#include <climits>
#include <cmath>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Dates/CalendarOperations.hpp>
#include <Corvane/Dates/InstantOperations.hpp>
#include <Corvane/Dates/SecondCounts.hpp>
#include <Corvane/Dates/TimeZoneUtil.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "tests/Support/ZoneVariable.hpp"

namespace corvane {

namespace {

Date at(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

}  // namespace

constexpr double noon = 1'710'504'000;  // 2024-03-15 12:00:00 UTC

TEST(InstantOperations, CountWholeUnitsUntilNow) {
    const testing::VirtualClock clock(at(noon));
    const ZoneVariable variable("Europe/Paris");
    EXPECT_EQ(secondsToNow(at(noon - 1.9)), 1);
    EXPECT_EQ(minutesToNow(at(noon - 5400)), 90);
    EXPECT_EQ(hoursToNow(at(noon - 5400)), 1);
    EXPECT_EQ(hoursToNow(at(noon + 5400)), -1);
    EXPECT_EQ(daysToNow(at(noon - 86'399)), 0);
    EXPECT_EQ(daysToNow(at(noon + 30 * 86'400 - 3600)), -30) << "the clocks are put forward in between";
    EXPECT_EQ(weeksToNow(at(noon - 15 * 86'400)), 2);
    EXPECT_EQ(monthsToNow(at(noon - 29 * 86'400)), 1) << "as February had 29 days";
    EXPECT_EQ(monthsToNow(at(noon - 28 * 86'400)), 0);
    EXPECT_EQ(yearsToNow(at(noon - 366 * 86'400)), 1);
    EXPECT_EQ(yearsToNow(at(std::nan(""))), std::nullopt);
}

TEST(InstantOperations, KnowDaysAndAges) {
    const testing::VirtualClock clock(at(noon));
    const ZoneVariable variable("Europe/Helsinki");
    const Date lateEvening = at(1'710'459'000);  // 2024-03-14 23:30 UTC, 1:30 of the 15th in Helsinki
    EXPECT_EQ(startOfDayInUTC(lateEvening), at(1'710'374'400));
    EXPECT_EQ(startOfDay(lateEvening), at(1'710'453'600));
    EXPECT_EQ(localDate(lateEvening), at(1'710'459'000 + 7200));
    EXPECT_FALSE(isOlderThan(at(noon - 60), 60));
    EXPECT_TRUE(isOlderThan(at(noon - 61), 60));
    EXPECT_EQ((at(noon) - lateEvening).count(), 45'000);
}

TEST(CalendarOperations, CountYearsAndDays) {
    const Calendar calendar(TimeZone::utc());
    EXPECT_EQ(numberOfDaysBetween(calendar, at(noon + 43'140), at(noon + 43'260)), 1);
    EXPECT_EQ(numberOfDaysBetween(calendar, at(noon), at(noon + 43'199)), 0);
    EXPECT_EQ(numberOfDaysBetween(calendar, at(noon), at(noon - 86'400 * 365)), -365);
    EXPECT_EQ(numberOfDaysBetween(calendar, at(noon), at(INFINITY)), 0);
    EXPECT_EQ(numberOfDaysBetween(Calendar(*TimeZone::named("Europe/Paris")), at(noon), at(noon + 31 * 86'400)), 31);
    const Calendar brazil(*TimeZone::named("America/Sao_Paulo"));
    constexpr double lateStart = 1'541'343'600;  // 2018-11-04 13:00 there, the day that began at 1:00
    EXPECT_EQ(numberOfDaysBetween(brazil, at(lateStart), at(lateStart + 86'400)), 1);
    EXPECT_EQ(numberOfDaysBetween(brazil, at(lateStart), at(lateStart - 86'400)), -1);
    EXPECT_EQ(yearsBetweenDate(calendar, at(0), at(noon)), 54);
    EXPECT_EQ(yearsBetweenDate(calendar, at(noon), at(INFINITY)), std::nullopt);
}

TEST(TimeZoneUtil, LabelsOffsets) {
    const std::pair<int, std::string_view> labels[] = {
        {0, "0"},         {3'600, "1"}, {-18'000, "-5"}, {19'800, "5.30"}, {-12'600, "-3.30"},     {-1'800, "-0.30"},
        {20'700, "5.45"}, {3'630, "1"}, {-30, "-0"},     {300, "0.05"},    {INT_MIN, "-596523.14"}};
    for (const auto& [offset, label] : labels)
        EXPECT_EQ(TimeZoneUtil::getTimeZoneOffset(offset), label);

    const testing::VirtualClock clock(at(noon));
    const ZoneVariable variable("Asia/Kathmandu");
    TimeZone::setCurrent(TimeZone::utc());
    EXPECT_EQ(TimeZoneUtil::getDeviceTimeZone(), 20'700) << "the operating system's zone";
    EXPECT_EQ(TimeZoneUtil::getTimeZoneOffset(), "5.45");
    TimeZone::setCurrent(std::nullopt);
}

TEST(SecondCounts, Convert) {
    static_assert(secondCounts::to_ns(2) == 2e9 && secondCounts::to_us(2) == 2e6 && secondCounts::to_ms(1.5) == 1500);
    static_assert(secondCounts::minute(2) == 120 && secondCounts::hour(2) == 7200 && secondCounts::day(2) == 172'800);
    static_assert(secondCounts::year(1) == 31'557'600);
    for (const double whole : {2.0, -2.0, 0.0, 1e300, -1e18, double{INFINITY}})
        EXPECT_FALSE(secondCounts::hasFractionalPart(whole)) << whole;
    for (const double fractional : {2.5, -0.1, 4503599627370495.5, double{NAN}})
        EXPECT_TRUE(secondCounts::hasFractionalPart(fractional)) << fractional;
}

}  // namespace corvane
