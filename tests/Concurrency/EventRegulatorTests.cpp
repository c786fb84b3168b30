#include <cctype>
#include <limits>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>
#include <Corvane/Concurrency/PreConcurrencyEventThrottler.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::ElementsAre;
using Mode = PreConcurrencyEventThrottler::Mode;

/// Plays a script and writes what comes of it. A letter submits the event of that name; '.' lets 0.1 s pass; 'r'
/// resets,
/// '!' invalidates, 'w' sets the wall clock back. What comes is the event's name when it fires, with '-' before it when
/// it is denied, and '.' for the time. An event named by a capital submits the small one, whether it fires or is
/// denied.
class Script {
  public:
    template <class Regulator>
    std::string play(Regulator& regulator, const std::string& script) {
        for (const char step : script) {
            if (step == '.') {
                outcome += '.';
                clock.advance(0.1);
            } else if (step == 'r') {
                regulator.reset();
            } else if (step == '!') {
                regulator.invalidate();
            } else if (step == 'w') {
                clock.setWallTime(clock.now() - std::chrono::hours(1));
            } else {
                submit(regulator, step);
            }
        }
        return outcome;
    }

    testing::VirtualClock clock;
    std::string outcome;

  private:
    template <class Regulator>
    void submit(Regulator& regulator, char name) {
        const auto happens = [this, &regulator, name](const char* how) {
            outcome += how;
            outcome += name;
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
        {'d', "a....x.....", "....-a.....x"},
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
        Script play;
        SCOPED_TRACE(kind);
        if (kind == 'd') {
            const auto debouncer = PreConcurrencyEventDebouncer::make("", 0.5);
            EXPECT_EQ(play.play(*debouncer, script), outcome) << script;
        } else {
            const auto mode = kind == 'f' ? Mode::deferred : Mode::immediate;
            const auto throttler = PreConcurrencyEventThrottler::make("", mode, 0.5);
            EXPECT_EQ(play.play(*throttler, script), outcome) << script;
        }
    }
}

TEST(EventRegulator, LogsItsDecisions) {
    const testing::LogRecorder log;
    Script script;
    auto debouncer = PreConcurrencyEventDebouncer::make("filter");
    script.play(*debouncer, "ab....");
    debouncer.reset();
    script.play(*PreConcurrencyEventThrottler::make(Mode::immediate), "a.......bc...");
    EXPECT_THAT(log.messages("Unspecified"),
                ElementsAre("filter fires last debounced event", "filter has been destroyed",
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
    EXPECT_EQ(script.play(*weak.lock(), "..."), "...a");
    EXPECT_TRUE(weak.expired());

    // The owner lets go inside a denial, and inside an event that fires at once.
    debouncer = PreConcurrencyEventDebouncer::make();
    debouncer->debounce(nullptr, [&] { debouncer.reset(); });
    debouncer->invalidate();
    EXPECT_EQ(debouncer, nullptr);
    auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate);
    throttler->throttle(nullptr);
    script.clock.advance(1);
    throttler->throttle([&] {
        throttler->invalidate();
        throttler.reset();
    });
    EXPECT_EQ(throttler, nullptr);
}

TEST(EventRegulator, HasAnAnswerToAnyTime) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double time : {0.0, -1.0, -infinity, std::numeric_limits<double>::quiet_NaN(), infinity, 1e300}) {
        Script script;
        const auto debouncer = PreConcurrencyEventDebouncer::make(std::nullopt, time);
        const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate, time);
        script.play(*debouncer, "d");
        script.play(*throttler, "t");
        script.clock.advance(0.0001);
        EXPECT_EQ(script.outcome, time > 0 ? "" : "dt") << time;
        debouncer->invalidate();
        throttler->invalidate();
    }
}

}  // namespace corvane
