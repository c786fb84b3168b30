#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane::testing {
namespace {

using ::testing::ElementsAre;

TEST(VirtualClock, StandsStillUntilItIsMoved) {
    const Clock& system = Clock::current();
    {
        VirtualClock clock(Date(std::chrono::seconds(1000)));
        EXPECT_NE(&Clock::current(), &system);
        EXPECT_EQ(clock.now(), Date(std::chrono::seconds(1000)));
        const SteadyInstant start = clock.uptime();
        clock.advance(2.5);
        clock.advance(-1);
        EXPECT_EQ(clock.now(), Date(std::chrono::duration<double>(1002.5)));
        EXPECT_EQ(Clock::current().timeToWait(start), std::chrono::nanoseconds::zero());
        EXPECT_EQ(Clock::current().timeToWait(clock.uptime() + std::chrono::nanoseconds(1)), std::nullopt);
        clock.setWallTime(Date(std::chrono::seconds(7)));
        clock.advance(1);
        EXPECT_EQ(clock.now(), Date(std::chrono::seconds(8)));
        EXPECT_EQ(clock.uptime() - start, std::chrono::milliseconds(3500));
    }
    EXPECT_EQ(&Clock::current(), &system);
}

TEST(VirtualClock, StepsThroughDeadlinesOfAllThreadsInOrder) {
    VirtualClock clock;
    const SteadyInstant start = clock.uptime();
    const auto seconds = [&] { return std::chrono::duration<double>(clock.uptime() - start).count(); };
    std::vector<double> times;  // touched by one thread at a time
    const auto serial = DispatchQueue::serial("clock test");
    const auto timer = Timer::scheduled(1, true, [&](Timer&) { times.push_back(seconds()); });
    serial->asyncAfter(1.5, [&] {
        times.push_back(seconds());
        DispatchQueue::global(QoSClass::background).asyncAfter(1, [&] {
            times.push_back(seconds());
            DispatchQueue::main().async([&] { times.push_back(seconds()); });
        });
    });
    clock.advance(3.25);
    timer->invalidate();
    EXPECT_THAT(times, ElementsAre(1, 1.5, 2, 2.5, 2.5, 3));
    EXPECT_EQ(seconds(), 3.25);
}

TEST(VirtualClock, SettleWaitsForWhatWorkersCause) {
    VirtualClock clock;
    for (int round = 0; round < 200; ++round) {
        std::atomic<int> ran = 0;
        DispatchQueue::global().async([&] {
            DispatchQueue::main().sync([&] { ++ran; });
            DispatchQueue::serial("settled")->async([&] {
                DispatchQueue::main().async([&] { ++ran; });
                ++ran;
            });
        });
        clock.settle();
        ASSERT_EQ(ran, 3);
    }
}

TEST(VirtualClock, IsMovedFromAnotherThreadWhileTheMainLoopRuns) {
    VirtualClock clock;
    int fired = 0;
    const auto timer = Timer::scheduled(1, true, [&](Timer&) { ++fired; });
    std::thread mover([&] {
        clock.advance(10);
        RunLoop::main().stop();
    });
    RunLoop::main().run();
    mover.join();
    timer->invalidate();
    EXPECT_EQ(fired, 10);
}

TEST(VirtualClock, NeverComesToTheEndOfTime) {
    VirtualClock clock;
    const auto timer = Timer::scheduled(1e18, false, [](Timer&) { ADD_FAILURE() << "292 years are never over"; });
    clock.advance(1e18);
    clock.advance(1);
    timer->invalidate();
}

TEST(VirtualClock, PuttingItInForceWakesWhoWaits) {
    std::promise<void> done;
    std::thread other([&] {
        // A deadline an hour ahead on the system's clock, for which the loop goes to sleep.
        RunLoop& loop = RunLoop::current();
        const auto timer = Timer::scheduled(3600, false, [&](Timer&) { loop.stop(); }, loop);
        loop.perform([&] { done.set_value(); });
        loop.run();
    });
    done.get_future().wait();
    VirtualClock clock;
    clock.advance(3601);
    other.join();
}

TEST(VirtualClockDeathTest, ThereIsOneAtATime) {
    const VirtualClock clock;
    EXPECT_DEATH(VirtualClock(), "A VirtualClock is in force already");
}

}  // namespace
}  // namespace corvane::testing
