#include <gtest/gtest.h>

#include <Corvane/Platform/Text/LetterCase.hpp>

namespace corvane {

TEST(LetterCase, FollowsUnicode) {
    EXPECT_EQ(uppercased("Sat 16 mar {z}"), "SAT 16 MAR {Z}");
    EXPECT_EQ(uppercased("straße, März, ïi, σς, ŉ"), "STRASSE, MÄRZ, ÏI, ΣΣ, ʼN");
    EXPECT_EQ(uppercased("a\xff"), "A\uFFFD");
    EXPECT_EQ(uppercased(""), "");
}

}  // namespace corvane
