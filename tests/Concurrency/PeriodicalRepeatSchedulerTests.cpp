#include <limits>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/PeriodicalRepeatScheduler.hpp>

#include "tests/Support/Timeline.hpp"

namespace corvane {

/// 's' starts, 'o' stops and 'z' resets a scheduler of two ticks. '*' comes of each repeat.
TEST(PeriodicalRepeatScheduler, RepeatsUntilItsLimit) {
    constexpr auto smallest = std::numeric_limits<std::int64_t>::min();

    const struct {
        bool onStart;
        std::optional<std::int64_t> limit;
        const char* script;
        const char* outcome;
    } rows[] = {
        {false, std::nullopt, "s....", "..*..*"},
        {true, std::nullopt, "s....", "*..*..*"},
        {false, 3, "s........", "..*..*..*.."},
        {true, 3, "s........", "*..*..*...."},
        {false, 1, "s....", "..*.."},
        {true, 1, "s....", "*...."},
        {false, -4, "s....", "..*.."},
        {true, smallest, "s....", "*...."},
        {false, std::nullopt, "s.s..o...", "...*..."},
        {false, 3, "s..s......s....zs.......", "..*..*..*....*....*..*..*."},
    };

    for (const auto& [onStart, limit, script, outcome] : rows) {
        Timeline timeline;
        const auto scheduler = PeriodicalRepeatScheduler::make(1.0, onStart, limit);
        const Timeline::Steps steps{{'s', [&] { scheduler->start([&] { timeline.outcome += '*'; }); }},
                                    {'o', [&] { scheduler->stop(); }},
                                    {'z', [&] { scheduler->reset(); }}};
        EXPECT_EQ(timeline.play(script, 0.5, steps), outcome) << limit.value_or(100);
    }
    EXPECT_EQ(PeriodicalRepeatScheduler::make(1.0, false, -4)->repeatCounter().count(), -4);
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

}  // namespace corvane
