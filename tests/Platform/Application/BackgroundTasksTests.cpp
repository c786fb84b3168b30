#include <chrono>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Application/BackgroundTaskRegister.hpp>
#include <Corvane/Platform/Application/BackgroundTasks.hpp>
#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using Names = std::vector<std::string>;

TEST(BackgroundTaskRegister, EndsEachTaskOnce) {
    BackgroundTaskRegister tasks;
    const auto first = tasks.begin("first", nullptr);
    tasks.begin("second", nullptr);
    EXPECT_TRUE(tasks.end(first));
    EXPECT_FALSE(tasks.end(first));
    EXPECT_FALSE(tasks.end(BackgroundTasks::invalid));
    EXPECT_NE(tasks.begin("third", nullptr), first) << "an identifier is never given twice";
    EXPECT_EQ(tasks.runningNames(), (Names{"second", "third"}));
}

TEST(BackgroundTaskRegister, WaitsForTasksThatEndElsewhereAndForThoseBegunMeanwhile) {
    testing::VirtualClock clock;
    BackgroundTaskRegister tasks;
    const auto unexpected = [] { ADD_FAILURE() << "expired"; };
    const auto first = tasks.begin("first", unexpected);
    BackgroundTasks::Identifier second = BackgroundTasks::invalid;
    DispatchQueue::main().async([&] {
        second = tasks.begin("second", unexpected);
        EXPECT_TRUE(tasks.end(first));
        DispatchQueue::global().async([&] { EXPECT_TRUE(tasks.end(second)); });
    });
    EXPECT_TRUE(tasks.waitForRunning(5));
    EXPECT_TRUE(tasks.waitForRunning(0)) << "nothing is running any more";
    clock.settle();
}

TEST(BackgroundTaskRegister, ExpiresOnTheMainThreadWhatIsLeftAtTheDeadline) {
    testing::VirtualClock clock;
    BackgroundTaskRegister tasks;
    Names expired;
    BackgroundTasks::Identifier second = BackgroundTasks::invalid;
    tasks.begin("first", [&] {
        EXPECT_TRUE(Thread::isMainThread());
        expired.emplace_back("first");
        EXPECT_TRUE(tasks.end(second)) << "so that its own handler is not called";
    });
    second = tasks.begin("second", [&] { expired.emplace_back("second"); });
    tasks.begin("silent", nullptr);
    BackgroundTasks::Identifier last = BackgroundTasks::invalid;
    last = tasks.begin("last", [&] {
        expired.emplace_back("last");
        EXPECT_TRUE(tasks.end(last));
    });

    const auto start = clock.uptime();
    RunLoop::main().perform([&] {
        clock.advance(4.9);
        EXPECT_EQ(tasks.runningNames().size(), 4U);
        EXPECT_TRUE(expired.empty());
        RunLoop::main().perform([&] { clock.advance(0.2); });
    });
    EXPECT_FALSE(tasks.waitForRunning(5));
    EXPECT_GE(clock.uptime() - start, std::chrono::seconds(5));
    EXPECT_EQ(expired, (Names{"first", "last"}));
    EXPECT_EQ(tasks.runningNames(), Names{});
}

TEST(BackgroundTaskRegister, ExpiresAtOnceWhenThereIsNoTimeOrTheMainRunLoopIsStopped) {
    BackgroundTaskRegister tasks;
    int calls = 0;
    for (const double seconds : {0.0, -1.0, std::nan("")}) {
        tasks.begin("task", [&] { ++calls; });
        EXPECT_FALSE(tasks.waitForRunning(seconds));
    }
    tasks.begin("task", [&] { ++calls; });
    DispatchQueue::main().async([] { RunLoop::main().stop(); });
    EXPECT_FALSE(tasks.waitForRunning(60));
    EXPECT_EQ(calls, 4);
}

TEST(BackgroundTaskRegister, ServesManyThreadsAtOnce) {
    BackgroundTaskRegister tasks;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 200; ++round)
                    EXPECT_TRUE(tasks.end(tasks.begin("task", nullptr)));
            });
        }
        EXPECT_TRUE(tasks.waitForRunning(60));
    }
    EXPECT_EQ(tasks.runningNames(), Names{});
}

}  // namespace
}  // namespace corvane
