// Zones and the calendar in them against libc, which reads the same database, and against ICU.

#include <chrono>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <Corvane/Platform/Dates/Calendar.hpp>

#include "OracleRun.hpp"
#include "tests/Support/ZoneVariable.hpp"

namespace corvane {

namespace {

/// The names of all zones in the system's database.
std::vector<std::string> allZones() {
    const std::filesystem::path root = "/usr/share/zoneinfo";
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const auto name = entry.path().lexically_relative(root).string();
        const bool isOther = name.starts_with("posix") || name.starts_with("right/") || name == "localtime" ||
                             name.contains('.') || name.starts_with("leap");
        if (entry.is_regular_file() && !isOther) names.push_back(name);
    }
    return names;
}

// From before there were zones to the year 2600, which the rules have to be repeated for.
constexpr std::int64_t first = -5'000'000'000;
constexpr std::int64_t last = 20'000'000'000;
// From 1975 to 2021, where ICU's database says the same but for a few zones: whose winters are the saving side, which
// it turns round, and who have changed their standard time in between, which ours does not tell.
constexpr std::int64_t firstShared = 157'766'400;
constexpr std::int64_t lastShared = 1'640'995'200;
const std::set<std::string> unlikeICU = {"Europe/Dublin",     "Eire",
                                         "Africa/Windhoek",   "Africa/Casablanca",
                                         "Africa/El_Aaiun",   "Pacific/Rarotonga",
                                         "Europe/Simferopol", "America/Pangnirtung",
                                         "Asia/Choibalsan",   "America/Cancun"};

}  // namespace

TEST(ZoneOracle, AgreesWithTheSystem) {
    using enum CalendarUnit;
    OracleRun run;
    std::uint64_t compared = 0;
    const auto zones = allZones();
    ASSERT_GT(zones.size(), 400U);
    for (const std::string& name : zones) {
        const ZoneVariable variable(name);
        const auto zone = TimeZone::named(name);
        ASSERT_TRUE(zone) << name;
        const Calendar calendar(*zone);
        const std::unique_ptr<icu::TimeZone> oracle(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
        const bool isComparable = *oracle != icu::TimeZone::getUnknown() && !unlikeICU.contains(name);
        for (std::uint64_t sample = 0; sample <= run.samples() / zones.size(); ++sample) {
            std::time_t time = sample % 4 == 1 ? run.between(firstShared, lastShared) : run.between(first, last);
            // Half of them a second before or after a transition.
            if (sample % 2 == 0) {
                const auto next = zone->nextTransition(Date(std::chrono::seconds(time)));
                if (next) time = static_cast<std::time_t>(next->time_since_epoch().count()) - (sample % 4 == 0 ? 1 : 0);
            }
            const Date date{std::chrono::seconds(time)};
            std::tm parts{};
            ASSERT_NE(::localtime_r(&time, &parts), nullptr);
            ASSERT_EQ(zone->secondsFromGMT(date), parts.tm_gmtoff) << name << " at " << time;
            ASSERT_EQ(zone->isDaylightSavingTime(date), parts.tm_isdst > 0) << name << " at " << time;
            ASSERT_EQ(zone->abbreviation(date), parts.tm_zone) << name << " at " << time;
            const auto units = year | month | day | hour | minute | second;
            const auto components = calendar.dateComponents(units, date);
            ASSERT_EQ(components, (DateComponents{.year = parts.tm_year + 1900,
                                                  .month = parts.tm_mon + 1,
                                                  .day = parts.tm_mday,
                                                  .hour = parts.tm_hour,
                                                  .minute = parts.tm_min,
                                                  .second = parts.tm_sec}))
                << name << " at " << time;
            // The way back leads to the first instant with these names.
            const auto back = calendar.date(components);
            ASSERT_TRUE(back && *back <= date && calendar.dateComponents(units, *back) == components)
                << name << " at " << time;
            // libc does not tell what daylight saving adds, but ICU does, where its own database has the same offsets
            // then and half a year before and after.
            if (!isComparable || time < firstShared || time > lastShared) continue;
            std::int32_t saving = 0;
            const auto isSameAt = [&](std::time_t other) {
                std::int32_t standard = 0;
                UErrorCode status = U_ZERO_ERROR;
                oracle->getOffset(static_cast<double>(other) * 1000, 0, standard, saving, status);
                return (standard + saving) / 1000 == zone->secondsFromGMT(Date(std::chrono::seconds(other)));
            };
            constexpr std::time_t halfYear = 182 * 86'400;
            if (!isSameAt(time - halfYear) || !isSameAt(time + halfYear) || !isSameAt(time)) continue;
            ++compared;
            ASSERT_EQ(zone->daylightSavingTimeOffset(date), saving / 1000) << name << " at " << time;
        }
    }
    EXPECT_GT(compared, run.samples() / 8);
}

}  // namespace corvane
