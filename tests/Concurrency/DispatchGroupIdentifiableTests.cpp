#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Concurrency/DispatchGroupIdentifiable.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DispatchGroupIdentifiableTest : public ::testing::Test {
  protected:
    testing::VirtualClock clock;
    std::optional<DispatchGroupIdentifiable<std::string>> group{std::in_place};
    int calls = 0;
};

}  // namespace

TEST_F(DispatchGroupIdentifiableTest, TellsWhenTheLastItemLeaves) {
    group->notify(DispatchQueue::main(), [&] { ++calls; });
    clock.settle();
    EXPECT_EQ(calls, 0) << "an empty list alone is no reason";
    for (const auto* item : {"a", "b", "a"})
        group->enter(item);
    group->leave("a");
    EXPECT_THAT(group->waitingItems(), ElementsAre("b", "a"));
    group->leave("unknown");
    group->leave("b");
    clock.settle();
    EXPECT_EQ(calls, 0);
    group->leave("a");
    EXPECT_EQ(calls, 0) << "told on the queue, not within leave";
    clock.settle();
    EXPECT_EQ(calls, 1);
    group->leave("never entered");
    clock.settle();
    EXPECT_EQ(calls, 2);

    bool isOther = false;
    group->notify(DispatchQueue::main(), [&] { isOther = true; });
    group->leave("");
    clock.settle();
    EXPECT_TRUE(isOther);
    EXPECT_EQ(calls, 2);
}

TEST_F(DispatchGroupIdentifiableTest, TellsWhenTimeIsOutAndAgainWhenAllHaveLeft) {
    group->enter("a");
    group->notify(DispatchQueue::main(), 2, [&] { ++calls; });
    clock.advance(1.5);
    group->notify(DispatchQueue::main(), 2, [&] { calls += 10; });
    clock.advance(0.5);
    EXPECT_EQ(calls, 10) << "the timer of the first, the callback of the second";
    EXPECT_THAT(group->waitingItems(), ElementsAre("a"));
    group->leave("a");
    clock.advance(10);
    EXPECT_EQ(calls, 20);

    for (const double timeout : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        calls = 0;
        group->notify(DispatchQueue::main(), timeout, [&] { ++calls; });
        clock.advance(0.0001);
        EXPECT_EQ(calls, 1) << timeout;
    }
    group->notify(DispatchQueue::main(), 2, [&] { ++calls; });
    group->leave("");
    clock.advance(10);
    EXPECT_EQ(calls, 2) << "an emptying leave ends the time-out";
}

TEST_F(DispatchGroupIdentifiableTest, SaysNothingAfterInvalidationOrItsEnd) {
    const auto prepare = [&] {
        group->enter("a");
        group->notify(DispatchQueue::main(), 1, [&] { ++calls; });
    };
    prepare();
    group->invalidate();
    EXPECT_THAT(group->waitingItems(), IsEmpty());
    group->leave("a");
    clock.advance(2);

    prepare();
    group->leave("a");
    group->invalidate();
    clock.settle();

    prepare();
    group->leave("a");
    prepare();
    group.reset();
    clock.advance(2);
    EXPECT_EQ(calls, 0);

    group.emplace();
    group->notify(DispatchQueue::main(), [&] {
        ++calls;
        group.reset();
    });
    group->leave("a");
    clock.settle();
    EXPECT_EQ(calls, 1) << "the callback may end the group";
}

TEST_F(DispatchGroupIdentifiableTest, MayBeInvalidatedWhileAnotherThreadTells) {
    for (int round = 0; round < 100; ++round) {
        group->notify(DispatchQueue::global(), [payload = std::make_shared<int>(round)] { ++*payload; });
        group->leave("a");
        group->invalidate();
    }
    clock.settle();
}

}  // namespace corvane
