#include <array>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

namespace corvane {

std::optional<double> seconds(std::optional<std::string_view> text) {
    return DateFormatter::httpDate().date(text).transform([](Date date) { return date.time_since_epoch().count(); });
}

TEST(DateFormatter, ReadsHTTPDates) {
    const struct {
        std::string_view text;
        std::optional<double> seconds;
    } cases[] = {
        {"Sun, 06 Nov 1994 08:49:37 GMT", 784111777},
        {"Mon, 06 Nov 1994 08:49:37 UTC", 784111777},  // the wrong weekday is passed over
        {"Thu, 29 Feb 2024 23:59:60 GMT", 1709251200},
        {"Wed, 31 Dec 1969 23:59:59 GMT", -1},
        {"Fri, 31 Dec 9999 23:59:59 GMT", 253402300799},
        {"Wed, 29 Feb 2023 00:00:00 GMT", std::nullopt},
        {"Sun, 00 Nov 1994 08:49:37 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 24:00:00 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 08:60:00 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 08:49:60 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 08:49:37 PST", std::nullopt},
        {"Sun, 06 nov 1994 08:49:37 GMT", std::nullopt},
        {"Sol, 06 Nov 1994 08:49:37 GMT", std::nullopt},
        {"Sun, 6 Nov 1994 08:49:37 GMT", std::nullopt},
        {"Sun, 06 Nov 1994 08:49:37 GMT ", std::nullopt},
        {"Sun, +6 Nov 1994 08:49:37 GMT", std::nullopt},
        {"Sunday, 06-Nov-94 08:49:37 GMT", std::nullopt},
        {"Sun Nov  6 08:49:37 1994", std::nullopt},
        {"", std::nullopt},
    };

    for (const auto& [text, expected] : cases)
        EXPECT_EQ(seconds(text), expected) << text;
    EXPECT_EQ(seconds(std::nullopt), std::nullopt);
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
