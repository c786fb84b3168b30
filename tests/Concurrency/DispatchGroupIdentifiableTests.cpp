#include <cctype>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Concurrency/DispatchGroupIdentifiable.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

/// In a script a small letter enters and its capital leaves; 'n' has the group tell, 't' also after two seconds; '!'
/// invalidates, 'x' ends the group, and '.' lets a second pass. What comes is '*' for each call, and '.' for the time.
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
        testing::VirtualClock clock;
        std::optional<DispatchGroupIdentifiable<char>> group(std::in_place);
        std::string outcome;
        for (const char* step = script; *step != '\0'; ++step) {
            if (*step == '.') {
                outcome += '.';
                clock.advance(1);
            } else if (*step == 'n' || *step == 't') {
                const auto timeout = *step == 't' ? std::optional(2.0) : std::nullopt;
                group->notify(DispatchQueue::main(), timeout, [&] { outcome += '*'; });
            } else if (*step == '!') {
                group->invalidate();
                EXPECT_TRUE(group->waitingItems().empty());
            } else if (*step == 'x') {
                group.reset();
            } else if (std::isupper(*step) != 0) {
                group->leave(static_cast<char>(std::tolower(*step)));
            } else {
                group->enter(*step);
            }
        }
        EXPECT_EQ(outcome, expected) << script;
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
