#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <future>
#include <memory>
#include <numeric>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Dispatch/DispatchQueue.hpp>
#include <Corvane/Platform/Dispatch/Private/InPlace.hpp>
#include <Corvane/Platform/Dispatch/Private/MainQueueBatch.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

int niceOfThisThread() {
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(DispatchQueue, ABlockCarriesTheNiceValueOfItsClassAndIsNeverLowered) {
    using enum QoSClass;
    DispatchQueue* const global = &DispatchQueue::global(utility);
    const auto serial = DispatchQueue::serial("lifted", {utility, 0});
    const auto nested = DispatchQueue::serial("nested", {}, serial);

    const struct {
        DispatchQueue* queue;
        QoSClass blocks;
        int nice;
    } cases[] = {
        {&DispatchQueue::global(background), unspecified, 15},
        {&DispatchQueue::global(default_), unspecified, 2},
        {&DispatchQueue::global(userInteractive), unspecified, 0},
        {&DispatchQueue::global(unspecified), unspecified, 2},
        {global, unspecified, 8},
        {global, userInitiated, 1},
        {global, background, 8},
        {serial.get(), userInitiated, 1},
        {serial.get(), background, 8},
        {nested.get(), userInitiated, 1},
        {nested.get(), background, 8},
    };

    const int processNice = niceOfThisThread();
    for (const auto& each : cases) {
        std::promise<int> promise;
        // By way of the lowest class: what starts a worker does not rub off on it.
        DispatchQueue::global(background).async([&] {
            each.queue->async(
                [&] {
                    EXPECT_TRUE(each.queue->isCurrent());
                    promise.set_value(niceOfThisThread());
                },
                {each.blocks, 0});
        });
        EXPECT_EQ(promise.get_future().get(), std::min(processNice + each.nice, 19))
            << each.queue->label() << ' ' << description(each.blocks);
    }
}

TEST(DispatchQueue, ASerialQueueKeepsEachProducersOrderAndRunsOneBlockAtATime) {
    constexpr int producers = 4;
    constexpr int blocks = 5000;
    const auto target = DispatchQueue::serial("target");
    const auto onTarget = DispatchQueue::serial("ordered", {QoSClass::userInitiated, 0}, target);
    const auto onPool = DispatchQueue::serial("ordered", {QoSClass::userInitiated, 0});
    for (const auto& queue : {onTarget, onPool}) {
        std::vector<int> next(producers, 0);  // guarded by the queue alone
        std::atomic<int> inside = 0;
        bool isRight = true;
        std::vector<std::thread> threads;
        for (std::size_t producer = 0; producer < producers; ++producer) {
            threads.emplace_back([&, producer] {
                for (int number = 0; number < blocks; ++number) {
                    // Lifting now and then must not let a block overtake another.
                    const DispatchQoS qos{number % 16 == 0 ? QoSClass::userInteractive : QoSClass::unspecified, 0};
                    auto block = [&, producer, number] {
                        isRight &= inside.fetch_add(1) == 0 && next[producer]++ == number;
                        inside.fetch_sub(1);
                    };
                    // Nor must one that finds the queue idle and runs in place.
                    if (number % 8 == 0) {
                        InPlace::run(*queue, block);
                    } else {
                        queue->async(block, qos);
                    }
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        queue->sync([] {});
        EXPECT_TRUE(isRight);
        EXPECT_THAT(next, ElementsAreArray(std::vector<int>(producers, blocks)));
    }
}

TEST(DispatchQueue, ABlockRunsInPlaceOnlyWhereNothingElseRuns) {
    const auto queue = DispatchQueue::serial("idle");
    const auto nested = DispatchQueue::serial("nested", {}, queue);
    std::vector<int> order;
    InPlace::run(*queue, [&] {
        EXPECT_TRUE(queue->isCurrent() && Thread::isMainThread());
        // Busy now: what comes waits its turn, and leaves this thread.
        InPlace::run(*queue, [&] { order.push_back(Thread::isMainThread() ? -1 : 2); });
        order.push_back(1);
    });
    queue->sync([] {});
    // Nothing but its target's own excludes others from the target.
    InPlace::run(*nested, [&] { order.push_back(queue->isCurrent() && !Thread::isMainThread() ? 3 : -3); });
    nested->sync([] {});
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(DispatchQueue, BlocksForTheMainQueueThatCameTogetherKeepTheirOrder) {
    std::vector<int> order;
    std::thread([&] {
        const MainQueueBatch batch;
        for (int number = 0; number < 20; ++number)
            DispatchQueue::main().async([&order, number] { order.push_back(number); });
    }).join();
    while (RunLoop::main().drain()) {
    }
    std::vector<int> all(20);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(order, all);
}

TEST(DispatchQueue, KnowsWhichQueuesABlockRunsOn) {
    const auto target = DispatchQueue::serial("target");
    const auto queue = DispatchQueue::serial("queue", {}, target);
    EXPECT_FALSE(queue->isCurrent());
    queue->sync([&] {
        EXPECT_TRUE(queue->isCurrent());
        EXPECT_TRUE(target->isCurrent());
        EXPECT_TRUE(DispatchQueue::global().isCurrent());
        EXPECT_FALSE(DispatchQueue::global(QoSClass::utility).isCurrent());
        EXPECT_FALSE(DispatchQueue::main().isCurrent());
    });
    target->sync([&] { EXPECT_FALSE(queue->isCurrent()); });
    EXPECT_FALSE(target->isCurrent());

    const auto onMain = DispatchQueue::serial("on main", {}, DispatchQueue::main().shared_from_this());
    onMain->async([&] { EXPECT_TRUE(onMain->isCurrent() && Thread::isMainThread()); });
    EXPECT_TRUE(RunLoop::main().drain());
}

TEST(DispatchQueue, SyncGivesBackValuesAndExceptions) {
    const auto serial = DispatchQueue::serial("sync");
    for (DispatchQueue* const queue : {serial.get(), &DispatchQueue::global()}) {
        EXPECT_EQ(queue->sync([] { return std::make_unique<int>(7); }).operator*(), 7);
        EXPECT_THROW(queue->sync([] { throw std::runtime_error("no"); }), std::runtime_error);
        EXPECT_THROW(queue->sync([]() -> int { throw std::runtime_error("no"); }), std::runtime_error);
    }
    const std::thread::id here = std::this_thread::get_id();
    EXPECT_EQ(DispatchQueue::global().sync([] { return std::this_thread::get_id(); }), here);
    EXPECT_NE(serial->sync([] { return std::this_thread::get_id(); }), here);

    // From a worker to the main thread, which is awake in its loop.
    DispatchQueue::global().async([&] {
        EXPECT_TRUE(DispatchQueue::main().sync([] { return Thread::isMainThread(); }));
        RunLoop::main().stop();
    });
    RunLoop::main().run();
}

TEST(DispatchQueueDeathTest, SyncOnAQueueThatWaitsForTheCallerStopsTheProcess) {
    const auto target = DispatchQueue::serial("target");
    const auto queue = DispatchQueue::serial("queue", {}, target);
    EXPECT_DEATH(DispatchQueue::main().sync([] {}), "sync was called on the queue \"corvane.main\"");
    EXPECT_DEATH(queue->sync([&] { queue->sync([] {}); }), "sync was called on the queue \"queue\"");
    EXPECT_DEATH(queue->sync([&] { target->sync([] {}); }), "sync was called on the queue \"target\"");
    const auto other = DispatchQueue::serial("other");
    EXPECT_DEATH(queue->sync([&] { other->sync([&] { queue->sync([] {}); }); }), "queue \"queue\"");
    EXPECT_DEATH(queue->sync([&] { DispatchQueue::main().sync([] {}); }), "queue \"corvane.main\"");
    EXPECT_DEATH(target->sync([&] { queue->sync([] {}); }), "queue \"queue\"");
    const auto onMain = DispatchQueue::serial("on main", {}, DispatchQueue::main().shared_from_this());
    EXPECT_DEATH(onMain->sync([] {}), "queue \"on main\"");
}

TEST(DispatchQueue, DelayedBlocksComeInOrderOnTheClockInForce) {
    testing::VirtualClock clock;
    const auto serial = DispatchQueue::serial("delayed");
    for (DispatchQueue* const queue : {serial.get(), &DispatchQueue::main()}) {
        std::vector<int> ran;
        queue->asyncAfter(2, [&] { ran.push_back(2); });
        queue->asyncAfter(1, [&] { ran.push_back(1); });
        for (int number = 3; number < 10; ++number)
            queue->asyncAfter(2, [&, number] { ran.push_back(number); });
        for (const double never : {9.3e9, 1e300, HUGE_VAL})
            queue->asyncAfter(never, [&] { ran.push_back(99); });
        for (const double now : {0.0, -1.0, -HUGE_VAL, std::nan("")})
            queue->asyncAfter(now, [&] { ran.push_back(0); });
        clock.settle();
        EXPECT_THAT(ran, ElementsAre(0, 0, 0, 0));
        ran.erase(ran.begin(), ran.end() - 1);
        clock.advance(1.999);
        EXPECT_THAT(ran, ElementsAre(0, 1));
        clock.advance(0.001);
        EXPECT_THAT(ran, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
    }
}

TEST(DispatchQueue, NothingIsLostBetweenQueuesUnderStress) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    testing::VirtualClock clock;
    constexpr QoSClass classes[] = {QoSClass::background, QoSClass::utility, QoSClass::default_,
                                    QoSClass::userInitiated, QoSClass::userInteractive};
    std::vector<DispatchQueue*> queues = {&DispatchQueue::main()};
    for (const QoSClass qosClass : classes)
        queues.push_back(&DispatchQueue::global(qosClass));
    std::vector<std::shared_ptr<DispatchQueue>> serials;
    for (unsigned number = 0; number < 4; ++number) {
        serials.push_back(DispatchQueue::serial("serial", {classes[number], 0}, number == 3 ? serials[0] : nullptr));
        queues.push_back(serials.back().get());
    }
    std::atomic<int> ran = 0;

    struct Hop {
        void operator()() {
            ran->fetch_add(1, std::memory_order_relaxed);
            if (left == 0) return;
            DispatchQueue& next = *(*queues)[random() % queues->size()];
            Hop hop = *this;
            --hop.left;
            const DispatchQoS qos{static_cast<QoSClass>(random() % 6), 0};
            if (random() % 4 == 0) {
                next.asyncAfter(static_cast<double>(random() % 8) * 0.001, hop, qos);
            } else {
                next.async(hop, qos);
            }
        }

        const std::vector<DispatchQueue*>* queues;
        std::atomic<int>* ran;
        std::minstd_rand random;
        int left;
    };

    constexpr int chains = 200;
    constexpr int hops = 100;
    for (unsigned chain = 0; chain < chains; ++chain) {
        queues[chain % queues.size()]->async(Hop{&queues, &ran, std::minstd_rand(seed + chain), hops - 1});
    }
    clock.advance(1);
    EXPECT_EQ(ran.load(), chains * hops);
}

}  // namespace
}  // namespace corvane
