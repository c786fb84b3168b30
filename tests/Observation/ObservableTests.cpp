#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Observation/Observable.hpp>

namespace corvane {

namespace {

using enum ObservableOption;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Observers of one number, and what they heard: "a new 2".
class ObservableTest : public ::testing::Test {
  protected:
    /// A callback that notes what it hears and then does `next`.
    std::function<void(int, ObservableOption)> noting(std::string who, std::function<void()> next = nullptr) {
        return [this, who = std::move(who), next = std::move(next)](int value, ObservableOption option) {
            static constexpr const char* names[] = {"initial", "old", "new", "changed"};
            heard.push_back(who + ' ' + names[static_cast<std::size_t>(option)] + ' ' + std::to_string(value));
            if (next) next();
        };
    }

    std::vector<std::string> takeHeard() { return std::exchange(heard, {}); }

    Observable<int> number{1};
    std::shared_ptr<int> a = std::make_shared<int>();
    std::shared_ptr<int> b = std::make_shared<int>();
    std::vector<std::string> heard;
};

struct Named {
    virtual ~Named() = default;
    int name = 0;
};

struct Shown {
    virtual ~Shown() = default;
    int place = 0;
};

struct Page : Named, Shown {};

}  // namespace

TEST_F(ObservableTest, TellsOldThenNewThenChanged) {
    number.addObserver(a, {initial, changed}, noting("a"));
    number.addObserver(b, {changed, new_, old, old}, noting("b"));
    number.addObserver(b, false, noting("b2"));
    number.addObserver(a, false, ObservableOptions{}, noting("nothing"));
    EXPECT_THAT(takeHeard(), ElementsAre("a initial 1"));

    number.setValue(2);
    EXPECT_THAT(takeHeard(), ElementsAre("b old 1", "b new 2", "b2 new 2", "a changed 2", "b changed 2"));
    number.setValue(2);
    EXPECT_THAT(takeHeard(), ElementsAre("b old 2", "b new 2", "b2 new 2"));
    number.modify([](int& value) {
        value += 2;
        value -= 1;
    });
    EXPECT_EQ(number.value(), 3);
    EXPECT_THAT(takeHeard(), ElementsAre("b old 2", "b new 3", "b2 new 3", "a changed 3", "b changed 3"));
}

TEST_F(ObservableTest, ReplacesAndRemovesTheRegistrationsOfAnObserver) {
    number.addObserver(a, noting("replaced"));
    number.addObserver(b, noting("b"));
    number.addObserver(a, noting("a"));
    number.addObserver(a, false, noting("a2"));
    number.setValue(2);
    EXPECT_THAT(takeHeard(), ElementsAre("b new 2", "a new 2", "a2 new 2"));
    number.removeObserver(a);
    number.setValue(3);
    EXPECT_THAT(takeHeard(), ElementsAre("b new 3"));

    // The object counts, by whichever of its bases it is named; two parts of one object are two observers.
    const auto page = std::make_shared<Page>();
    number.addObserver(std::shared_ptr<const Shown>(page), noting("page"));
    number.removeObserver(std::shared_ptr<Named>(page));
    number.addObserver(std::shared_ptr<int>(page, &page->name), noting("name"));
    number.addObserver(std::shared_ptr<int>(page, &page->place), noting("place"));
    number.removeObserver(std::shared_ptr<int>(page, &page->name));
    number.setValue(4);
    EXPECT_THAT(takeHeard(), ElementsAre("b new 4", "place new 4"));
}

TEST_F(ObservableTest, GoesOnCallingForAnObserverThatHasGone) {
    number.addObserver(a, noting("a"));
    a.reset();
    number.setValue(2);
    // Likely at the same address, and another observer nonetheless.
    const auto next = std::make_shared<int>();
    number.removeObserver(next);
    number.removeObserver(a);
    number.setValue(3);
    EXPECT_THAT(heard, ElementsAre("a new 2", "a new 3"));
}

TEST_F(ObservableTest, IsOneBoxUnderAllItsNames) {
    Observable<int> other = number;
    const Observable<int> third = std::move(other);
    number.addObserver(a, noting("a"));
    other.setValue(5);
    EXPECT_EQ(third.value(), 5);
    EXPECT_THAT(heard, ElementsAre("a new 5"));
}

TEST_F(ObservableTest, KeepsAPassWhenItsCallbacksAddAndRemove) {
    const std::function<void()> add = [&] {
        for (int i = 0; i < 100; ++i)
            number.addObserver(b, false, {new_, changed}, noting(std::to_string(i)));
    };
    number.addObserver(a, {old, new_, changed}, noting("a", [&, times = 0]() mutable {
                           if (++times == 2) add();
                       }));
    number.setValue(2);
    ASSERT_EQ(heard.size(), 103U) << "added during the pass of new, called from that of changed on";
    EXPECT_EQ(heard[1], "a new 2");
    EXPECT_EQ(heard[2], "a changed 2");
    EXPECT_EQ(heard[102], "99 changed 2");
    number.removeObserver(b);
    heard.clear();

    number.addObserver(a, {old, new_}, noting("a", [&] {
                           number.removeObserver(a);
                           number.removeObserver(b);
                       }));
    number.addObserver(b, {old, new_}, noting("b"));
    number.setValue(3);
    EXPECT_THAT(takeHeard(), ElementsAre("a old 2", "b old 2"));
    number.setValue(4);
    EXPECT_THAT(heard, IsEmpty());

    number.addObserver(a, {initial, new_}, noting("a", [&] { number.removeObserver(a); }));
    number.setValue(5);
    EXPECT_THAT(heard, ElementsAre("a initial 4"));
}

TEST_F(ObservableTest, AssignsAgainInsideACallback) {
    number.addObserver(a, noting("a", [&] {
                           if (number.value() == 2) number.setValue(3);
                       }));
    number.addObserver(b, {old, new_, changed}, noting("b"));
    number.setValue(2);
    EXPECT_THAT(takeHeard(), ElementsAre("b old 1", "a new 2", "b old 2", "a new 3", "b new 3", "b changed 3",
                                         "b new 2", "b changed 2"));
    EXPECT_EQ(number.value(), 3);

    number.addObserver(a, {initial, new_}, noting("a", [&] {
                           if (number.value() < 5) number.modify([](int& value) { ++value; });
                       }));
    EXPECT_EQ(number.value(), 5);
    EXPECT_EQ(heard.front(), "a initial 3");
}

TEST_F(ObservableTest, FinishesTheAssignmentWhenACallbackEndsIt) {
    struct Owner {
        Observable<std::string> title{std::string(100, 'x')};
    };

    auto owner = std::make_unique<Owner>();
    std::vector<std::size_t> lengths;
    owner->title.addObserver(a, {old, new_}, [&, held = std::make_shared<int>()](const std::string&, ObservableOption) {
        owner.reset();
        ++*held;
    });
    owner->title.addObserver(b, {old, new_},
                             [&](const std::string& title, ObservableOption) { lengths.push_back(title.size()); });
    owner->title.setValue("short");
    EXPECT_THAT(lengths, ElementsAre(100U, 5U));

    // The last name of the box goes with a callback that is removed in the pass.
    auto box = std::make_unique<Observable<int>>(1);
    box->addObserver(a, [self = *box](int, ObservableOption) {});
    box->addObserver(b, {initial, new_}, [&](int, ObservableOption option) {
        if (option == initial) return;
        box->removeObserver(a);
        box.reset();
    });
    box->setValue(2);
    EXPECT_EQ(box, nullptr);
}

}  // namespace corvane
