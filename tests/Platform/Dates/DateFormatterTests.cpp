#include <array>
#include <ctime>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

#include "tests/Support/ZoneVariable.hpp"

namespace corvane {

namespace {

std::optional<double> seconds(std::optional<std::string_view> text,
                              const DateFormatter& formatter = DateFormatter::httpDate()) {
    return formatter.date(text).transform([](Date date) { return date.time_since_epoch().count(); });
}

Date instant(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

}  // namespace

TEST(DateFormatter, ReadsHTTPDates) {
    EXPECT_EQ(seconds("Sun, 06 Nov 1994 08:49:37 GMT"), 784111777);
    EXPECT_EQ(seconds("Mon, 06 Nov 1994 08:49:37 UTC"), 784111777) << "the weekday is passed over";
    EXPECT_EQ(seconds("Thu, 29 Feb 2024 23:59:60 GMT"), 1709251200);
    EXPECT_EQ(seconds(std::nullopt), std::nullopt);

    const std::string_view refused[] = {
        "Wed, 29 Feb 2023 00:00:00 GMT", "Sun, 06 Nov 1994 24:00:00 GMT",  "Sun, 06 Nov 1994 08:60:00 GMT",
        "Sun, 06 Nov 1994 08:49:60 GMT", "Sun, 06 Nov 1994 08:49:37 PST",  "Sun, 06 nov 1994 08:49:37 GMT",
        "Sol, 06 Nov 1994 08:49:37 GMT", "Sun, 06 Nov 1994 08:49:37 GMT ", "Sun, +6 Nov 1994 08:49:37 GMT",
        "Sun; 06 Nov 1994 08:49:37 GMT", "Sun Nov  6 08:49:37 1994",       ""};
    for (const std::string_view text : refused)
        EXPECT_EQ(seconds(text), std::nullopt) << text;
}

// libc is the oracle, over all months of four centuries.
TEST(DateFormatter, ReadsAndWritesHTTPDatesAsTheSystemDoes) {
    for (std::time_t time = -2'208'988'800; time < 10'413'792'000; time += 1'234'567) {
        std::tm parts{};
        std::array<char, 40> text{};
        ASSERT_NE(::gmtime_r(&time, &parts), nullptr);
        ASSERT_EQ(std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts), 29U);
        EXPECT_EQ(seconds(text.data()), static_cast<double>(time)) << text.data();
        EXPECT_EQ(DateFormatter::httpDate().string(instant(static_cast<double>(time))), text.data());
    }
}

struct Row {
    std::string_view pattern;
    std::string_view locale;
    std::string_view zone;
    double seconds;
    std::string_view text;
    /// Whether the text tells all of the instant.
    bool isWhole = true;
};

constexpr double evening = 1'710'531'000;  // 2024-03-15 19:30:00 UTC

TEST(DateFormatter, WritesAndReadsFields) {
    const Row rows[] = {
        {"yyyyMMddHHmmss", "en_US", "UTC", evening, "20240315193000"},
        {"EEEE, MMM d, yyyy h:mm a", "en_US", "America/New_York", evening, "Friday, Mar 15, 2024 3:30 PM"},
        {"yyyy-MM-dd kk:mm", "en_US", "UTC", evening - 19.5 * 3600, "2024-03-15 24:00"},
        {"yyyy-MM-dd KK:mm a", "en_US", "UTC", evening - 7.5 * 3600, "2024-03-15 00:00 PM"},
        {"yyyy-MM-dd h a H", "en_US", "UTC", evening - 1800, "2024-03-15 7 PM 19"},
        {"d MMM y 'o''clock' HH", "en_US_POSIX", "GMT+0530", evening - 3600, "16 Mar 2024 o'clock 00"},
        {"yyyy-MM-dd HH:mm:ss.SSS", "en_US", "UTC", 1'710'504'000.123, "2024-03-15 12:00:00.123"},
        {"yyyy-MM-dd HH:mm:ss.SSSSSS", "en_US", "UTC", -0.5, "1969-12-31 23:59:59.500000"},
        {"y-MM-dd", "en_US", "UTC", 253'402'300'800, "10000-01-01"},
        {"yyyy-MM-dd'T'HH:mm:ssXXX", "en_US", "Europe/Paris", evening, "2024-03-15T20:30:00+01:00"},
        {"HH:mm zzzz", "en_US", "Europe/Paris", evening, "20:30 Central European Standard Time", false},
        {"dd.MM.yy", "en_US", "UTC", evening - 19.5 * 3600, "15.03.24"},
        {"'", "en_US", "UTC", evening, "", false},
        {"", "en_US", "UTC", evening, "", false},
    };
    for (const Row& row : rows) {
        const DateFormatter formatter(row.pattern, Locale(row.locale), TimeZone::named(row.zone));
        EXPECT_EQ(formatter.string(instant(row.seconds)), row.text) << row.pattern;
        if (row.isWhole) {
            EXPECT_EQ(seconds(row.text, formatter), row.seconds) << row.pattern;
        }
    }
    DateFormatter gregorian("yyyy", Locale("th_TH"));
    gregorian.setCalendar(Calendar(TimeZone::utc()));
    EXPECT_EQ(gregorian.string(instant(evening)), "2024");
    for (const double none : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e15})
        EXPECT_EQ(DateFormatter("yyyy").string(instant(none)), "");
}

TEST(DateFormatter, ReadsNothingElse) {
    const std::pair<std::string_view, std::string_view> refused[] = {
        {"yyyyMMddHHmmss", "20240315"},
        {"yyyyMMddHHmmss", "2024031519300"},
        {"yyyyMMddHHmmss", "202403151930000"},
        {"yyyyMMddHHmmss", "20240315236000"},
        {"yyyyMMddHHmmss", "00000101000000"},
        {"yyyyMMddHHmmss", "15821010000000"},
        {"yyyyMMddHHmmss", "-0240315193000"},
        {"yyyyMMddHHmmss", " 0240315193000"},
        {"dd.MM.yyyy", "15.3.2024"},
        {"dd.MM.yyyy", "15/03/2024"},
        {"d MMM yyyy", "15 Mrz 2024"},
        {"h:mm a", "13:00 PM"},
        {"h:mm a", "0:00 AM"},
        {"dd.MM.yy", "1.03.24"},
        {"yyyy-MM-dd'T'HH:mm:ssXXX", "2024-02-30T00:00:00Z"},
        {"'", "x"},
        {"yy SSS", "24 00000000000000000000000000000000000000"},
        {"", ""}};
    for (const auto& [pattern, text] : refused)
        EXPECT_EQ(seconds(text, DateFormatter(pattern, Locale("en_US"), TimeZone::utc())), std::nullopt) << text;
    EXPECT_EQ(seconds("15 MARCH 2024", DateFormatter("d MMMM yyyy", Locale("en_US"), TimeZone::utc())), 1'710'460'800);
}

TEST(DateFormatter, FollowsTheDeviceWhereNothingIsSet) {
    const DateFormatter formatter("yyyy-MM-dd HH:mm", Locale("en_US"));
    const ZoneVariable first("Europe/Paris");
    EXPECT_EQ(formatter.string(instant(evening)), "2024-03-15 20:30");
    EXPECT_EQ(seconds("2024-03-31 02:30", formatter), 1'711'848'600) << "never shown, so an hour on";
    EXPECT_EQ(seconds("2024-10-27 02:30", formatter), 1'729'989'000) << "the first of two";
    const ZoneVariable second("Asia/Tokyo");
    EXPECT_EQ(formatter.string(instant(evening)), "2024-03-16 04:30");
    TimeZone::setCurrent(TimeZone::utc());
    EXPECT_EQ(TimeZone::system().identifier(), "Asia/Tokyo");
    EXPECT_EQ(formatter.string(instant(evening)), "2024-03-15 19:30");
    TimeZone::setCurrent(std::nullopt);
    EXPECT_EQ(DateFormatter("y").locale(), Locale::current());
}

TEST(DateFormatter, IsSharedByThreads) {
    const DateFormatter fast("yyyyMMddHHmmss", Locale("en_US"));
    const DateFormatter slow("yyyyMMddHHmmssXX", Locale("ar_EG"));
    std::array<std::thread, 8> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (int day = 0; day < 50; ++day) {
                const double time = evening + day * 86'400.0;
                EXPECT_EQ(seconds(fast.string(instant(time)), fast), time);
                EXPECT_EQ(seconds(slow.string(instant(time)), slow), time);
            }
        });
    }
    TimeZone::resetSystemTimeZone();
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Locale, HasOneSpelling) {
    EXPECT_EQ(Locale("de-DE"), Locale("de_DE.UTF-8"));
    EXPECT_EQ(Locale("sr-Latn-RS").identifier(), "sr_Latn_RS");
    EXPECT_EQ(Locale("C").identifier(), "en_US_POSIX");
    EXPECT_EQ(Locale(std::string(1000, 'x')).identifier(), "");
}

}  // namespace corvane
