#include <cstdlib>
#include <future>
#include <latch>
#include <semaphore>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>

namespace corvane {
namespace {

TEST(WorkerPool, MakesProgressWhileSixtyThreeBlocksBlock) {
    constexpr std::ptrdiff_t blocked = 63;
    DispatchQueue& queue = DispatchQueue::global(QoSClass::utility);
    std::latch allInside(blocked);
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::latch allOut(blocked);
    for (std::ptrdiff_t number = 0; number < blocked; ++number) {
        queue.async([&] {
            allInside.count_down();
            released.wait();
            allOut.count_down();
        });
    }
    allInside.wait();
    std::promise<void> progress;
    queue.async([&] { progress.set_value(); });
    progress.get_future().wait();
    release.set_value();
    allOut.wait();
}

TEST(WorkerPool, ABlockBehindABlockedOneIsTakenOver) {
    DispatchQueue& queue = DispatchQueue::global(QoSClass::userInitiated);
    for (int round = 0; round < 300; ++round) {
        const int between = round % 25;
        std::binary_semaphore lastHasRun(0);
        std::latch done(between + 2);
        queue.async([&] {
            lastHasRun.acquire();
            done.count_down();
        });
        for (int count = 0; count < between; ++count)
            queue.async([&] { done.count_down(); });
        queue.async([&] {
            lastHasRun.release();
            done.count_down();
        });
        done.wait();
    }
}

TEST(WorkerPoolDeathTest, TheProcessExitsCleanlyWhileWorkersWork) {
    EXPECT_EXIT(
        {
            std::latch busy(3);
            for (int count = 0; count < 3; ++count) {
                DispatchQueue::global().async([&] {
                    busy.count_down();
                    for (;;)
                        DispatchQueue::global(QoSClass::background).async([] {});
                });
            }
            DispatchQueue::global().asyncAfter(3600, [] {});
            busy.wait();
            std::exit(7);
        },
        ::testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace corvane
