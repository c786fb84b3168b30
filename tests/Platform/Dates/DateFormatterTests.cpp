#include <array>
#include <ctime>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

namespace corvane {

std::optional<double> seconds(std::optional<std::string_view> text) {
    return DateFormatter::httpDate().date(text).transform([](Date date) { return date.time_since_epoch().count(); });
}

TEST(DateFormatter, ReadsHTTPDates) {
    EXPECT_EQ(seconds("Sun, 06 Nov 1994 08:49:37 GMT"), 784111777);
    EXPECT_EQ(seconds("Mon, 06 Nov 1994 08:49:37 UTC"), 784111777) << "the weekday is passed over";
    EXPECT_EQ(seconds("Thu, 29 Feb 2024 23:59:60 GMT"), 1709251200);
    EXPECT_EQ(seconds(std::nullopt), std::nullopt);

    const std::string_view refused[] = {"Wed, 29 Feb 2023 00:00:00 GMT",
                                        "Sun, 06 Nov 1994 24:00:00 GMT",
                                        "Sun, 06 Nov 1994 08:60:00 GMT",
                                        "Sun, 06 Nov 1994 08:49:60 GMT",
                                        "Sun, 06 Nov 1994 08:49:37 PST",
                                        "Sun, 06 nov 1994 08:49:37 GMT",
                                        "Sol, 06 Nov 1994 08:49:37 GMT",
                                        "Sun, 06 Nov 1994 08:49:37 GMT ",
                                        "Sun, +6 Nov 1994 08:49:37 GMT",
                                        "Sun Nov  6 08:49:37 1994",
                                        ""};
    for (const std::string_view text : refused)
        EXPECT_EQ(seconds(text), std::nullopt) << text;
}

// libc is the oracle, over all months of four centuries.
TEST(DateFormatter, ReadsWhatTheSystemWrites) {
    for (std::time_t time = -2'208'988'800; time < 10'413'792'000; time += 1'234'567) {
        std::tm parts{};
        std::array<char, 40> text{};
        ASSERT_NE(::gmtime_r(&time, &parts), nullptr);
        ASSERT_EQ(std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts), 29U);
        EXPECT_EQ(seconds(text.data()), static_cast<double>(time)) << text.data();
    }
}

}  // namespace corvane
