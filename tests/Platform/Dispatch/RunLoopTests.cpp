#include <poll.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Timer.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;

bool isReadable(int descriptor, int timeout) {
    pollfd question{descriptor, POLLIN, 0};
    return ::poll(&question, 1, timeout) == 1;
}

TEST(RunLoop, ABlockThatPumpsSeesTheRestOfItsPassOnce) {
    RunLoop& loop = RunLoop::main();
    std::vector<int> ran;
    loop.perform([&] {
        ran.push_back(1);
        loop.perform([&] { ran.push_back(4); });
        EXPECT_TRUE(loop.drain());
        ran.push_back(5);
    });
    loop.perform([&] {
        ran.push_back(2);
        EXPECT_TRUE(loop.drain());  // one level deeper
        EXPECT_FALSE(loop.drain());
    });
    loop.perform([&] { ran.push_back(3); });
    while (loop.drain()) {
    }
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4, 5));
}

TEST(RunLoop, StopEndsTheInnermostRunAtOnceAndLeavesTheRestQueued) {
    RunLoop& loop = RunLoop::main();
    std::vector<std::string> ran;
    loop.perform([&] {
        loop.run();
        ran.emplace_back("inner ended");
    });
    loop.perform([&] {
        ran.emplace_back("stop inner");
        loop.stop();
    });
    loop.perform([&] {
        ran.emplace_back("stop outer");
        loop.stop();
    });
    loop.perform([&] { ran.emplace_back("rest"); });
    loop.run();
    EXPECT_THAT(ran, ElementsAre("stop inner", "inner ended", "stop outer"));
    loop.stop();
    EXPECT_FALSE(loop.runOnce()) << "a stop before the run ends it as soon as it starts";
    EXPECT_EQ(ran.size(), 3U);
    EXPECT_TRUE(loop.runOnce());
    EXPECT_THAT(ran, ElementsAre("stop inner", "inner ended", "stop outer", "rest"));
}

TEST(RunLoop, RunUntilEndsWhenTheWallClockIsThere) {
    RunLoop& loop = RunLoop::main();
    loop.runUntil(Clock::current().now() - std::chrono::seconds(1));
    const Date limit = Clock::current().now() + std::chrono::milliseconds(2);
    loop.runUntil(limit);
    EXPECT_GE(Clock::current().now(), limit);

    testing::VirtualClock clock;
    loop.perform([&] { clock.setWallTime(clock.now() + std::chrono::hours(1)); });
    loop.runUntil(clock.now() + std::chrono::minutes(30));
}

TEST(RunLoop, TellsAForeignLoopWhenThereIsSomethingToDo) {
    RunLoop& loop = RunLoop::main();
    const int descriptor = loop.pollDescriptor();
    EXPECT_EQ(loop.pollDescriptor(), descriptor);
    while (loop.drain()) {
    }
    EXPECT_FALSE(isReadable(descriptor, 0));

    int ran = 0;
    std::thread([&] { loop.perform([&] { ++ran; }); }).join();
    EXPECT_TRUE(isReadable(descriptor, 0));
    EXPECT_TRUE(loop.drain());
    EXPECT_EQ(ran, 1);
    EXPECT_FALSE(isReadable(descriptor, 0));

    // A block queued by a block, and the rest after a stop, are something to do as well.
    loop.perform([&] {
        loop.perform([&] { ++ran; });
        loop.perform([&] { ++ran; });
        loop.stop();
    });
    loop.run();
    EXPECT_TRUE(isReadable(descriptor, 0));
    EXPECT_TRUE(loop.drain());
    EXPECT_EQ(ran, 3);

    const auto timer = Timer::scheduled(0.001, false, [&](Timer&) { ++ran; });
    while (ran == 3) {
        EXPECT_TRUE(isReadable(descriptor, -1));
        loop.drain();
    }
    EXPECT_FALSE(isReadable(descriptor, 0));
}

TEST(RunLoop, AThreadsLoopEndsWithTheThread) {
    const auto token = std::make_shared<int>();
    std::shared_ptr<Timer> timer;
    bool ran = false;
    std::thread([&] {
        RunLoop& loop = RunLoop::current();
        EXPECT_EQ(&loop, &RunLoop::current());
        EXPECT_NE(&loop, &RunLoop::main());
        loop.perform([&, token] { ran = true; });
        timer = Timer::scheduled(3600, true, [token](Timer&) {}, loop);
        // What is destroyed with the loop may ask for the thread's loop once more.
        struct AsksAgain {
            ~AsksAgain() { RunLoop::current().drain(); }
        };
        loop.perform([asks = std::make_shared<AsksAgain>()] {});
    }).join();
    EXPECT_FALSE(ran);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_FALSE(timer->isValid());
    timer->restart(1);
    timer->invalidate();
}

TEST(RunLoopDeathTest, MisuseStopsTheProcess) {
    EXPECT_DEATH(std::thread([] { RunLoop::main().drain(); }).join(),
                 "RunLoop::drain was called on another thread than the loop's own");
    EXPECT_DEATH(
        {
            RunLoop::main().perform([] { throw 1; });
            RunLoop::main().drain();
        },
        "");
}

}  // namespace
}  // namespace corvane
