#include <gtest/gtest.h>

#include <Corvane/DomainSpecific/Tessaly/Networking/Retry/RetryHandler.hpp>

#include "tests/Support/Timeline.hpp"

namespace corvane {

/// In a script 's' starts the handler with both callbacks, 'R' and 'M' with another one of the two, 'X' with one that
/// lets it go, and 'N' with none; 'e' records an error; '?' asks whether it is started; 'o' stops, 'z' resets and 'x'
/// ends it. Small letters come of the callbacks.
TEST(RetryHandler, RetriesUpToItsMaximum) {
    const struct {
        std::int64_t maximum;
        double interval;
        const char* script;
        const char* outcome;
    } rows[] = {
        {1, 0, "?s?ee?", "-+rm-"},
        {3, 0, "seeeee", "rrrm"},
        {0, 0, "see", "rm"},
        {-2, 0, "see", "rm"},
        {2, 0, "eNe", ""},
        {1, -1, "se.", ".rm"},
        {2, 2, "se.e..e..e..", "..r...rm.."},
        {2, 2, "sNe..e..", "..r..rm"},
        {2, 2, "seeo...Re..", ".....q"},
        {2, 2, "se..ez...e..e..", "..r.....r..rm"},
        {2, 2, "sRMe..e..", "..q..qn"},
        {1, 2, "sXe..", "..m"},
        {3, 2, "sex...", "..."},
    };

    for (const auto& [maximum, interval, script, outcome] : rows) {
        Timeline timeline;
        auto handler = RetryHandler::make(maximum, interval);
        const auto note = [&](char letter) { return [&timeline, letter] { timeline.outcome += letter; }; };
        EXPECT_EQ(timeline.play(script, 1,
                                {{'s', [&] { handler->start(note('r'), note('m')); }},
                                 {'R', [&] { handler->start(note('q')); }},
                                 {'M', [&] { handler->start(nullptr, note('n')); }},
                                 {'X', [&] { handler->start([&] { handler.reset(); }); }},
                                 {'N', [&] { handler->start(); }},
                                 {'e', [&] { handler->recordError(); }},
                                 {'?', [&] { timeline.outcome += handler->isStarted() ? '+' : '-'; }},
                                 {'o', [&] { handler->stop(); }},
                                 {'z', [&] { handler->reset(); }},
                                 {'x', [&] { handler.reset(); }}}),
                  outcome)
            << script;
    }
}

}  // namespace corvane
