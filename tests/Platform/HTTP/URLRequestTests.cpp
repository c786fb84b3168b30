#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Platform/HTTP/URLRequest.hpp>

namespace corvane {
namespace {

TEST(URLRequest, TreatsFieldNamesRegardlessOfCase) {
    URLRequest r(*URL::parse("http://h/"));
    r.setValue("1", "X-Day");
    r.addValue("2", "x-day");
    r.addValue("a", "Accept");
    EXPECT_EQ(r.value("X-DAY"), "1,2");
    r.setValue("3", "X-DAY");
    EXPECT_EQ(r.headerFields(), (std::vector<HTTPHeaderField>{{"X-DAY", "3"}, {"Accept", "a"}}));
    r.removeValue("accept");
    EXPECT_FALSE(r.value("Accept"));
}

TEST(URLRequest, CountsSenselessTimeoutsAsNotStated) {
    URLRequest r(*URL::parse("http://h/"));
    EXPECT_EQ(r.timeoutInterval(), 60);
    EXPECT_FALSE(r.statesTimeoutInterval());
    r.setTimeoutInterval(30);
    EXPECT_EQ(r.timeoutInterval(), 30);
    for (const double senseless : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        r.setTimeoutInterval(senseless);
        EXPECT_FALSE(r.statesTimeoutInterval()) << senseless;
    }
}

}  // namespace
}  // namespace corvane
