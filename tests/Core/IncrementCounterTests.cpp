#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Core/IncrementCounter.hpp>

namespace corvane {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(IncrementCounter, StopsAtItsLimitAndSaysSo) {
    const struct {
        std::int64_t start;
        std::optional<std::int64_t> limit;
        std::int64_t step;
        bool isReachedBefore;
        std::int64_t countAfter;
        int calls;
    } cases[] = {
        {0, 5, 1, false, 1, 0},
        {4, 5, 2, true, 4, 1},  // 6 would pass the limit
        {3, 5, 2, false, 5, 1},
        {1, 5, 2, false, 3, 0},
        {2, 5, 2, false, 4, 1},  // the next step would pass it
        {9, 5, 1, true, 5, 1},   // starts at the limit
        {0, -3, 1, true, -3, 1},
        {0, std::nullopt, 1, false, 1, 0},
        {smallest, std::nullopt, largest, false, -1, 0},
        {0, -3, -2, true, -5, 0},  // a step back may leave the limit
    };

    for (const auto& [start, limit, step, isReachedBefore, countAfter, callCount] : cases) {
        SCOPED_TRACE(::testing::Message() << start << " by " << step);
        int calls = 0;
        IncrementCounter counter(start, limit, [&] { ++calls; }, step);
        EXPECT_EQ(counter.limit(), limit.value_or(largest));
        EXPECT_EQ(counter.isLimitReached(), isReachedBefore);
        counter.increment();
        EXPECT_EQ(counter.count(), countAfter);
        EXPECT_EQ(calls, callCount);
        counter.reset();
        EXPECT_EQ(counter.count(), 0);
    }
    IncrementCounter(0, 0).increment();  // nobody is told
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
