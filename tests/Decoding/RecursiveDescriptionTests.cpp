#include <map>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Decoding/KeyConversion.hpp>
#include <Corvane/Decoding/RecursiveDescription.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {
namespace {

enum class Foot { left, nameless = 70 };

struct Player {
    std::optional<std::string> name;
    Foot foot;

    [[nodiscard]] std::string description() const { return recursiveDescription(*this); }
};

template <class ID>
struct Team {
    ID id;
    Date founded;
    std::vector<Player> players;
    std::map<std::string, JSONValue> more;
};

TEST(RecursiveDescription, ShowsEveryFieldWithItsLabelBelowTheTypesName) {
    const Team<int> team{.id = 12,
                         .founded = Date(std::chrono::duration<double>(86400)),
                         .players = {{"Smith", Foot::left}, {std::nullopt, Foot::nameless}},
                         .more = {{"x", JSONArray{1, nullptr}}}};
    EXPECT_EQ(recursiveDescription(team),
              "Team<int>\n"
              "    id: 12\n"
              "    founded: 86400.0\n"
              "    players: [2]\n"
              "        0: Player\n"
              "            name: Smith\n"
              "            foot: left\n"
              "        1: Player\n"
              "            name: nil\n"
              "            foot: 70\n"
              "    more: {1}\n"
              "        x: [1,null]");
}

TEST(KeyConversion, GivesTypedKeysInOrderAndLeavesOtherNamesOut) {
    const JSONDictionary json{{"2", "two"}, {"x", "lost"}, {"01", "one"}, {"300", "lost"}, {"1", "uno"}};
    EXPECT_EQ((convertKeys<std::uint8_t>(json)), (OrderedDictionary<std::uint8_t, JSONValue>{{2, "two"}, {1, "uno"}}));
}

}  // namespace
}  // namespace corvane
