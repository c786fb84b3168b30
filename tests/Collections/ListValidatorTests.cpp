#include <initializer_list>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/Collections/ListValidator.hpp>

namespace corvane {
namespace {

TEST(ListValidator, DecidesByTheBlackListThenByTheWhiteList) {
    using Validator = ListValidator<char>;
    using Mode = Validator::Mode;
    const std::vector<char> none;

    struct {
        Validator::List blacklist, whitelist;
        Mode mode;
        bool allowsA, allowsB;
    } const cases[] = {
        {std::nullopt, std::nullopt, Mode::free, true, true},
        {std::vector{'a', 'a'}, std::nullopt, Mode::blacklist, false, true},
        {std::vector{'a'}, std::vector{'a'}, Mode::blacklist, false, true},
        {none, std::vector{'a'}, Mode::blacklist, true, true},
        {std::nullopt, std::vector{'c', 'a'}, Mode::whitelist, true, false},
        {std::nullopt, none, Mode::whitelist, false, false},
    };

    for (const auto& test : cases) {
        Validator validator(test.blacklist, test.whitelist);
        const Validator moved(std::move(validator));
        // A move leaves what it takes from as it was.
        for (const Validator& each : {validator, moved}) {  // NOLINT(bugprone-use-after-move)
            EXPECT_EQ(each.mode(), test.mode);
            EXPECT_EQ(each.isAllowed('a'), test.allowsA);
            EXPECT_EQ(each.isAllowed('b'), test.allowsB);
            EXPECT_EQ(each.blacklist(), test.blacklist);
            EXPECT_EQ(each.whitelist(), test.whitelist);
        }
    }
}

}  // namespace
}  // namespace corvane
