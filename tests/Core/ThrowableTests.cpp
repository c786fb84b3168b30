#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Core/Throwable.hpp>

namespace corvane {
namespace {

struct Player {
    int number = 0;
    std::string name;
};

TEST(Throwable, LetsOneBadElementFailAlone) {
    const auto players = JSONDecoder().decode<std::vector<Throwable<Player>>>(
        R"([{"number":1,"name":"a"},{"number":[{"deep":1}],"name":"b"},7,null,{"name":"c"},{"number":2,"name":"d"}])");
    ASSERT_TRUE(players) << players.error().description();
    std::vector<std::string> results;
    for (const auto& player : *players)
        results.push_back(player.result() ? player.result()->name : player.result().error().description());
    EXPECT_EQ(results, (std::vector<std::string>{"a", "Expected an integer but found an array at [1].number.",
                                                 "Expected a dictionary but found a number at [2].",
                                                 "Expected a dictionary but found null at [3].",
                                                 "There is no member \"number\" at [4].", "d"}));
}

TEST(Throwable, DoesNotHideThatTheDocumentIsNoJSON) {
    for (const char* text : {R"([{"number":1,"name":"a"},{"number":x}])", R"([{"number":1e400}])", "[[1,]]", "[{}"}) {
        EXPECT_FALSE(JSONDecoder().decode<std::vector<Throwable<Player>>>(text)) << text;
    }
}

}  // namespace
}  // namespace corvane
