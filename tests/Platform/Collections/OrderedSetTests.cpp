#include <iterator>
#include <string>

#include <gmock/gmock.h>

#include <Corvane/Platform/Collections/OrderedSet.hpp>

namespace corvane {
namespace {

using testing::ElementsAre;

TEST(OrderedSet, KeepsTheFirstOfEqualElementsInItsPlace) {
    OrderedSet<std::string> teams{"Rovers", "Athletic", "Rovers"};
    EXPECT_TRUE(teams.insert("United"));
    EXPECT_FALSE(teams.insert("Athletic"));
    EXPECT_THAT(teams, ElementsAre("Rovers", "Athletic", "United"));
    EXPECT_EQ(*std::prev(teams.end()), "United");
    EXPECT_TRUE(teams.contains(std::string_view("United")));
    EXPECT_TRUE(teams.remove("Rovers"));
    EXPECT_EQ(teams, (OrderedSet<std::string>{"Athletic", "United"}));
    EXPECT_NE(teams, (OrderedSet<std::string>{"United", "Athletic"}));
    EXPECT_EQ(teams.removeIf([](const std::string& team) { return team.starts_with('A'); }), 1U);
    EXPECT_EQ(teams.find("Athletic"), nullptr);
    EXPECT_THAT(teams, ElementsAre("United"));
}

TEST(SeededHash, TellsTextsApartByEveryByteAndTheirLength) {
    OrderedSet<std::size_t> hashes;
    std::size_t count = 0;
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string zeros(length, '\0');
        hashes.insert(SeededHash<std::string>()(zeros));
        ++count;
        for (std::size_t i = 0; i < length; ++i) {
            std::string changed = zeros;
            changed[i] = 1;
            hashes.insert(SeededHash<std::string>()(changed));
            ++count;
        }
    }
    EXPECT_EQ(hashes.size(), count);
}

}  // namespace
}  // namespace corvane
