#include <algorithm>
#include <latch>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Dispatch/Actor.hpp>
#include <Corvane/Platform/Dispatch/CancellationError.hpp>
#include <Corvane/Platform/Dispatch/Continuation.hpp>
#include <Corvane/Platform/Dispatch/RunLoop.hpp>
#include <Corvane/Platform/Dispatch/TaskHandle.hpp>
#include <Corvane/Platform/Dispatch/Thread.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;

Task<int> ready() {
    co_return 1;
}

Task<int> sumOfReady(int count) {
    int sum = 0;
    for (int i = 0; i < count; ++i)
        sum += co_await ready();
    co_return sum;
}

Task<int> depthOf(int depth) {
    const int below = depth == 1 ? 0 : co_await depthOf(depth - 1);
    co_return below + 1;
}

Task<int> wrapped(Task<int> inner) {
    const int below = co_await std::move(inner);
    co_return below + 1;
}

TEST(Task, ChainsOfReadyAwaitsDoNotGrowTheStack) {
    // So many that the smallest of frames for each would be more than the stack.
    constexpr int depth = 300'000;
    EXPECT_EQ(runBlocking(sumOfReady(2'000'000)), 2'000'000);
    EXPECT_EQ(runBlocking(depthOf(depth)), depth);
    Task<int> chain = ready();
    for (int i = 1; i < depth; ++i)
        chain = wrapped(std::move(chain));
    EXPECT_EQ(runBlocking(std::move(chain)), depth);
    chain = ready();
    for (int i = 1; i < depth; ++i)
        chain = wrapped(std::move(chain));
    // It goes unawaited, all of it.
}

TEST(Task, AnEmptyOneStopsTheProcess) {
    const char* const text = "Fatal error: a task was used that is empty";
    const auto twice = []() -> Task<int> {
        Task<int> one = ready();
        const int first = co_await std::move(one);
        const int second = co_await std::move(one);  // NOLINT(bugprone-use-after-move)
        co_return first + second;
    };
    EXPECT_DEATH(runBlocking(twice), std::string(text) + ".*\n.*TaskTests.cpp");
    Task<int> gone = ready();
    runBlocking(std::move(gone));
    EXPECT_DEATH(spawn(std::move(gone)), text);   // NOLINT(bugprone-use-after-move)
    EXPECT_DEATH(onMain(std::move(gone)), text);  // NOLINT(bugprone-use-after-move)
    EXPECT_DEATH(runBlocking(TaskHandle<>().value()), text);
    EXPECT_DEATH(TaskHandle<>().onCompletion([] {}), text);
}

TEST(Task, GivesValuesThatCannotBeCopiedAndExceptionsToTheAwaitingTask) {
    EXPECT_EQ(*runBlocking([]() -> Task<std::unique_ptr<int>> { co_return std::make_unique<int>(7); }), 7);

    const auto thrower = []() -> Task<> {
        co_await Task<>::yield();
        throw std::runtime_error("off side");
    };
    EXPECT_THROW(runBlocking([&]() -> Task<> { co_await onMain(thrower); }), std::runtime_error);
    EXPECT_DEATH(
        {
            spawn(thrower, {.executor = DispatchQueue::main()});
            runBlocking([]() -> Task<> {
                co_await Task<>::yield();
                co_await Task<>::yield();
            });
        },
        "Fatal error: a task that nobody awaited has ended with an exception: off side");
}

TEST(Task, OneThatIsNeverAwaitedDoesNotRunAndFreesWhatItHolds) {
    const auto held = std::make_shared<int>(0);
    const auto use = [](std::shared_ptr<int> count) -> Task<> {
        ++*count;
        co_return;
    };
    {
        const Task<> dropped = use(held);
        const Task<> bound = onMain(use(held));
        EXPECT_EQ(held.use_count(), 3);
    }
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);

    // A frame goes when its task has ended, not when its last handle does.
    const TaskHandle<> handle = spawn(use(held), {.executor = DispatchQueue::main()});
    runBlocking(handle.value());
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 1);
}

TEST(Task, IsOnItsOwnExecutorAfterEveryAwait) {
    const auto serial = DispatchQueue::serial("tasks", {QoSClass::userInitiated, 0});
    DispatchQueue& pool = DispatchQueue::global();
    const auto isOn = [](DispatchQueue* queue) -> Task<bool> { co_return queue->isCurrent(); };

    const auto itinerary = [&](DispatchQueue* home) -> Task<std::vector<bool>> {
        std::vector<bool> seen{home->isCurrent()};
        for (DispatchQueue* const queue : {&DispatchQueue::main(), &pool, serial.get()}) {
            seen.push_back(co_await on(*queue, isOn(queue)));
            seen.push_back(home->isCurrent());
        }
        seen.push_back(co_await isOn(home));
        co_await withContinuation<void>([&](const Continuation<void>& resumption) {
            DispatchQueue::global(QoSClass::utility).async([resumption] { resumption.resume(); });
        });
        seen.push_back(home->isCurrent());
        static_cast<void>(co_await Task<>::sleep(0));
        seen.push_back(home->isCurrent());
        co_await spawn([]() -> Task<> { co_return; }).value();
        seen.push_back(home->isCurrent());
        co_return seen;
    };
    for (DispatchQueue* const home : {&DispatchQueue::main(), &pool, serial.get()}) {
        const std::vector<bool> seen = runBlocking(on(*home, itinerary(home)));
        EXPECT_EQ(std::ranges::count(seen, true), 11) << home->label();
    }
}

TEST(Task, AwaitingWhereItIsAlreadyTakesNoTurnOfTheQueue) {
    std::vector<int> order;
    const auto note = [&](int number) -> Task<> {
        order.push_back(number);
        co_return;
    };
    runBlocking([&]() -> Task<> {
        DispatchQueue::main().async([&] { order.push_back(3); });
        co_await onMain(note(1));
        co_await note(2);
        co_await Task<>::yield();
        co_await note(4);
    });
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(Task, ASerialQueueMayBeReleasedWhileItsTasksRun) {
    for (int round = 0; round < 200; ++round) {
        const int hops = runBlocking([]() -> Task<int> {
            int count = 0;
            for (int i = 0; i < 5; ++i)
                count += co_await on(DispatchQueue::serial("brief"), []() -> Task<int> { co_return 1; });
            co_return count;
        });
        ASSERT_EQ(hops, 5);
    }
}

TEST(Task, GoesOnWhileTheQueueItHasLeftIsBlocked) {
    // Also where the task has lifted the queue to workers of its own class.
    for (const QoSClass priority : {QoSClass::unspecified, QoSClass::userInitiated}) {
        const auto queue = DispatchQueue::serial("left");
        std::latch isBack(1);
        std::latch isOver(1);
        const auto block = [&] {
            isBack.wait();
            isOver.count_down();
        };
        spawn(
            [&]() -> Task<> {
                co_await on(queue, [&]() -> Task<> {
                    queue->async(block, {priority, 0});
                    co_return;
                });
                isBack.count_down();
            },
            {.priority = priority});
        isOver.wait();
    }
}

TEST(Task, CancellationReachesWhatTheTaskAwaitsAndNothingElse) {
    EXPECT_TRUE(Task<>::isNotCancelled());
    testing::VirtualClock clock;
    bool wasTold = false;
    bool isOtherCancelled = true;
    bool isCallbackCancelled = true;
    std::vector<bool> alive;
    const TaskHandle<> handle = spawn(
        [&]() -> Task<> {
            const std::stop_callback told(Task<>::stopToken(), [&] { wasTold = true; });
            alive.push_back(Task<>::isNotCancelled());
            const auto slept = co_await on(DispatchQueue::global(), Task<>::sleep(60));
            EXPECT_NE(slept.error().as<CancellationError>(), nullptr);
            alive.push_back(co_await on(DispatchQueue::serial("child"), []() -> Task<bool> {
                // Cancelled already: fails without any time passing.
                EXPECT_FALSE((co_await Task<>::sleep(60)).has_value());
                co_return Task<>::isNotCancelled();
            }));
            DispatchQueue::main().async([&] { alive.push_back(Task<>::isNotCancelled()); });
            RunLoop::main().runOnce();
            isOtherCancelled = !co_await spawn([]() -> Task<bool> { co_return Task<>::isNotCancelled(); }).value();
        },
        {.executor = DispatchQueue::main()});
    handle.onCompletion([&] { isCallbackCancelled = !Task<>::isNotCancelled(); });
    clock.settle();
    handle.cancel();
    EXPECT_TRUE(handle.isCancelled());
    EXPECT_TRUE(wasTold);
    EXPECT_FALSE(handle.isEnded());
    clock.settle();
    EXPECT_TRUE(handle.isEnded());
    EXPECT_THAT(alive, ElementsAre(true, false, true));
    EXPECT_FALSE(isOtherCancelled || isCallbackCancelled);
}

TEST(Task, SleepsOnTheClockInForce) {
    testing::VirtualClock clock;
    std::vector<double> wakings;
    const auto sleeper = [&](double seconds) -> Task<> {
        const auto slept = co_await Task<>::sleep(seconds);
        wakings.push_back(slept ? seconds : -1);
    };
    const double forEver = 18446744073.0;  // just below 2^64 nanoseconds
    const double lengths[] = {5, 0, 2.5, -0.9e-9, forEver};
    std::vector<TaskHandle<>> handles;
    for (const double seconds : lengths)
        handles.push_back(spawn(sleeper(seconds), {.executor = DispatchQueue::main()}));
    clock.settle();
    EXPECT_THAT(wakings, ::testing::UnorderedElementsAre(0, -0.9e-9));
    wakings.clear();
    clock.advance(4);
    EXPECT_THAT(wakings, ElementsAre(2.5));
    clock.advance(1);
    EXPECT_THAT(wakings, ElementsAre(2.5, 5));
    handles.back().cancel();
    clock.settle();
    EXPECT_EQ(wakings.back(), -1);
}

TEST(Task, AnImpossibleSleepStopsTheProcess) {
    for (const double seconds :
         {-1e-9, 18446744073.8, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_DEATH(static_cast<void>(Task<>::sleep(seconds)), "Fatal error: a task cannot sleep for ") << seconds;
    }
}

TEST(TaskHandle, TellsEverybodyOfTheEnd) {
    std::vector<int> order;
    const TaskHandle<int> handle = spawn(
        [&]() -> Task<int> {
            order.push_back(0);
            co_return 3;
        },
        {.executor = DispatchQueue::main()});
    EXPECT_FALSE(handle.isEnded());
    handle.onCompletion([&] { order.push_back(1); });
    handle.onCompletion([&, copy = handle] { order.push_back(copy.isEnded() ? 2 : -1); });
    EXPECT_EQ(runBlocking(handle.value()) + runBlocking(handle.value()), 6);
    handle.onCompletion([&] { order.push_back(3); });
    runBlocking([]() -> Task<> { co_await Task<>::yield(); });
    EXPECT_THAT(order, ElementsAre(0, 1, 2, 3));

    handle.cancel();  // after the end: no effect but on the question
    TaskHandle<> none;
    none.cancel();
    EXPECT_FALSE(none || none.isCancelled() || none.isEnded());
}

TEST(Continuation, IsResumedOnceFromAnyThreadBeforeOrAfterTheSuspension) {
    const auto wait = [](auto body) -> Task<int> { co_return co_await withContinuation<int>(body); };
    EXPECT_EQ(runBlocking(wait([](const Continuation<int>& c) { c.resume(1); })), 1);
    for (int round = 0; round < 500; ++round) {
        // The resumption races with the suspension.
        ASSERT_EQ(runBlocking(on(DispatchQueue::global(), wait([](const Continuation<int>& c) {
                                     DispatchQueue::global(QoSClass::userInteractive).async([c] { c.resume(2); });
                                 }))),
                  2);
    }
    // Whatever races for it: exactly one wins.
    std::vector<TaskHandle<bool>> racers;
    EXPECT_EQ(runBlocking(wait([&](const Continuation<int>& c) {
                  for (int i = 0; i < 8; ++i)
                      racers.push_back(spawn([c]() -> Task<bool> { co_return c.tryResume(3); }));
              })),
              3);
    int winners = 0;
    for (const TaskHandle<bool>& racer : racers)
        winners += runBlocking(racer.value()) ? 1 : 0;
    EXPECT_EQ(winners, 1);
}

TEST(Continuation, MisuseStopsTheProcessAndNamesThePlace) {
    const auto twice = [](const Continuation<void>& c) {
        c.resume();
        c.resume();
    };
    const auto wait = [](auto body) -> Task<> { co_await withContinuation<void>(body); };
    EXPECT_DEATH(runBlocking(wait(twice)), "Fatal error: a continuation was resumed twice\n.*TaskTests.cpp");
    EXPECT_DEATH(runBlocking(wait([](const Continuation<void>&) {})),
                 "Fatal error: a continuation was dropped, and its task would wait for ever\n.*TaskTests.cpp");
}

class Scoreboard : public Actor {
  public:
    Scoreboard() : Actor("scoreboard") {}

    Task<> goal() {
        EXPECT_TRUE(executor().queue().isCurrent());
        const int before = goals_;
        goals_ = before + 1;
        co_return;
    }

    Task<int> twoGoals() {
        co_await goal();
        co_await goal();
        co_return goals_;
    }

  private:
    int goals_ = 0;
};

TEST(Actor, RunsItsOperationsOneAtATimeOnItsOwnExecutor) {
    constexpr int count = 1'000;
    Scoreboard board;
    std::vector<TaskHandle<int>> handles;
    for (int i = 0; i < count; ++i)
        handles.push_back(spawn([&]() -> Task<int> { co_return co_await board.twoGoals(); }));
    for (const TaskHandle<int>& handle : handles)
        EXPECT_LE(runBlocking(handle.value()), 2 * count);
    EXPECT_EQ(runBlocking(board.twoGoals()), 2 * count + 2);
}

TEST(Thread, TheMainExecutorIsMoreThanTheMainThread) {
    const auto assume = []() -> Task<> {
        Thread::assumeMainExecutor();
        co_return;
    };
    EXPECT_TRUE(Thread::isMainThread());
    runBlocking(assume);
    const auto onTop = DispatchQueue::serial("on top of main", {}, DispatchQueue::main().shared_from_this());
    EXPECT_DEATH(runBlocking(on(onTop, assume())),
                 "Fatal error: Incorrect actor executor assumption; Expected same executor as the main executor");
    EXPECT_DEATH(runBlocking(on(DispatchQueue::global(), assume())), "Incorrect actor executor assumption");
}

}  // namespace
}  // namespace corvane
