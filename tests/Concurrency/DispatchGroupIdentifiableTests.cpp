#include <cctype>
#include <limits>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/DispatchGroupIdentifiable.hpp>

#include "Timeline.hpp"

namespace corvane {

/// In a script a small letter enters and its capital leaves; 'n' has the group tell, 't' also after two seconds; '!'
/// invalidates, 'x' ends the group. '*' comes of each call.
TEST(DispatchGroupIdentifiable, TellsWhenAllHaveLeftOrTimeIsOut) {
    const struct {
        const char* script;
        const char* outcome;
    } rows[] = {
        {"n.", "."},         {"nabA.", "."},       {"nabAB.", ".*"},     {"naaA.", "."},
        {"naaAA.", ".*"},    {"nA.A.", ".*.*"},    {"nabCAB.", ".*"},    {"ta...", "..*."},
        {"ta..A.", "..*.*"}, {"ta.t...", "..*.."}, {"tA...", ".*.."},    {"ta!A...", "..."},
        {"naA!.", "."},      {"naAx.", "."},       {"taAt.x..", ".*.."}, {"t..t..", "..*..*"},
    };

    for (const auto& [script, expected] : rows) {
        Timeline timeline;
        std::optional<DispatchGroupIdentifiable<char>> group(std::in_place);
        const auto notify = [&](std::optional<double> timeout) {
            group->notify(DispatchQueue::main(), timeout, [&] { timeline.outcome += '*'; });
        };
        Timeline::Steps steps{{'n', [&] { notify(std::nullopt); }},
                              {'t', [&] { notify(2); }},
                              {'!', [&] { group->invalidate(); }},
                              {'x', [&] { group.reset(); }}};
        for (const char item : {'a', 'b', 'c'}) {
            steps[item] = [&group, item] { group->enter(item); };
            steps[static_cast<char>(std::toupper(item))] = [&group, item] { group->leave(item); };
        }
        EXPECT_EQ(timeline.play(script, 1, steps), expected) << script;
    }
}

TEST(DispatchGroupIdentifiable, HasAnAnswerToAnyTimeoutAndItsOwnEnd) {
    testing::VirtualClock clock;
    std::optional<DispatchGroupIdentifiable<int>> group;
    for (const double timeout : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        group.emplace();
        group->notify(DispatchQueue::main(), timeout, [&] { group.reset(); });
        clock.advance(0.0001);
        EXPECT_FALSE(group) << timeout;
    }
    // For the address sanitizer: a callback that is all that holds its group is replaced.
    auto held = std::make_shared<DispatchGroupIdentifiable<int>>();
    auto& last = *held;
    last.notify(DispatchQueue::main(), [held = std::move(held)] {});
    last.notify(DispatchQueue::main(), 1.0, nullptr);
    // For the thread sanitizer: the callback is read on the queue's thread.
    group.emplace();
    for (int round = 0; round < 100; ++round) {
        group->notify(DispatchQueue::global(), [payload = std::make_shared<int>(round)] { ++*payload; });
        group->leave(0);
        group->invalidate();
    }
    clock.settle();
}

}  // namespace corvane
