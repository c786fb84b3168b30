#include <limits>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/DateComponentsFormatter.hpp>

namespace corvane {

using Zeros = DateComponentsFormatter::ZeroFormattingBehavior;
using Style = DateComponentsFormatter::UnitsStyle;

TEST(DateComponentsFormatter, WritesDurations) {
    using enum CalendarUnit;

    struct Row {
        double seconds;
        CalendarUnits units;
        Style style;
        Zeros zeros;
        std::string_view text;
    };

    const Row rows[] = {
        {5, minute | second, Style::positional, Zeros::pad, "0:05"},
        {5, hour | minute | second, Style::positional, Zeros::dropLeading, "5"},
        {0, hour | minute, Style::positional, Zeros::dropAll, "0"},
        {3'600, hour | minute | second, Style::positional, Zeros::dropAll, "1:00:00"},
        {3'600, hour | minute | second, Style::positional, Zeros::dropTrailing, "1"},
        {5'400, minute, Style::positional, Zeros::pad, "90"},
        {90'061.9, day | hour | minute | second, Style::positional, Zeros::pad, "1:01:01:01"},
        {-3'725, hour | minute | second, Style::positional, Zeros::pad, "-1:02:05"},
        {-0.5, minute | second, Style::positional, Zeros::pad, "0:00"},
        {3'605, hour | minute | second, Style::full, Zeros::dropAll, "1 hour, 5 seconds"},
        {-3'605, hour | minute | second, Style::brief, Zeros::pad, "-1 hr, 0 min, 5 sec"},
        {3'605, hour | minute | second, Style::abbreviated, Zeros::dropTrailing, "1h 0m 5s"},
        {34'300'800, year | month | weekOfYear | day, Style::full, Zeros::dropAll, "1 year, 1 month, 1 day"},
    };
    for (const Row& row : rows) {
        const DateComponentsFormatter formatter{.allowedUnits = row.units,
                                                .unitsStyle = row.style,
                                                .zeroFormattingBehavior = row.zeros,
                                                .locale = Locale("en_US")};
        EXPECT_EQ(formatter.string(row.seconds), row.text);
    }
    const DateComponentsFormatter german{.unitsStyle = Style::full, .locale = Locale("de_DE")};
    EXPECT_EQ(german.string(7'260), "2 Stunden, 1 Minute und 0 Sekunden");
    EXPECT_EQ(german.string(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(german.string(1e300), std::nullopt);
    EXPECT_EQ(DateComponentsFormatter{.allowedUnits = CalendarUnits()}.string(5), std::nullopt);
    EXPECT_EQ(DateComponentsFormatter{.allowedUnits = weekday}.string(5), std::nullopt);
}

}  // namespace corvane
