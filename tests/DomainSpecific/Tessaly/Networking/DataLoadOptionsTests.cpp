#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>

namespace corvane {

TEST(DataLoadOptions, HasTheBitsThatReceiversKnow) {
    const DataLoadOptions six(6);
    EXPECT_TRUE(six.contains(DataLoadOptions::IgnoreCache) && six.contains(DataLoadOptions::TimeInUTC));
    EXPECT_FALSE(six.contains(DataLoadOptions::IgnoreDates));
    EXPECT_EQ(six.subtracting(DataLoadOptions::IgnoreCache), DataLoadOptions(4));
    EXPECT_EQ(DataLoadOptions::IgnoreDates, DataLoadOptions(1));
}

TEST(DataLoadOptions, LetsTheApplicationReassignItsMembers) {
    const auto before = DataLoadOptions::IgnoreDates;
    DataLoadOptions::IgnoreDates = DataLoadOptions(8);
    EXPECT_FALSE(DataLoadOptions(1).contains(DataLoadOptions::IgnoreDates));
    DataLoadOptions::IgnoreDates = before;
}

}  // namespace corvane
