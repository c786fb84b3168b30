#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Concurrency/PreConcurrencyEventDebouncer.hpp>
#include <Corvane/Concurrency/PreConcurrencyEventThrottler.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LogRecorder;
using testing::VirtualClock;
using Mode = PreConcurrencyEventThrottler::Mode;

/// Submissions by name, and what became of them: "a" fired, "-a" was denied.
class EventRegulatorTest : public ::testing::Test {
  protected:
    std::function<void()> event(std::string name, std::function<void()> next = nullptr) {
        return [this, name = std::move(name), next = std::move(next)] {
            outcome.push_back(name);
            if (next) next();
        };
    }

    void submit(PreConcurrencyEventDebouncer& debouncer, const std::string& name, std::function<void()> next = nullptr,
                std::function<void()> nextWhenDenied = nullptr) {
        debouncer.debounce(event(name, std::move(next)), event("-" + name, std::move(nextWhenDenied)));
    }

    void submit(PreConcurrencyEventThrottler& throttler, const std::string& name, std::function<void()> next = nullptr,
                std::function<void()> nextWhenDenied = nullptr) {
        throttler.throttle(event(name, std::move(next)), event("-" + name, std::move(nextWhenDenied)));
    }

    VirtualClock clock;
    std::vector<std::string> outcome;
};

}  // namespace

TEST_F(EventRegulatorTest, DebouncesToTheLastEventAndItsOwnDelay) {
    const LogRecorder log;
    auto debouncer = PreConcurrencyEventDebouncer::make("filter", 0.5);
    for (const auto* name : {"a", "b", "c"}) {
        submit(*debouncer, name);
        clock.advance(0.4);
    }
    EXPECT_THAT(outcome, ElementsAre("-a", "-b"));
    clock.advance(0.1);
    clock.advance(10);
    EXPECT_THAT(outcome, ElementsAre("-a", "-b", "c"));

    submit(*debouncer, "d");
    clock.advance(0.4);
    debouncer->reset();
    clock.advance(0.4);
    EXPECT_EQ(outcome.size(), 3U) << "reset starts the delay over";
    clock.advance(0.1);
    EXPECT_EQ(outcome.back(), "d");

    submit(*debouncer, "e");
    debouncer->invalidate();
    clock.advance(10);
    EXPECT_EQ(outcome.back(), "-e");

    debouncer.reset();
    EXPECT_THAT(log.messages("Unspecified"),
                ElementsAre("filter fires last debounced event", "filter fires last debounced event",
                            "filter has been destroyed"));
    EXPECT_EQ(log.entries().front().level, LogLevel::debug);
}

TEST_F(EventRegulatorTest, ThrottlesToTheLastEventOfAWindow) {
    const LogRecorder log;
    const auto throttler = PreConcurrencyEventThrottler::make("score", Mode::deferred, 1.0);
    submit(*throttler, "a");
    clock.advance(0.9);
    submit(*throttler, "b");
    EXPECT_THAT(outcome, ElementsAre("-a"));
    clock.advance(0.1);
    EXPECT_THAT(outcome, ElementsAre("-a", "b")) << "the window does not start over";
    clock.advance(5);
    submit(*throttler, "c");
    throttler->invalidate();
    submit(*throttler, "d");
    clock.advance(0.5);
    throttler->reset();
    clock.advance(0.5);
    EXPECT_THAT(outcome, ElementsAre("-a", "b", "-c")) << "reset starts the window over";
    clock.advance(0.5);
    EXPECT_EQ(outcome.back(), "d");
    EXPECT_THAT(log.messages(),
                ElementsAre("score delays event", "score fires last delayed event", "score delays event",
                            "score delays event", "score fires last delayed event"));
}

TEST_F(EventRegulatorTest, FiresAtOnceOnlyLongerThanAWindowAfterTheLastOne) {
    const LogRecorder log;
    const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate);
    submit(*throttler, "first");
    EXPECT_THAT(outcome, IsEmpty());
    clock.advance(0.3);
    EXPECT_EQ(outcome.back(), "first");
    clock.advance(0.3);
    submit(*throttler, "exactly one window later");
    EXPECT_EQ(outcome.back(), "first");
    clock.advance(0.3);
    clock.setWallTime(clock.now() - std::chrono::hours(1));
    clock.advance(0.31);
    submit(*throttler, "late");
    EXPECT_EQ(outcome.back(), "late");
    submit(*throttler, "in its window");
    EXPECT_EQ(outcome.back(), "late");
    clock.advance(0.3);
    EXPECT_EQ(outcome.back(), "in its window");
    clock.advance(0.31);
    throttler->invalidate();
    submit(*throttler, "first again");
    EXPECT_EQ(outcome.back(), "in its window");
    EXPECT_THAT(log.messages(), ElementsAre("Unnamed EventThrottler (Synchronous) delays event",
                                            "Unnamed EventThrottler (Synchronous) fires last delayed event",
                                            "Unnamed EventThrottler (Synchronous) delays event",
                                            "Unnamed EventThrottler (Synchronous) fires last delayed event",
                                            "Unnamed EventThrottler (Synchronous) fires immediate event",
                                            "Unnamed EventThrottler (Synchronous) fires last delayed event",
                                            "Unnamed EventThrottler (Synchronous) delays event"));
    throttler->invalidate();
}

TEST_F(EventRegulatorTest, LosesNothingThatItsOwnCallbacksSubmit) {
    const auto debouncer = PreConcurrencyEventDebouncer::make();
    submit(*debouncer, "a", [&] { submit(*debouncer, "from a"); });
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("a"));
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("a", "from a"));

    outcome.clear();
    submit(*debouncer, "b", nullptr, [&] { submit(*debouncer, "from -b"); });
    submit(*debouncer, "c");
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("-b", "-c", "from -b"));

    outcome.clear();
    submit(*debouncer, "d", nullptr, [&] { submit(*debouncer, "from -d"); });
    debouncer->invalidate();
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("-d", "from -d"));

    for (const auto mode : {Mode::deferred, Mode::immediate}) {
        outcome.clear();
        const auto throttler = PreConcurrencyEventThrottler::make(mode);
        submit(*throttler, "a", [&] { submit(*throttler, "from a"); });
        clock.advance(0.3);
        EXPECT_THAT(outcome, ElementsAre("a"));
        clock.advance(0.3);
        EXPECT_THAT(outcome, ElementsAre("a", "from a"));
    }

    outcome.clear();
    const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate);
    submit(*throttler, "a");
    clock.advance(1);
    submit(*throttler, "at once", [&] { submit(*throttler, "from at once"); });
    EXPECT_THAT(outcome, ElementsAre("a", "at once"));
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("a", "at once", "from at once"));
}

TEST_F(EventRegulatorTest, LivesUntilWhatWaitsHasFired) {
    auto debouncer = PreConcurrencyEventDebouncer::make();
    auto throttler = PreConcurrencyEventThrottler::make(Mode::deferred);
    const std::weak_ptr weakDebouncer = debouncer;
    const std::weak_ptr weakThrottler = throttler;
    submit(*debouncer, "a", [&] { weakDebouncer.lock()->invalidate(); });
    submit(*throttler, "b", [&] { weakThrottler.lock()->invalidate(); });
    debouncer.reset();
    throttler.reset();
    clock.advance(0.3);
    EXPECT_THAT(outcome, ElementsAre("a", "b"));
    EXPECT_TRUE(weakDebouncer.expired());
    EXPECT_TRUE(weakThrottler.expired());

    // The owner lets go inside a denial, and inside an event that fires at once.
    debouncer = PreConcurrencyEventDebouncer::make();
    submit(*debouncer, "c", nullptr, [&] { debouncer.reset(); });
    debouncer->invalidate();
    throttler = PreConcurrencyEventThrottler::make(Mode::immediate);
    throttler->throttle(nullptr);
    clock.advance(1);
    submit(*throttler, "d", [&] {
        throttler->invalidate();
        throttler.reset();
    });
    EXPECT_THAT(outcome, ElementsAre("a", "b", "-c", "d"));
}

TEST_F(EventRegulatorTest, HasAnAnswerToAnyTime) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double time : {0.0, -1.0, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        outcome.clear();
        const auto debouncer = PreConcurrencyEventDebouncer::make(std::nullopt, time);
        const auto throttler = PreConcurrencyEventThrottler::make(Mode::immediate, time);
        submit(*debouncer, "debounced");
        submit(*throttler, "throttled");
        EXPECT_THAT(outcome, IsEmpty()) << time;
        clock.advance(0.0001);
        EXPECT_THAT(outcome, ElementsAre("debounced", "throttled")) << time;
    }
    outcome.clear();
    const auto debouncer = PreConcurrencyEventDebouncer::make(std::nullopt, infinity);
    submit(*debouncer, "never");
    clock.advance(1e9);
    EXPECT_THAT(outcome, IsEmpty());
    debouncer->invalidate();
}

}  // namespace corvane
