#include <cctype>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/DispatchGroupIdentifiable.hpp>

#include "tests/Support/Timeline.hpp"

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

TEST(DispatchGroupIdentifiable, MayEndInItsCallbackAndBeHeldByItAlone) {
    testing::VirtualClock clock;
    std::optional<DispatchGroupIdentifiable<int>> group(std::in_place);
    group->notify(DispatchQueue::main(), 0.0, [&] { group.reset(); });
    clock.advance(0.0001);
    EXPECT_FALSE(group);
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
