#include <gmock/gmock.h>

#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Decoding/NSDictionaryInitialisable.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::Optional;

template <class Input>
struct Result : SimpleDataProcessing<Result<Input>, Input> {
    explicit Result(const Input& input) : text(JSONValue(input).description()) {}

    static std::optional<Result> fromInput(const Input& input) {
        return Result(input).text.contains('1') ? std::optional(Result(input)) : std::nullopt;
    }

    std::string text;
};

struct Team : NSDictionaryInitialisable<Team> {
    explicit Team(const JSONDictionary& json) : name(JSONUtils::getStringFromJSON(json, "name", "unknown")) {}

    std::string name;
};

TEST(SimpleDataProcessing, BuildsWhatItCanAndSkipsTheRest) {
    const JSONArray array{"1", "2", 1, 2, true, nullptr, JSONArray{1}, JSONDictionary{{"a", 1}}, JSONDictionary{}};
    const auto expect = [&]<class Input>(const Input&, const auto&... texts) {
        EXPECT_THAT(Result<Input>::parseArray(array), Optional(ElementsAre(Field(&Result<Input>::text, texts)...)));
        EXPECT_FALSE(Result<Input>::parseArray(std::nullopt));
        EXPECT_THAT(Result<Input>::parseArray(JSONArray()), Optional(ElementsAre()));
    };
    expect(std::string(), "\"1\"");
    expect(JSONNumber(1), "1");
    expect(JSONArray(), "[1]");
    expect(JSONDictionary(), "{\"a\":1}");
    expect(JSONValue(), "\"1\"", "1", "[1]", "{\"a\":1}");

    const JSONDictionary rovers{{"name", "Rovers"}};
    EXPECT_EQ(Team::parseData(rovers).value().name, "Rovers");
    EXPECT_FALSE(Team::parseData(std::nullopt));
    EXPECT_THAT(Team::parseArray(JSONArray{rovers, 1, JSONDictionary{}}),
                Optional(ElementsAre(Field(&Team::name, "Rovers"), Field(&Team::name, "unknown"))));
}

}  // namespace
}  // namespace corvane
