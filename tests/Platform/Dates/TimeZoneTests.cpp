#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Platform/Dates/Private/ZoneFile.hpp>
#include <Corvane/Platform/Dates/TimeZone.hpp>

#include "tests/Support/DescriptorShortage.hpp"
#include "tests/Support/ZoneVariable.hpp"

namespace corvane {

using testing::ElementsAre;

namespace {

Date at(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

constexpr double july1960 = -299'894'400;
constexpr double january2024 = 1'705'320'000;
constexpr double july2024 = 1'721'044'800;

std::vector<int> offsets(std::string_view zone, double seconds) {
    const auto found = TimeZone::named(zone);
    if (!found) return {};
    return {found->secondsFromGMT(at(seconds)), found->daylightSavingTimeOffset(at(seconds)),
            found->isDaylightSavingTime(at(seconds)) ? 1 : 0};
}

}  // namespace

TEST(TimeZone, KnowsOffsetsAndTheirDaylightSavingPart) {
    EXPECT_THAT(offsets("Europe/Dublin", january2024), ElementsAre(0, -3600, 1)) << "winter is the saving side";
    EXPECT_THAT(offsets("Europe/London", -897'000'000), ElementsAre(7200, 7200, 1)) << "double summer time of 1941";
    EXPECT_THAT(offsets("Europe/Paris", july2024 + 400 * 31'556'952.0 * 5), ElementsAre(7200, 3600, 1))
        << "2,000 years on";
    EXPECT_EQ(TimeZone::named("Europe/Paris")->nextTransition(at(july2024)), at(1'729'990'800));
    EXPECT_EQ(TimeZone::utc().nextTransition(at(0)), std::nullopt);
}

TEST(TimeZone, TakesNamesAndFixedOffsetsOnly) {
    const std::pair<int, std::string_view> fixed[] = {
        {0, "GMT"}, {19'800, "GMT+0530"}, {-12'600, "GMT-0330"}, {-12'615, "GMT-033015"}, {64'800, "GMT+1800"}};
    for (const auto& [offset, identifier] : fixed) {
        const auto zone = TimeZone::withSecondsFromGMT(offset);
        ASSERT_TRUE(zone) << offset;
        EXPECT_EQ(zone->identifier(), identifier);
        EXPECT_EQ(zone->secondsFromGMT(at(1e300)), offset);
        EXPECT_EQ(TimeZone::named(identifier), zone);
    }
    EXPECT_EQ(TimeZone::withSecondsFromGMT(64'801), std::nullopt);
    EXPECT_EQ(TimeZone::utc().identifier(), "UTC");
    EXPECT_EQ(TimeZone::named("UTC"), TimeZone::utc());
    EXPECT_EQ(TimeZone::named("Europe/Paris"), TimeZone::named("Europe/Paris"));
    EXPECT_NE(TimeZone::named("Europe/Paris"), TimeZone::named("Europe/Madrid"));
    for (const std::string_view name : {"", "Europe", "Europe/Nowhere", "../../../etc/passwd", "/etc/localtime",
                                        "Europe/Paris ", "right/Europe/Paris", "GMT+0160", "GMT+1801", "tzdata.zi"})
        EXPECT_EQ(TimeZone::named(name), std::nullopt) << name;
}

TEST(TimeZone, OfTheDeviceFollowsTZ) {
    struct Row {
        std::string_view variable;
        int winter;
        int summer;
    };

    const Row rows[] = {{"Europe/Paris", 3600, 7200},
                        {":America/St_Johns", -12'600, -9'000},
                        {"/usr/share/zoneinfo/Asia/Tokyo", 32'400, 32'400},
                        {"EST5EDT", -18'000, -14'400},
                        {"<-0330>3:30<-0230>,M3.2.0,M11.1.0/0", -12'600, -9'000},
                        {"XXX-1YYY-3,J60,300/26:30:15", 3'600, 10'800},
                        {"AAA5BBB,0/0,J365/25", -14'400, -14'400},
                        {"", 0, 0},
                        {"No/Such", 0, 0},
                        {"X5", 0, 0},
                        {"EST5EDT,M13.1.0,M11.1.0", 0, 0},
                        {"EST5EDT,M3.2.0", 0, 0},
                        {"EST5EDT,M3.2.0,M11.1.0x", 0, 0}};
    for (const Row& row : rows) {
        const ZoneVariable variable(row.variable);
        EXPECT_EQ(TimeZone::system().secondsFromGMT(at(january2024)), row.winter) << row.variable;
        EXPECT_EQ(TimeZone::current().secondsFromGMT(at(july2024)), row.summer) << row.variable;
    }
    const ZoneVariable variable("XXX-1YYY-3,J60,300");
    EXPECT_EQ(TimeZone::system().secondsFromGMT(at(july1960)), 10'800) << "a rule counts before 1970, too";
}

TEST(TimeZone, OfTheDeviceStaysWhileNoDescriptorIsLeftToReadAnother) {
    const ZoneVariable former("Asia/Tokyo");
    std::optional<DescriptorShortage> shortage(std::in_place);
    const ZoneVariable variable("Pacific/Marquesas");
    EXPECT_EQ(TimeZone::system().secondsFromGMT(at(january2024)), 32'400);
    shortage.reset();
    TimeZone::resetSystemTimeZone();
    EXPECT_EQ(TimeZone::system().secondsFromGMT(at(january2024)), -34'200);
}

TEST(ZoneFile, RefusesEveryDamage) {
    std::ifstream file("/usr/share/zoneinfo/Europe/Paris", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto bytes = std::as_bytes(std::span(text));
    ASSERT_TRUE(readZone(bytes));
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(readZone(bytes.first(length))) << length;

    const auto second = text.find("TZif", 4);
    const auto refusesWith = [&](std::size_t place, char byte) {
        std::string damaged = text;
        damaged[place] = byte;
        return !readZone(std::as_bytes(std::span(damaged)));
    };
    EXPECT_TRUE(refusesWith(second, 'X'));
    EXPECT_TRUE(refusesWith(second + 32, '\x7f')) << "more transitions than bytes";
    EXPECT_TRUE(refusesWith(second + 31, '\1')) << "leap seconds";
    EXPECT_TRUE(refusesWith(second + 44, '\x7f')) << "transitions out of order";
    EXPECT_TRUE(refusesWith(text.size() - 2, '!')) << "footer";
}

}  // namespace corvane
