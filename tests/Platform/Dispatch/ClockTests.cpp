#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dispatch/Clock.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

TEST(Clock, DeadlinesSaturateAndNeverLieInThePast) {
    const testing::VirtualClock clock;
    const SteadyInstant now = clock.uptime();
    for (const double seconds : {0.0, -1.0, -std::numeric_limits<double>::infinity(), std::nan("")}) {
        EXPECT_EQ(deadlineAfter(seconds), now) << seconds;
    }
    for (const double seconds : {9.3e9, 1e300, std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(deadlineAfter(seconds), SteadyInstant::max()) << seconds;
    }
    EXPECT_EQ(deadlineAfter(0.3) - now, std::chrono::milliseconds(300));
    EXPECT_EQ(deadlineAfter(9.0e9) - now, std::chrono::seconds(9'000'000'000));
}

}  // namespace
}  // namespace corvane
