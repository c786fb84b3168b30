#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Decoding/KeyConversion.hpp>
#include <Corvane/Decoding/RecursiveDescription.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {
namespace {

enum class Foot { left, right };

struct Colours {
    std::string home;
    std::optional<std::string> away;
};

struct Player {
    int number;
    Foot foot;

    [[nodiscard]] std::string description() const { return recursiveDescription(*this); }
};

template <class ID>
struct Team {
    ID id;
    double points;
    bool isActive;
    Date founded;
    Colours colours;
    std::vector<Player> players;
    std::map<std::string, JSONValue> more;
};

TEST(RecursiveDescription, ShowsEveryFieldWithItsLabelBelowTheTypesName) {
    const Team<int> team{.id = 12,
                         .points = 1.5,
                         .isActive = true,
                         .founded = Date(std::chrono::duration<double>(86400)),
                         .colours = {.home = "blue\nand white", .away = std::nullopt},
                         .players = {{9, Foot::left}, {10, static_cast<Foot>(70)}},
                         .more = {{"x", JSONArray{1, nullptr}}}};
    EXPECT_EQ(recursiveDescription(team),
              "Team<int>\n"
              "    id: 12\n"
              "    points: 1.5\n"
              "    isActive: true\n"
              "    founded: 86400.0\n"
              "    colours: Colours\n"
              "        home: blue\n"
              "        and white\n"
              "        away: nil\n"
              "    players: [2]\n"
              "        0: Player\n"
              "            number: 9\n"
              "            foot: left\n"
              "        1: Player\n"
              "            number: 10\n"
              "            foot: 70\n"
              "    more: {1}\n"
              "        x: [1,null]");
}

TEST(KeyConversion, GivesTypedKeysInOrderAndLeavesOtherNamesOut) {
    const JSONDictionary json{{"2", "two"}, {"x", "lost"}, {"01", "one"}, {"300", "lost"}, {"1", "uno"}};
    EXPECT_EQ((convertKeys<std::uint8_t>(json)), (OrderedDictionary<std::uint8_t, JSONValue>{{2, "two"}, {1, "uno"}}));
    const std::map<std::string, int> feet{{"right", 2}, {"left", 1}, {"both", 3}};
    EXPECT_EQ(convertKeys<Foot>(feet), (OrderedDictionary<Foot, int>{{Foot::left, 1}, {Foot::right, 2}}));
}

}  // namespace
}  // namespace corvane
