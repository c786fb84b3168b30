#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/PeriodicalRepeatScheduler.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

TEST(PeriodicalRepeatScheduler, RepeatsUntilItsLimit) {
    constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

    const struct {
        bool onStart;
        std::optional<std::int64_t> limit;
        int within, after1, after10;
        bool isStarted;
        std::int64_t count;
    } cases[] = {
        {false, std::nullopt, 0, 1, 10, true, 10},
        {true, std::nullopt, 1, 2, 11, true, 11},
        {false, 3, 0, 1, 3, false, 3},
        {true, 3, 1, 2, 3, false, 3},
        {false, 1, 0, 1, 1, false, 1},
        {true, 1, 1, 1, 1, false, 1},
        {false, 0, 0, 1, 1, false, 0},
        {true, 0, 1, 1, 1, false, 0},
        {false, -4, 0, 1, 1, false, -4},
        {true, smallest, 1, 1, 1, false, smallest},
    };

    testing::VirtualClock clock;
    for (const auto& [onStart, limit, within, after1, after10, isStarted, count] : cases) {
        const auto scheduler = PeriodicalRepeatScheduler::make(1.0, onStart, limit);
        SCOPED_TRACE(limit.value_or(100));
        EXPECT_FALSE(scheduler->isStarted());
        int calls = 0;
        scheduler->start([&] { ++calls; });
        EXPECT_EQ(calls, within);
        clock.advance(1);
        EXPECT_EQ(calls, after1);
        clock.advance(9);
        EXPECT_EQ(calls, after10);
        EXPECT_EQ(scheduler->isStarted(), isStarted);
        EXPECT_EQ(scheduler->repeatCounter().count(), count);
    }
}

TEST(PeriodicalRepeatScheduler, StartsOverAndCountsOn) {
    testing::VirtualClock clock;
    const auto scheduler = PeriodicalRepeatScheduler::make(1.0, false, 3);
    int first = 0, second = 0;
    scheduler->start([&] { ++first; });
    clock.advance(1.5);
    scheduler->start([&] { ++second; });
    clock.advance(0.9);
    EXPECT_EQ(second, 0) << "the period starts over";
    clock.advance(5);
    EXPECT_EQ(second, 2) << "one count over both starts";
    scheduler->start([&] { ++first; });
    clock.advance(5);
    EXPECT_EQ(first, 2) << "past the limit: one repeat a start";
    scheduler->reset();
    scheduler->start([&] { ++first; });
    clock.advance(2);
    scheduler->stop();
    clock.advance(5);
    EXPECT_EQ(first, 4);
}

TEST(PeriodicalRepeatScheduler, ObeysItsOwnCallback) {
    testing::VirtualClock clock;
    for (const bool onStart : {false, true}) {
        auto scheduler = PeriodicalRepeatScheduler::make(1.0, onStart);
        const auto callsIn5Seconds = [&](const std::function<void()>& inFirstCall) {
            int calls = 0;
            scheduler->start([&calls, &inFirstCall] {
                if (++calls == 1) inFirstCall();
            });
            clock.advance(5);
            return calls;
        };
        EXPECT_EQ(callsIn5Seconds([&] { scheduler->stop(); }), 1);
        int after = 0;
        EXPECT_EQ(callsIn5Seconds([&] { scheduler->start([&] { ++after; }); }), 1);
        EXPECT_EQ(after, onStart ? 6 : 4) << "one timer, that of the later start";
        EXPECT_EQ(callsIn5Seconds([&] { scheduler.reset(); }), 1);
    }
}

TEST(PeriodicalRepeatScheduler, HasAnAnswerToAnyPeriod) {
    testing::VirtualClock clock;
    for (const double period : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), 1e300}) {
        const auto scheduler = PeriodicalRepeatScheduler::make(period);
        int calls = 0;
        scheduler->start([&] { ++calls; });
        clock.advance(0.001);
        EXPECT_EQ(calls, period > 0 ? 0 : 10) << period;
    }
}

}  // namespace corvane
