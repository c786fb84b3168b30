#include <atomic>
#include <latch>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Platform/Notifications/NotificationCenter.hpp>

namespace corvane {
namespace {

constexpr NotificationName goal{"goal"};
constexpr NotificationName whistle{"whistle"};

struct Match {
    int id = 0;
};

TEST(NotificationCenter, DeliversByNameAndSenderInOrderOfRegistration) {
    NotificationCenter center;
    const auto first = std::make_shared<Match>(1);
    const auto second = std::make_shared<Match>(2);
    std::vector<std::string> calls;
    const auto record = [&calls](std::string who) {
        return [&calls, who = std::move(who)](const Notification& notification) {
            calls.push_back(who + ":" + std::string(notification.name().text()));
        };
    };
    const auto byName = center.addObserver(goal, record("goal"));
    const auto byBoth = center.addObserver(goal, first, nullptr, record("goal of first"));
    const auto bySender = center.addObserver(std::nullopt, second, nullptr, record("second"));
    const auto everything = center.addObserver(std::nullopt, nullptr, nullptr, record("all"));

    center.post(goal, first);
    center.post(whistle, second);
    center.post(goal);
    EXPECT_EQ(calls, (std::vector<std::string>{"goal:goal", "goal of first:goal", "all:goal", "second:whistle",
                                               "all:whistle", "goal:goal", "all:goal"}));
}

TEST(NotificationCenter, StopsCallingWhoeverStopsObservingEvenInTheMidstOfAPass) {
    NotificationCenter center;
    std::vector<char> calls;
    NotificationObservation b;
    NotificationObservation late;
    NotificationObservation a = center.addObserver(goal, [&](const Notification&) {
        calls.push_back('a');
        b.remove();
        a.remove();
        late = center.addObserver(goal, [&](const Notification&) { calls.push_back('l'); });
    });
    b = center.addObserver(goal, [&](const Notification&) { calls.push_back('b'); });
    const auto c = center.addObserver(goal, [&](const Notification&) { calls.push_back('c'); });
    center.post(goal);
    EXPECT_EQ(calls, (std::vector{'a', 'c'})) << "neither the removed nor the newly added one";
    EXPECT_FALSE(a);
    calls.clear();
    center.post(goal);
    EXPECT_EQ(calls, (std::vector{'c', 'l'}));
    calls.clear();
    late = {};
    {
        const auto moved = std::move(b);
    }
    center.post(goal);
    EXPECT_EQ(calls, std::vector{'c'});
}

TEST(NotificationCenter, NeverTakesANewObjectForTheOneThatEnded) {
    NotificationCenter center;
    // Two senders at one address, one after the other.
    Match place;
    const auto sender = [&place] { return std::shared_ptr<Match>(&place, [](Match*) {}); };
    int calls = 0;
    auto object = sender();
    const auto observation = center.addObserver(goal, object, nullptr, [&](const Notification&) { ++calls; });
    center.post(goal, object);
    object = sender();
    center.post(goal, object);
    center.post(goal);
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, DeliversOnAQueueWithoutWaitingAndNotAfterRemoval) {
    NotificationCenter center;
    std::vector<bool> onMain;
    auto observation = center.addObserver(goal, nullptr, &DispatchQueue::main(), [&](const Notification& notification) {
        onMain.push_back(Thread::isMainThread());
        EXPECT_EQ(notification.objectAs<Match>()->id, 3) << "kept alive on its way";
        EXPECT_EQ(notification.objectAs<int>(), nullptr);
        EXPECT_EQ(*notification.info<int>("minute"), 90);
        EXPECT_EQ(notification.info<long>("minute"), nullptr);
        EXPECT_EQ(notification.info<int>("player"), nullptr);
    });
    std::jthread([&] { center.post(goal, std::make_shared<Match>(3), {{"minute", 90}}); }).join();
    EXPECT_TRUE(onMain.empty());
    RunLoop::main().drain();
    EXPECT_EQ(onMain, std::vector{true});

    center.post(goal, std::make_shared<Match>(3));
    observation.remove();
    RunLoop::main().drain();
    EXPECT_EQ(onMain.size(), 1U);

    // The serial queue lives as long as somebody observes on it.
    std::latch delivered(1);
    const auto onSerial = center.addObserver(goal, nullptr, DispatchQueue::serial("notified").get(),
                                             [&](const Notification&) { delivered.count_down(); });
    center.post(goal);
    delivered.wait();
}

TEST(NotificationCenter, MayEndInsideABlockAndBeforeItsObservations) {
    auto center = std::make_unique<NotificationCenter>();
    int calls = 0;
    const auto block = [&](const Notification&) {
        ++calls;
        center.reset();
    };
    auto ending = center->addObserver(goal, block);
    const auto after = center->addObserver(goal, block);
    center->post(goal);
    EXPECT_EQ(calls, 1);
    ending.remove();
}

TEST(NotificationCenter, LetsABlockGoOutsideItsLock) {
    NotificationCenter center;

    struct PostsAtItsEnd {
        NotificationCenter& center;

        ~PostsAtItsEnd() { center.post(goal); }
    };

    int calls = 0;
    const auto counting = center.addObserver(goal, [&](const Notification&) { ++calls; });
    auto observation =
        center.addObserver(whistle, [held = std::make_shared<PostsAtItsEnd>(center)](const Notification&) {});
    observation.remove();
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, ServesManyThreadsAtOnce) {
    NotificationCenter& center = NotificationCenter::defaultCenter();
    constexpr int threads = 4;
    constexpr int rounds = 200;
    std::atomic<int> counted = 0;
    const auto counting = center.addObserver(goal, [&](const Notification&) { ++counted; });
    std::latch start(threads);
    std::vector<std::jthread> workers;
    for (int i = 0; i < threads; ++i) {
        workers.emplace_back([&] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                // Other threads call the block too, even shortly after its removal: it owns what it uses.
                const auto own = std::make_shared<std::atomic<int>>(0);
                auto observation =
                    center.addObserver(goal, [own, thread = std::this_thread::get_id()](const Notification&) {
                        if (std::this_thread::get_id() == thread) ++*own;
                    });
                center.post(goal);
                observation.remove();
                center.post(goal);
                EXPECT_EQ(*own, 1);
            }
        });
    }
    workers.clear();
    EXPECT_EQ(counted, threads * rounds * 2);
}

}  // namespace
}  // namespace corvane
