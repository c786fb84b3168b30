#include <gmock/gmock.h>

#include <Corvane/Concurrency/EventDebouncer.hpp>
#include <Corvane/Concurrency/EventThrottler.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Testing/LogRecorder.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

class EventActorTest : public ::testing::Test {
  protected:
    /// Starts a task that notes its outcome, "a" or "-a", on the main thread.
    void submit(const std::string& name, Task<bool> submission) {
        const auto note = [](std::string& noted, std::string itsName, Task<bool> outcome) -> Task<> {
            noted += (co_await std::move(outcome) ? "" : "-") + itsName;
        };
        spawn(onMain(note(noted_, name, std::move(submission))));
        clock.settle();
    }

    /// What has come since the last time.
    std::string noted(double seconds) {
        clock.advance(seconds);
        return std::exchange(noted_, "");
    }

    testing::VirtualClock clock;

  private:
    std::string noted_;
};

}  // namespace

TEST_F(EventActorTest, DebouncesTasks) {
    const testing::LogRecorder log;
    auto debouncer = std::make_unique<EventDebouncer>();
    EXPECT_EQ(debouncer->debugDescription(), "Unnamed EventDebouncer (Actor)");
    submit("a", debouncer->debounce());
    EXPECT_THAT(log.messages(), ::testing::ElementsAre(::testing::StartsWith(
                                    "asyncOnMain() dispatched from: debounce(), in EventDebouncer.cpp, at line: ")));
    EXPECT_EQ(noted(0.2), "");
    submit("b", debouncer->debounce());
    EXPECT_EQ(noted(0.29), "-a");
    EXPECT_EQ(noted(0.01), "b");
    submit("c", debouncer->debounce());
    spawn(debouncer->invalidate());
    EXPECT_EQ(noted(0), "-c");

    // What waits, and what has not even begun, does not need the debouncer.
    submit("d", debouncer->debounce());
    Task<bool> late = debouncer->debounce();
    debouncer.reset();
    EXPECT_EQ(noted(0.3), "d");
    submit("e", std::move(late));
    EXPECT_EQ(noted(0.3), "e");
}

TEST_F(EventActorTest, ThrottlesTasks) {
    EXPECT_EQ(EventThrottler(EventThrottler::Mode::deferred).debugDescription(), "Unnamed EventThrottler (Actor)");
    EventThrottler throttler("redraw", EventThrottler::Mode::immediate, 1.0);
    EXPECT_EQ(throttler.debugDescription(), "redraw");
    submit("a", throttler.throttle());
    submit("b", throttler.throttle());
    EXPECT_EQ(noted(1), "-ab");
    submit("c", throttler.throttle());
    clock.advance(0.5);
    spawn(throttler.reset());
    EXPECT_EQ(noted(0), "");
    EXPECT_EQ(noted(0.9), "");
    EXPECT_EQ(noted(0.1), "c");
    submit("d", throttler.throttle());
    spawn(throttler.invalidate());
    EXPECT_EQ(noted(0), "-d");
}

TEST_F(EventActorTest, AnswersEachOfThousandsOnce) {
    EventDebouncer debouncer;
    std::string all;
    const auto note = [&]() -> Task<> { all += co_await debouncer.debounce() ? '+' : '-'; };
    for (int i = 0; i < 2000; ++i)
        spawn(onMain(note));
    clock.advance(1);
    EXPECT_EQ(all, std::string(1999, '-') + '+');
}

}  // namespace corvane
