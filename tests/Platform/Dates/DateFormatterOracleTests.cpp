// Our own patterns and the calendar before 1582 against ICU.

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/smpdtfmt.h>

#include <Corvane/Platform/Dates/DateFormatter.hpp>

#include "OracleRun.hpp"

namespace corvane {

namespace {

std::unique_ptr<icu::SimpleDateFormat> oracle(std::string_view pattern, const std::string& locale) {
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(
        icu::UnicodeString::fromUTF8({pattern.data(), static_cast<std::int32_t>(pattern.size())}),
        icu::Locale(locale.c_str()), status);
    format->setTimeZone(*icu::TimeZone::getGMT());
    return format;
}

}  // namespace

TEST(DateFormatterOracle, AgreesWithICU) {
    const std::string_view whole = "d MMMM y HH:mm:ss";
    const std::vector<std::string_view> patterns = {"yyyyMMddHHmmss",
                                                    "yyyyMMdd",
                                                    "dd.MM.yyyy",
                                                    "dd.MM.yy",
                                                    "d MMM",
                                                    "H:mm, d MMMM yyyy",
                                                    "EEEE, MMM d, yyyy h:mm a",
                                                    "HH:mm",
                                                    "yyyy",
                                                    "m:ss",
                                                    "EEE dd MMM",
                                                    "EEEE LLLL LLL",
                                                    "YYYY-'W'ww",
                                                    "y-M-d h:m:s a K k SSS 'at' S",
                                                    whole};
    const std::vector<std::string> locales = {"en_US", "en_US_POSIX", "en_GB", "de_DE", "fr_FR", "pl_PL",
                                              "tr_TR", "el_GR",       "ru_RU", "ja_JP", "zh_CN", "ko_KR",
                                              "pt_BR", "fi_FI",       "cs",    "ar_EG", "th_TH"};
    OracleRun run;
    for (const std::string_view pattern : patterns) {
        for (const std::string& locale : locales) {
            const auto expected = oracle(pattern, locale);
            const DateFormatter formatter(pattern, Locale(locale), TimeZone::utc());
            for (std::uint64_t sample = 0; sample <= run.samples() / (patterns.size() * locales.size()); ++sample) {
                // Half of them in living memory, the others from 8000 BC to AD 12000.
                const std::int64_t time =
                    sample % 2 == 0 ? run.between(0, 4'000'000'000) : run.between(-315'000'000'000, 315'000'000'000);
                icu::UnicodeString written;
                expected->format(static_cast<double>(time) * 1000, written);
                std::string text;
                written.toUTF8String(text);
                const Date date{std::chrono::seconds(time)};
                ASSERT_EQ(formatter.string(date), text) << pattern << " in " << locale << " at " << time;
                // No reading back before our era, as years are of an era, nor before the year 100, as ICU takes two
                // digits for a year of our time; and other calendars have other years.
                if (pattern == whole && locale != "th_TH" && time >= -59'011'286'400) {
                    ASSERT_EQ(formatter.date(text), date) << text << " in " << locale;
                }
            }
        }
    }
}

TEST(DateFormatterOracle, ReadsWhatIsADate) {
    // Digits at random, few of which make a date.
    namespace chrono = std::chrono;
    OracleRun run;
    const DateFormatter formatter("yyyyMMddHHmmss", Locale("en_US"), TimeZone::utc());
    for (std::uint64_t sample = 0; sample < run.samples(); ++sample) {
        const auto year = run.between(1583, 9999);
        const auto month = run.between(0, 13);
        const auto day = run.between(0, 32);
        const chrono::hh_mm_ss time(chrono::seconds(run.between(0, 25 * 3600)));
        const auto digits = ((year * 100 + month) * 100 + day) * 1'000'000 + time.hours().count() * 10'000 +
                            time.minutes().count() * 100 + time.seconds().count();
        const chrono::year_month_day date(chrono::year(static_cast<int>(year)),
                                          chrono::month(static_cast<unsigned>(month)),
                                          chrono::day(static_cast<unsigned>(day)));
        const bool isDate = date.ok() && time.hours().count() < 24;
        ASSERT_EQ(formatter.date(std::to_string(digits)),
                  isDate ? std::optional<Date>(chrono::sys_days(date) + time.to_duration()) : std::nullopt)
            << digits;
    }
}

}  // namespace corvane
