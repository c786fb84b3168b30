#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Core/IncrementCounter.hpp>

namespace corvane {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(IncrementCounter, StopsAtItsLimitAndSaysSo) {
    const struct {
        std::int64_t start, limit, step, countAfter;
        bool isReachedBefore, isReachedAfter;
    } cases[] = {{4, 5, 2, 4, true, true},    {3, 5, 2, 5, false, true}, {1, 5, 2, 3, false, false},
                 {2, 5, 2, 4, false, true},   {9, 5, 1, 5, true, true},  {0, -3, 1, -3, true, true},
                 {0, -3, -2, -5, true, false}};

    for (const auto& [start, limit, step, countAfter, isReachedBefore, isReachedAfter] : cases) {
        SCOPED_TRACE(::testing::Message() << start << " by " << step << " to " << limit);
        bool isCalled = false;
        IncrementCounter counter(start, limit, [&] { isCalled = true; }, step);
        EXPECT_EQ(counter.isLimitReached(), isReachedBefore);
        counter.increment();
        EXPECT_EQ(counter.count(), countAfter);
        EXPECT_EQ(isCalled, isReachedAfter);
    }
    EXPECT_EQ(IncrementCounter().limit(), largest);
}

TEST(IncrementCounter, MayBeEndedByItsCallback) {
    std::optional<IncrementCounter> counter;
    std::string said;
    counter.emplace(0, 1, [&, text = std::string("a text that is not kept in place")] {
        counter.reset();
        said = text;
    });
    counter->increment();
    EXPECT_EQ(said, "a text that is not kept in place");
}

TEST(IncrementCounterDeathTest, StopsForSumsBeyond64Bits) {
    EXPECT_DEATH(IncrementCounter(largest - 1, std::nullopt, nullptr, 2).increment(),
                 "An increment counter overflowed");
    EXPECT_DEATH((void)IncrementCounter(smallest, 0, nullptr, -1).isLimitReached(), "An increment counter overflowed");
    EXPECT_TRUE(IncrementCounter(largest).isLimitReached()) << "no sum is looked at";
}

}  // namespace corvane
