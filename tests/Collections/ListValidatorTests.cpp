#include <gtest/gtest.h>

#include <Corvane/Collections/ListValidator.hpp>

namespace corvane {

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
        const Validator validator(test.blacklist, test.whitelist);
        EXPECT_EQ(validator.mode(), test.mode);
        EXPECT_EQ(validator.isAllowed('a'), test.allowsA);
        EXPECT_EQ(validator.isAllowed('b'), test.allowsB);
    }
}

}  // namespace corvane
