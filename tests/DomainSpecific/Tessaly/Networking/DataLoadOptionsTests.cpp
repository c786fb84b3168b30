#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>

namespace corvane {
namespace {

TEST(DataLoadOptions, IsASetOfItsBits) {
    const auto dates = DataLoadOptions::IgnoreDates;
    const auto cache = DataLoadOptions::IgnoreCache;
    const auto utc = DataLoadOptions::TimeInUTC;
    EXPECT_EQ(dates.rawValue(), 1U);

    const DataLoadOptions options(6);
    EXPECT_TRUE(options.contains(cache) && options.contains(utc) && options.contains({}));
    EXPECT_FALSE(options.contains(dates) || options.contains(dates | cache));
    EXPECT_TRUE(options.isDisjoint(dates));
    EXPECT_EQ(options, cache.union_(utc));
    EXPECT_EQ(options.intersection(dates | cache), cache);
    EXPECT_EQ(options.symmetricDifference(dates | cache), dates | utc);
    EXPECT_EQ(options.subtracting(dates | cache), utc);

    DataLoadOptions changing;
    changing.insert(dates | utc);
    changing.remove(cache | utc);
    EXPECT_EQ(changing, dates);
}

TEST(DataLoadOptions, LetsTheApplicationReassignItsMembers) {
    const auto before = DataLoadOptions::IgnoreDates;
    DataLoadOptions::IgnoreDates = DataLoadOptions(8);
    EXPECT_FALSE(DataLoadOptions(1).contains(DataLoadOptions::IgnoreDates));
    DataLoadOptions::IgnoreDates = before;
}

}  // namespace
}  // namespace corvane
