#include <gtest/gtest.h>

#include <Corvane/Observation/LastChangeObservation.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

class LastChangeObservation : public ::testing::Test {
  protected:
    testing::VirtualClock clock;
    Observable<int> home{0}, away{0};
    Observable<bool> isLive{false};
    std::shared_ptr<int> observer = std::make_shared<int>();
    int calls = 0;
};

}  // namespace

TEST_F(LastChangeObservation, CallsOnceASecondAfterTheLastChange) {
    int others = 0;
    const auto other = std::make_shared<int>();
    addOnLastChangeObserver({home, away}, observer, [&] { ++calls; });
    addOnLastChangeObserver(std::vector{home}, other, [&] { ++others; });
    home.setValue(1);
    clock.advance(0.5);
    away.setValue(1);
    clock.advance(0.5);
    EXPECT_EQ(others, 1) << "every observer has a delay of its own";
    home.setValue(1);
    EXPECT_EQ(calls, 0);
    clock.advance(0.5);
    EXPECT_EQ(calls, 1) << "an equal value is no change";

    addOnLastChangeObserver({isLive}, observer, [&] { calls += 10; });
    away.setValue(2);
    isLive.setValue(true);
    clock.advance(10);
    EXPECT_EQ(calls, 11) << "one delay for all; the latest change has its closure called";
}

TEST_F(LastChangeObservation, StillFiresWhatWaitsForAnObserverThatIsRemovedOrGone) {
    addOnLastChangeObserver({home, away}, observer, [&] { ++calls; });
    home.setValue(1);
    clock.advance(0.5);
    home.removeObserver(observer);
    home.setValue(2);
    away.setValue(1);
    clock.advance(0.5);
    EXPECT_EQ(calls, 1) << "what waited when its debouncer was dropped";
    clock.advance(0.5);
    EXPECT_EQ(calls, 2) << "the other observable, with a debouncer of its own";

    away.setValue(2);
    observer.reset();
    away.setValue(3);
    // Whoever comes to live at an address after another shares nothing with him.
    for (int i = 0; i < 20; ++i) {
        addOnLastChangeObserver({home}, std::make_shared<int>(), [&] { ++calls; });
        const auto next = std::make_shared<int>();
        addOnLastChangeObserver({home}, next, [&] { ++calls; });
        home.setValue(100 + i);
    }
    clock.advance(1);
    EXPECT_EQ(calls, 23);
}

}  // namespace corvane
