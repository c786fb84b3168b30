#include <any>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Observation/KeyPathBatchObservable.hpp>
#include <Corvane/Observation/Observable.hpp>

namespace corvane {

namespace {

using enum ObservableOption;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Options = KeyPathBatchObservableOptions;

struct Fixture {
    Observable<bool> isLive{false};
};

struct Match : Fixture, KeyPathBatchObservable<Match> {
    Observable<int> score{0};
    Observable<std::string> title{"-"};
    int plain = 0;
    std::string text;
};

std::string textOf(const std::any& value) {
    if (const auto* number = std::any_cast<int>(&value)) return std::to_string(*number);
    if (const auto* flag = std::any_cast<bool>(&value)) return *flag ? "true" : "false";
    const auto* text = std::any_cast<std::string>(&value);
    return text != nullptr ? *text : "?";
}

}  // namespace

TEST(KeyPathBatchObservable, ObservesTheListedPropertiesWithOneCallback) {
    Match match;
    const auto observer = std::make_shared<int>();
    std::vector<std::string> heard;
    const auto note = [&](const std::any& value) { heard.push_back(textOf(value)); };
    match.addObserver(observer,
                      {{&Match::title, Options::options({initial, changed})},
                       {&Match::plain, Options::options(initial)},
                       {&Match::text, Options::options(initial)},
                       {&Match::score, Options::options({initial, old, new_})},
                       {&Match::isLive, Options::options(new_)}},
                      note);
    EXPECT_THAT(heard, ElementsAre("-", "0")) << "in the order of the list";
    match.score.setValue(2);
    match.title.setValue("A - B");
    match.title.setValue("A - B");
    match.isLive.setValue(true);
    EXPECT_THAT(heard, ElementsAre("-", "0", "0", "2", "A - B", "true"));

    heard.clear();
    match.addObserver(observer, {{&Match::score, Options::options(new_)}}, note);
    match.addObserver(observer, {{&Match::isLive, Options::options(new_, false)}}, note);
    match.score.setValue(3);
    match.isLive.setValue(false);
    EXPECT_THAT(heard, ElementsAre("3", "false", "false")) << "replaced, and beside each other";

    heard.clear();
    match.removeObserver(observer, {&Match::score, &Match::plain, &Match::isLive});
    match.score.setValue(4);
    match.isLive.setValue(true);
    EXPECT_THAT(heard, IsEmpty());
    match.title.setValue("C - D");
    EXPECT_THAT(heard, ElementsAre("C - D"));
    match.removeObserver(observer, &Match::title);
    match.title.setValue("E - F");
    EXPECT_EQ(heard.size(), 1U);
}

TEST(KeyPathBatchObservable, TellsKeyPathsApart) {
    using Path = KeyPath<Match>;
    EXPECT_EQ(Path(&Match::isLive), Path(&Fixture::isLive));
    EXPECT_NE(Path(&Match::score), Path(&Match::title));
    EXPECT_NE(Path(&Match::plain), Path(&Match::text));
    EXPECT_TRUE(Options::options(new_).removeIfExists);
    EXPECT_FALSE(Options::options(new_, false).removeIfExists);
}

}  // namespace corvane
