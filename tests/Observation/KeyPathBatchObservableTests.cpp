#include <string>

#include <gtest/gtest.h>

#include <Corvane/Observation/KeyPathBatchObservable.hpp>
#include <Corvane/Observation/Observable.hpp>

namespace corvane {

namespace {

using enum ObservableOption;
using Options = KeyPathBatchObservableOptions;

struct Fixture {
    Observable<bool> isLive{false};
};

struct Match : Fixture, KeyPathBatchObservable<Match> {
    Observable<int> score{0};
    Observable<std::string> title{"A-B"};
    int plain = 0;
    const int id = 1;
};

}  // namespace

TEST(KeyPathBatchObservable, ObservesTheListedPropertiesWithOneCallback) {
    Match match;
    const auto observer = std::make_shared<int>();
    std::string heard;
    const auto note = [&](const std::any& value) {
        if (const auto* number = std::any_cast<int>(&value)) heard += std::to_string(*number);
        if (const auto* flag = std::any_cast<bool>(&value)) heard += *flag ? "+" : "-";
        if (const auto* text = std::any_cast<std::string>(&value)) heard += *text;
        heard += ' ';
    };
    match.addObserver(observer,
                      {{&Match::title, Options::options({initial, changed})},
                       {&Match::plain, Options::options(initial)},
                       {&Match::id, Options::options(initial)},
                       {&Match::score, Options::options({initial, old, new_})},
                       {&Match::isLive, Options::options(new_)}},
                      note);
    EXPECT_EQ(std::exchange(heard, ""), "A-B 0 ") << "in the order of the list";
    match.score.setValue(2);
    match.title.setValue("C-D");
    match.title.setValue("C-D");
    match.isLive.setValue(true);
    EXPECT_EQ(std::exchange(heard, ""), "0 2 C-D + ");

    match.addObserver(observer, {{&Match::score, Options::options(new_)}}, note);
    match.addObserver(observer, {{&Match::isLive, Options::options(new_, false)}}, note);
    match.score.setValue(3);
    match.isLive.setValue(false);
    EXPECT_EQ(std::exchange(heard, ""), "3 - - ") << "replaced, and beside each other";

    match.removeObserver(observer, {&Match::score, &Match::plain, &Match::isLive});
    match.score.setValue(4);
    match.isLive.setValue(true);
    match.title.setValue("E-F");
    EXPECT_EQ(std::exchange(heard, ""), "E-F ");
    match.removeObserver(observer, &Match::title);
    match.title.setValue("G-H");
    EXPECT_EQ(heard, "");

    using Path = KeyPath<Match>;
    EXPECT_EQ(Path(&Match::isLive), Path(&Fixture::isLive));
    EXPECT_NE(Path(&Match::score), Path(&Match::plain));
    EXPECT_TRUE(Options::options(new_).removeIfExists);
}

}  // namespace corvane
