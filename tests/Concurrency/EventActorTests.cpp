#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Concurrency/EventDebouncer.hpp>
#include <Corvane/Concurrency/EventThrottler.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Mode = EventThrottler::Mode;

class EventActorTest : public ::testing::Test {
  protected:
    /// Starts a task that notes its outcome, "a" or "-a", on the main thread.
    void start(std::string name, Task<bool> submission) {
        spawn(
            [this, name, submission = std::make_shared<Task<bool>>(std::move(submission))]() -> Task<> {
                const bool isFired = co_await std::move(*submission);
                outcome.push_back((isFired ? "" : "-") + name);
            },
            {.executor = DispatchQueue::main()});
        clock.settle();
    }

    void finish(Task<> operation) {
        spawn(std::move(operation));
        clock.settle();
    }

    testing::VirtualClock clock;
    std::vector<std::string> outcome;
};

}  // namespace

TEST_F(EventActorTest, DebouncesTasks) {
    const testing::LogRecorder log;
    auto debouncer = std::make_unique<EventDebouncer>();
    EXPECT_EQ(debouncer->debugDescription(), "Unnamed EventDebouncer (Actor)");
    start("a", debouncer->debounce());
    EXPECT_THAT(log.messages(),
                ElementsAre(StartsWith("asyncOnMain() dispatched from: debounce(), in EventDebouncer.cpp, at line: ")));
    clock.advance(0.2);
    start("b", debouncer->debounce());
    clock.advance(0.2);
    EXPECT_THAT(outcome, ElementsAre("-a"));
    clock.advance(0.1);
    EXPECT_THAT(outcome, ElementsAre("-a", "b"));
    start("c", debouncer->debounce());
    finish(debouncer->invalidate());
    EXPECT_THAT(outcome, ElementsAre("-a", "b", "-c"));

    // What waits, and what has not even begun, does not need the debouncer.
    start("d", debouncer->debounce());
    Task<bool> late = debouncer->debounce();
    debouncer.reset();
    clock.advance(0.3);
    EXPECT_EQ(outcome.back(), "d");
    start("e", std::move(late));
    clock.advance(0.3);
    EXPECT_EQ(outcome.back(), "e");
}

TEST_F(EventActorTest, ThrottlesTasks) {
    EventThrottler throttler("redraw", Mode::immediate, 1.0);
    EXPECT_EQ(throttler.debugDescription(), "redraw");
    EXPECT_EQ(EventThrottler(Mode::deferred).debugDescription(), "Unnamed EventThrottler (Actor)");
    EXPECT_EQ(EventThrottler(Mode::deferred).window(), 0.3);
    start("a", throttler.throttle());
    start("b", throttler.throttle());
    clock.advance(1);
    EXPECT_THAT(outcome, ElementsAre("-a", "b"));
    clock.advance(1.1);
    start("c", throttler.throttle());
    EXPECT_EQ(outcome.back(), "c");
    clock.advance(0.5);
    start("d", throttler.throttle());
    finish(throttler.reset());
    clock.advance(0.9);
    EXPECT_EQ(outcome.back(), "c");
    clock.advance(0.1);
    EXPECT_EQ(outcome.back(), "d");
    start("e", throttler.throttle());
    finish(throttler.invalidate());
    EXPECT_EQ(outcome.back(), "-e");
}

TEST_F(EventActorTest, AnswersEachOfThousandsOnce) {
    EventDebouncer debouncer;
    constexpr int count = 2000;
    auto fired = std::make_shared<int>(0);
    auto denied = std::make_shared<int>(0);
    for (int i = 0; i < count; ++i) {
        spawn([&debouncer, fired, denied]() -> Task<> {
            const bool isFired = co_await debouncer.debounce();
            co_await onMain([&]() -> Task<> {
                ++*(isFired ? fired : denied);
                co_return;
            });
        });
    }
    clock.advance(1);
    EXPECT_EQ(*fired, 1);
    EXPECT_EQ(*denied, count - 1);
}

}  // namespace corvane
