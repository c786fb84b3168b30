#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/DataLoadOptions.hpp>

namespace corvane {
namespace {

TEST(DataLoadOptions, LetsTheApplicationReassignItsMembers) {
    EXPECT_EQ(DataLoadOptions(6), DataLoadOptions::IgnoreCache.union_(DataLoadOptions::TimeInUTC));
    const auto before = DataLoadOptions::IgnoreDates;
    DataLoadOptions::IgnoreDates = DataLoadOptions(8);
    EXPECT_FALSE(DataLoadOptions(1).contains(DataLoadOptions::IgnoreDates));
    DataLoadOptions::IgnoreDates = before;
}

}  // namespace
}  // namespace corvane
