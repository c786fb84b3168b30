#include <string>

#include <gtest/gtest.h>

#include <Corvane/Observation/Observable.hpp>

namespace corvane {

namespace {

using enum ObservableOption;

/// A number with two observers, and what is heard of it: "a:new=2 ".
class ObservableTest : public ::testing::Test {
  protected:
    /// A callback that notes what it hears and then does `next`.
    std::function<void(int, ObservableOption)> note(std::string who, std::function<void()> next = nullptr) {
        return [this, who = std::move(who), next = std::move(next)](int value, ObservableOption option) {
            static constexpr const char* names[] = {":initial=", ":old=", ":new=", ":changed="};
            heard_ += who + names[static_cast<std::size_t>(option)] + std::to_string(value) + ' ';
            if (next) next();
        };
    }

    std::string heard() { return std::exchange(heard_, ""); }

    std::string heardOf(int value) {
        number.setValue(value);
        return heard();
    }

    Observable<int> number{1};
    std::shared_ptr<int> a = std::make_shared<int>();
    std::shared_ptr<int> b = std::make_shared<int>();

  private:
    std::string heard_;
};

struct Named {
    virtual ~Named() = default;
    int name = 0;
};

struct Shown {
    virtual ~Shown() = default;
};

struct Page : Named, Shown {};

}  // namespace

TEST_F(ObservableTest, TellsOldThenNewThenChanged) {
    number.addObserver(a, {initial, changed}, note("a"));
    number.addObserver(b, {changed, new_, old, old}, note("b"));
    number.addObserver(b, false, note("b2"));
    number.addObserver(a, false, ObservableOptions{}, note("nothing"));
    EXPECT_EQ(heard(), "a:initial=1 ");
    EXPECT_EQ(heardOf(2), "b:old=1 b:new=2 b2:new=2 a:changed=2 b:changed=2 ");
    EXPECT_EQ(heardOf(2), "b:old=2 b:new=2 b2:new=2 ");
    Observable<int> other = number;
    other.modify([](int& value) { value = value * 2 - 1; });
    EXPECT_EQ(number.value(), 3);
    EXPECT_EQ(heard(), "b:old=2 b:new=3 b2:new=3 a:changed=3 b:changed=3 ");
}

TEST_F(ObservableTest, ReplacesAndRemovesTheRegistrationsOfAnObserver) {
    number.addObserver(a, note("replaced"));
    number.addObserver(b, note("b"));
    number.addObserver(a, note("a"));
    number.addObserver(a, false, note("a2"));
    EXPECT_EQ(heardOf(2), "b:new=2 a:new=2 a2:new=2 ");
    number.removeObserver(a);

    // The object counts, by whichever of its bases it is named; a part of an object is another observer.
    const auto page = std::make_shared<Page>();
    number.addObserver(std::shared_ptr<const Shown>(page), note("page"));
    number.addObserver(std::shared_ptr<int>(page, &page->name), note("name"));
    number.removeObserver(std::shared_ptr<Named>(page));
    EXPECT_EQ(heardOf(4), "b:new=4 name:new=4 ");

    // What has gone is called on, and nobody who comes to live at its address is taken for it.
    b.reset();
    number.removeObserver(std::make_shared<int>());
    number.removeObserver(b);
    EXPECT_EQ(heardOf(5), "b:new=5 name:new=5 ");
}

TEST_F(ObservableTest, KeepsAPassWhenItsCallbacksAddAndRemove) {
    int calls = 0;
    number.addObserver(a, {old, new_, changed}, note("a", [&] {
                           if (++calls != 2) return;
                           for (int i = 0; i < 50; ++i)
                               number.addObserver(b, false, {new_, changed}, [&](int, ObservableOption) { ++calls; });
                       }));
    EXPECT_EQ(heardOf(2), "a:old=1 a:new=2 a:changed=2 ");
    EXPECT_EQ(calls, 53) << "added during the pass of new, called from that of changed on";

    const auto removeAll = [&] {
        number.removeObserver(a);
        number.removeObserver(b);
    };
    number.addObserver(a, {old, new_}, note("a", removeAll));
    number.addObserver(b, {old, new_}, note("b"));
    EXPECT_EQ(heardOf(3), "a:old=2 b:old=2 ");
    EXPECT_EQ(heardOf(4), "");
    number.addObserver(a, {initial, new_}, note("a", removeAll));
    EXPECT_EQ(heardOf(5), "a:initial=4 ");
}

TEST_F(ObservableTest, AssignsAgainInsideACallback) {
    number.addObserver(a, note("a", [&] {
                           if (number.value() == 2) number.setValue(3);
                       }));
    number.addObserver(b, {old, new_, changed}, note("b"));
    EXPECT_EQ(heardOf(2), "b:old=1 a:new=2 b:old=2 a:new=3 b:new=3 b:changed=3 b:new=2 b:changed=2 ");
    number.addObserver(a, {initial, new_}, note("a", [&] {
                           if (number.value() < 4) number.setValue(4);
                       }));
    EXPECT_EQ(heard(), "a:initial=3 b:old=3 b:new=4 a:new=4 b:changed=4 ");
}

TEST_F(ObservableTest, FinishesTheAssignmentWhenACallbackEndsIt) {
    auto title = std::make_unique<Observable<std::string>>(std::string(100, 'x'));
    std::size_t lengths = 0;
    title->addObserver(a, {old, new_}, [&, held = std::make_shared<int>()](const std::string&, ObservableOption) {
        title.reset();
        ++*held;
    });
    title->addObserver(b, {old, new_}, [&](const std::string& value, ObservableOption) { lengths += value.size(); });
    title->setValue("short");
    EXPECT_EQ(lengths, 105U);

    // The last name of the box goes with a callback that is removed in the pass.
    auto box = std::make_unique<Observable<int>>(1);
    box->addObserver(a, [self = *box](int, ObservableOption) {});
    box->addObserver(b, [&](int, ObservableOption) {
        box->removeObserver(a);
        box.reset();
    });
    box->setValue(2);
    EXPECT_EQ(box, nullptr);
}

}  // namespace corvane
