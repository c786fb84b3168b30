#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Dates/DateUtil.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

#include "tests/Support/ZoneVariable.hpp"

namespace corvane {

namespace {

Date at(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

}  // namespace

constexpr double evening = 1'710'531'000;    // 2024-03-15 19:30:00 UTC
constexpr double midwinter = 1'705'320'000;  // 2024-01-15 12:00:00 UTC

TEST(DateUtil, WritesSomeTextsAtUTCAndSomeInTheDevicesZone) {
    const ZoneVariable variable("Asia/Tokyo");
    const DateUtil util;
    const std::pair<const DateFormatter&, std::string_view> texts[] = {
        {util.dateTimeFormatter(), "20240315193000"},
        {util.dateOnlyFormatter(), "20240315"},
        {util.dateOnlySeparatedFormatter(), "15.03.2024"},
        {util.localShortDateFormatter(), "16 Mar"},
        {util.longDateTimeFormatter(), "19:30, 15 March 2024"},
        {util.mediumDateFormatter(), "Mar 15, 2024"},
        {util.timeOnlyFormatter(), "04:30"},
        {util.yearOnlyFormatter(), "2024"},
        {util.durationTimeFormatter(), "30:00"},
    };
    for (const auto& [formatter, text] : texts)
        EXPECT_EQ(formatter.string(at(evening)), text) << formatter.dateFormat();
    EXPECT_EQ(util.formatDateTime(at(evening)), "20240315193000");
    EXPECT_EQ(util.formatDate(at(evening)), "20240315");
    EXPECT_EQ(util.formatLongDateTime(at(1'709'622'240)), "7:04, 5 March 2024");
    EXPECT_EQ(util.formatTimeOnly(at(evening)), "04:30");
    EXPECT_EQ(util.formatYearOnly(at(1'735'686'000)), "2025") << "already next year there";
    EXPECT_EQ(util.utcDateString(at(evening)), "2024-03-16 04:30:00") << "despite its name";
    EXPECT_EQ(util.barTitlesForDate(at(evening), Locale("en_US")), (BarTitles{"FRI", "15 MAR"}));
    EXPECT_EQ(util.barTitlesForDate(at(evening), Locale("de_DE")), (BarTitles{"FR.", "15 MÄRZ"}));
}

TEST(DateUtil, ReadsTextsAtUTC) {
    const ZoneVariable variable("Asia/Tokyo");
    const auto& util = *DateUtil::sharedInstance();
    EXPECT_EQ(util.getDateTime("20240315193000"), at(evening));
    EXPECT_EQ(util.getDateTime(std::nullopt), std::nullopt);
    EXPECT_EQ(util.getDateTime("20240315"), std::nullopt);
    EXPECT_EQ(util.formatDate("20240315"), at(evening - 19.5 * 3600));
    EXPECT_EQ(util.formatSeparatedDate("15.03.2024"), at(evening - 19.5 * 3600));
    EXPECT_EQ(util.getFormattedDate(20240315193000), at(evening - 9 * 3600)) << "on the device's clock";
    EXPECT_EQ(util.getFormattedDate(std::nullopt), std::nullopt);
    EXPECT_EQ(util.getFormattedDate(20240315), std::nullopt);
}

TEST(DateUtil, PacksInstants) {
    const testing::VirtualClock clock(at(evening));
    const ZoneVariable variable("Asia/Tokyo");
    DateUtil util;
    EXPECT_EQ(DateUtil::now(), evening);
    EXPECT_EQ(util.dateTimestamp(at(evening + 16'199.9), true), 20240315235959);
    EXPECT_EQ(util.dateTimestamp(at(evening + 16'199.9), false), 20240315000000);
    EXPECT_EQ(util.currentUtcDateTimestamp(), 20240315193000);
    EXPECT_EQ(util.currentLocalDateTimestamp(), 20240316000000);
    EXPECT_EQ(util.currentLocalShortDateTimestamp(), 20240316);
    EXPECT_EQ(util.localDateFrom(at(evening)), at(evening + 9 * 3600));
    EXPECT_EQ(util.utcTimestampFromUtcDate(at(evening)), 20240315193000);
    EXPECT_EQ(util.utcTimestampFromUtcDate(std::optional<Date>()), std::nullopt);
    EXPECT_EQ(util.dateShortTimestampFromDate(at(evening)), 20240315);
    EXPECT_EQ(util.getCurrentTime(at(evening + 5)), 193005.0);

    const Date never = at(std::numeric_limits<double>::infinity());
    EXPECT_EQ(util.dateShortTimestampFromDate(never), std::nullopt);
    EXPECT_EQ(util.getCurrentTime(never), std::nullopt);
    EXPECT_DEATH(static_cast<void>(util.dateTimestamp(never, true)), "Fatal error: ");

    util.setCalendar(Calendar(*TimeZone::named("Asia/Tokyo")));
    EXPECT_EQ(util.dateTimestamp(at(evening), true), 20240316043000);
    EXPECT_EQ(util.formatDateTime(at(evening)), "20240315193000") << "formatters keep the calendar they were made with";
}

TEST(DateUtil, WritesTrackingDatesDigitByDigit) {
    const DateUtil util;
    EXPECT_EQ(util.formatTrackingDateFromShortTimestamp(20240305), "2024-03-05");
    EXPECT_EQ(util.formatTrackingDateFromShortTimestamp(-20240305), "-2024--3--5") << "each part has the sign";
    EXPECT_EQ(util.formatTrackingDateFromScheduledStartDateNumber(20240305193000), "2024-03-05");
    EXPECT_EQ(util.formatTrackingDateFromScheduledStartDateNumber(std::optional<std::int64_t>()), std::nullopt);
    EXPECT_EQ(util.formatTrackingDateFromScheduledStartDateNumber(std::optional<std::int64_t>(5)), "0000-00-00");
}

TEST(DateUtil, MovesNumbersBetweenUTCAndTheDevice) {
    const testing::VirtualClock clock(at(midwinter));
    const ZoneVariable variable("Europe/Paris");
    const DateUtil util;
    EXPECT_EQ(util.utcTimestampToLocal(20240315193000), 20240315203000);
    EXPECT_EQ(util.localTimestampToUtc(20240315203000), 20240315193000);
    EXPECT_EQ(util.utcTimestampToLocal(20240715120000), 20240715130000) << "by the offset of now, in winter";
    EXPECT_EQ(util.utcTimestampToCorrectedLocal(20240715120000), 20240715140000);
    EXPECT_EQ(util.utcTimestampToCorrectedLocal(20240115120000), 20240115130000);
    for (const std::int64_t none : {std::int64_t{20240315}, std::int64_t{0}, std::int64_t{-20240315193000},
                                    std::int64_t{20240230193000}, std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_EQ(util.utcTimestampToLocal(none), 0) << none;
        EXPECT_EQ(util.localTimestampToUtc(none), 0) << none;
        EXPECT_EQ(util.utcTimestampToCorrectedLocal(none), 0) << none;
    }

    // The offset is the operating system's, the correction the current zone's, in which it is the winter that is saved.
    TimeZone::setCurrent(TimeZone::named("Europe/Dublin"));
    EXPECT_EQ(util.utcTimestampToLocal(20240715120000), 20240715130000);
    EXPECT_EQ(util.utcTimestampToCorrectedLocal(20240715120000), 20240715140000);
    TimeZone::setCurrent(TimeZone::named("Asia/Tokyo"));
    EXPECT_EQ(util.utcTimestampToCorrectedLocal(20240715120000), 20240715130000);
    TimeZone::setCurrent(std::nullopt);
}

TEST(DateUtil, ResolvesNumbersInTheDevicesZoneAndShiftsThem) {
    const ZoneVariable variable("Europe/Paris");
    const DateUtil util;
    EXPECT_EQ(util.dateFromNum(20240315193000), at(evening)) << "its fields at UTC are those of the number";
    EXPECT_EQ(util.dateFromNum(20240331023000), at(1'711'848'600 + 7200)) << "skipped, so an hour on";
    EXPECT_EQ(util.dateFromNum(20241345000000), util.dateFromNum(20250214000000)) << "runs over";
    EXPECT_EQ(util.dateFromNum(std::numeric_limits<std::int64_t>::max()), std::nullopt);
}

TEST(DateUtil, WritesDurations) {
    const DateUtil util;
    const std::pair<std::int64_t, std::string_view> durations[] = {
        {0, "0:00"},        {5, "0:05"},        {75, "1:15"}, {3'599, "59:59"},
        {3'600, "1:00:00"}, {3'725, "1:02:05"}, {-5, "-0:05"}};
    for (const auto& [seconds, text] : durations)
        EXPECT_EQ(util.getDurationString(seconds), text);
    EXPECT_EQ(util.getDurationString(std::nullopt), std::nullopt);
    EXPECT_EQ(util.getDurationString(std::numeric_limits<std::int64_t>::max()), std::nullopt);
    {
        const ZoneVariable variable("Europe/Paris");
        EXPECT_EQ(util.formatDuration(3'725), "2:05");
    }
    const ZoneVariable variable("Asia/Kolkata");
    EXPECT_EQ(util.formatDuration(65), "31:05") << "half an hour of offset shows";
}

}  // namespace corvane
