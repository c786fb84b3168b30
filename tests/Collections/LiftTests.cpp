#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Collections/Lift.hpp>
#include <Corvane/Collections/Predicates.hpp>

namespace corvane {
namespace {

TEST(Lift, GivesTheElementOrNothing) {
    std::vector<int> list{1, 2};
    EXPECT_EQ(lift(list, 0), list.data());
    EXPECT_EQ(lift(list, 1U), list.data() + 1);
    EXPECT_EQ(lift(list, 2), nullptr);
    EXPECT_EQ(lift(list, -1), nullptr);
    EXPECT_EQ(lift(list, INT64_MIN), nullptr);
    EXPECT_EQ(lift(list, UINT64_MAX), nullptr);
    *lift(list, 0) = 5;
    EXPECT_EQ(list[0], 5);
}

TEST(Predicates, TakeAbsentForEmptyAndZero) {
    EXPECT_TRUE(isNilOrEmpty(std::optional<std::string>()));
    EXPECT_TRUE(isNilOrEmpty(std::optional<std::string>("")));
    EXPECT_FALSE(isNilOrEmpty(std::optional<std::string>(" ")));
    EXPECT_TRUE(isNilOrZero(std::optional<int>()));
    EXPECT_TRUE(isNilOrZero(std::optional<double>(-0.0)));
    EXPECT_FALSE(isNilOrZero(std::optional<double>(0.1)));
}

}  // namespace
}  // namespace corvane
