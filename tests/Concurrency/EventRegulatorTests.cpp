#include <cctype>
#include <limits>

#include <gmock/gmock.h>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>
#include <Corvane/Concurrency/PreConcurrencyEventThrottler.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

#include "tests/Support/Timeline.hpp"

namespace corvane {

namespace {

using Mode = PreConcurrencyEventThrottler::Mode;

/// A letter submits the event of that name: "a" comes of it when it fires, and "-a" when it is denied. One named by a
/// capital submits the small one, either way. 'r' resets, '!' invalidates, 'w' sets the wall clock back.
class Script : public Timeline {
  public:
    template <class Regulator>
    std::string playWith(Regulator& regulator, std::string_view script) {
        Steps steps{{'r', [&] { regulator.reset(); }},
                    {'!', [&] { regulator.invalidate(); }},
                    {'w', [&] { clock.setWallTime(clock.now() - std::chrono::hours(1)); }}};
        for (const char name : {'a', 'b', 'c', 'A', 'B'})
            steps[name] = [this, &regulator, name] { submit(regulator, name); };
        return play(script, 0.1, steps);
    }

  private:
    template <class Regulator>
    void submit(Regulator& regulator, char name) {
        const auto happens = [this, &regulator, name](std::string_view how) {
            (outcome += how) += name;
            if (std::isupper(name) != 0) submit(regulator, static_cast<char>(std::tolower(name)));
        };
        const auto event = [happens] { happens(""); };
        const auto onDeny = [happens] { happens("-"); };
        if constexpr (requires { regulator.debounce(event); }) {
            regulator.debounce(event, onDeny);
        } else {
            regulator.throttle(event, onDeny);
        }
    }
};

}  // namespace

TEST(EventRegulator, DebouncesAndThrottles) {
    const struct {
        char kind;  // debouncer, or throttler, deferred or immediate, of 0.5 s
        const char* script;
        const char* outcome;
    } rows[] = {
        {'d', "a....b....c......", "....-a....-b.....c."},
        {'d', "a....b.....", "....-a.....b"},
        {'d', "a....r......", ".........a."},
        {'d', "a..!......", "..-a......"},
        {'d', "A..........", ".....A.....a"},
        {'d', "Ab.....", "-A-b.....a"},
        {'d', "A!.....", "-A.....a"},
        {'f', "a....b......", "....-a.b....."},
        {'f', "a.........b.....", ".....a.........b"},
        {'f', "a...r.....", "........a"},
        {'f', "a..!..b......", "..-a.......b."},
        {'f', "A..........", ".....A.....a"},
        {'f', "Ab.....", "-A-b.....a"},
        {'i', "a......", ".....a."},
        {'i', "a..........b.....", ".....a..........b"},
        {'i', "a....w.......bc......", ".....a......b.....c."},
        {'i', "a...........B......", ".....a......B.....b."},
        {'i', "a...........!b.....", ".....a...........b"},
    };

    for (const auto& [kind, script, outcome] : rows) {
        const auto debouncer = PreConcurrencyEventDebouncer::make("", 0.5);
        const auto throttler = PreConcurrencyEventThrottler::make(kind == 'f' ? Mode::deferred : Mode::immediate, 0.5);
        Script play;
        EXPECT_EQ(kind == 'd' ? play.playWith(*debouncer, script) : play.playWith(*throttler, script), outcome)
            << kind << ' ' << script;
    }
}

TEST(EventRegulator, LogsItsDecisions) {
    const testing::LogRecorder log;
    Script script;
    auto debouncer = PreConcurrencyEventDebouncer::make("filter");
    script.playWith(*debouncer, "ab....");
    debouncer.reset();
    script.playWith(*PreConcurrencyEventThrottler::make(Mode::immediate), "a.......bc...");
    EXPECT_THAT(log.messages("Unspecified"),
                ::testing::ElementsAre("filter fires last debounced event", "filter has been destroyed",
                                       "Unnamed EventThrottler (Synchronous) delays event",
                                       "Unnamed EventThrottler (Synchronous) fires last delayed event",
                                       "Unnamed EventThrottler (Synchronous) fires immediate event",
                                       "Unnamed EventThrottler (Synchronous) fires last delayed event",
                                       "Unnamed EventThrottler (Synchronous) has been destroyed"));
    EXPECT_EQ(log.entries().front().level, LogLevel::debug);
}

TEST(EventRegulator, LivesUntilWhatWaitsHasFired) {
    Script script;
    auto debouncer = PreConcurrencyEventDebouncer::make();
    const std::weak_ptr weak = debouncer;
    debouncer->debounce([&] {
        script.outcome += 'a';
        weak.lock()->invalidate();
    });
    debouncer.reset();
    EXPECT_EQ(script.playWith(*weak.lock(), "..."), "...a");
    EXPECT_TRUE(weak.expired());

    // The owner lets go inside an event that fires at once.
    auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate);
    script.playWith(*throttler, "a.......");
    throttler->throttle([&] {
        throttler->invalidate();
        throttler.reset();
    });
    EXPECT_EQ(throttler, nullptr);
}

TEST(EventRegulator, LetsWaitWhatAnEventSubmitsHoweverLongItTakes) {
    Script script;
    const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate, 0.5);
    throttler->throttle([&] {
        script.clock.advance(1);
        throttler->throttle([&] { script.outcome += 'b'; });
        script.outcome += 'a';
    });
    script.clock.advance(0.5);
    EXPECT_EQ(script.playWith(*throttler, "......"), "a.....b.");
}

TEST(EventRegulator, HasAnAnswerToAnyTime) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double time : {0.0, -1.0, -infinity, std::numeric_limits<double>::quiet_NaN(), infinity, 1e300}) {
        Script script;
        const auto debouncer = PreConcurrencyEventDebouncer::make(std::nullopt, time);
        const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate, time);
        script.playWith(*debouncer, "a");
        script.playWith(*throttler, "b");
        script.clock.advance(0.0001);
        EXPECT_EQ(script.outcome, time > 0 ? "" : "ab") << time;
        debouncer->invalidate();
        throttler->invalidate();
    }
}

}  // namespace corvane
