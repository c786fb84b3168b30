#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Observation/LastChangeObservation.hpp>
#include <Corvane/Testing/VirtualClock.hpp>

namespace corvane {

namespace {

class LastChangeObservation : public ::testing::Test {
  protected:
    testing::VirtualClock clock;
    Observable<int> home{0}, away{0}, minute{0};
    std::shared_ptr<int> observer = std::make_shared<int>();
    int calls = 0;
};

}  // namespace

TEST_F(LastChangeObservation, CallsOnceASecondAfterTheLastChange) {
    addOnLastChangeObserver({home, away, minute}, observer, [&] { ++calls; });
    home.setValue(1);
    clock.advance(0.2);
    away.setValue(1);
    clock.advance(0.2);
    minute.setValue(1);
    clock.advance(0.9);
    home.setValue(1);
    EXPECT_EQ(calls, 0);
    clock.advance(0.1);
    EXPECT_EQ(calls, 1) << "an equal value is no change";
    clock.advance(10);
    EXPECT_EQ(calls, 1);
}

TEST_F(LastChangeObservation, GivesEveryObserverOneDelay) {
    int others = 0, texts = 0;
    const auto other = std::make_shared<int>();
    Observable<std::string> title("");
    addOnLastChangeObserver(std::vector{home, away}, observer, [&] { ++calls; });
    addOnLastChangeObserver({home}, other, [&] { ++others; });
    addOnLastChangeObserver({title}, observer, [&] { ++texts; });
    home.setValue(1);
    clock.advance(0.5);
    title.setValue("final");
    clock.advance(0.5);
    EXPECT_EQ(others, 1);
    clock.advance(0.5);
    EXPECT_EQ(texts, 1) << "the latest change has its closure called";
    EXPECT_EQ(calls, 0);
}

TEST_F(LastChangeObservation, ForgetsAndStillFiresWhatWaitsWhenTheObserverIsRemoved) {
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
}

TEST_F(LastChangeObservation, IgnoresChangesOnceTheObserverHasGone) {
    addOnLastChangeObserver({home}, observer, [&] { ++calls; });
    home.setValue(1);
    observer.reset();
    home.setValue(2);
    clock.advance(5);
    EXPECT_EQ(calls, 1);

    // Whoever comes to live at an address after another shares nothing with him.
    int denied = 0, fired = 0;
    for (int i = 0; i < 20; ++i) {
        const auto next = std::make_shared<int>();
        addOnLastChangeObserver({away}, next, [&] { ++fired; });
        ++denied;
        away.modify([](int& value) { ++value; });
    }
    clock.advance(1);
    EXPECT_EQ(fired, denied);
}

}  // namespace corvane
