#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Decoding/NSDictionaryInitialisable.hpp>
#include <Corvane/Decoding/SimpleDataProcessing.hpp>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

/// A result such as "2-1".
template <class Input>
struct Result : SimpleDataProcessing<Result<Input>, Input> {
    explicit Result(std::string value) : text(std::move(value)) {}

    static std::optional<Result> fromInput(const Input& input) {
        const std::string text = JSONValue(input).description();
        return text.contains('1') ? std::optional(Result(text)) : std::nullopt;
    }

    bool operator==(const Result&) const = default;

    std::string text;
};

template <class Input>
std::vector<std::string> texts(const std::optional<JSONArray>& array) {
    std::vector<std::string> texts;
    const auto results = Result<Input>::parseArray(array);
    for (const auto& result : results.value())
        texts.push_back(result.text);
    return texts;
}

TEST(SimpleDataProcessing, BuildsWhatItCanAndSkipsTheRest) {
    const JSONArray array{"1", "2", 1, 2, true, nullptr, JSONArray{1}, JSONDictionary{{"a", 1}}, JSONDictionary{}};
    EXPECT_THAT(texts<std::string>(array), ElementsAre("\"1\""));
    EXPECT_THAT(texts<JSONNumber>(array), ElementsAre("1"));
    EXPECT_THAT(texts<JSONArray>(array), ElementsAre("[1]"));
    EXPECT_THAT(texts<JSONDictionary>(array), ElementsAre("{\"a\":1}"));
    EXPECT_THAT(texts<JSONValue>(array), ElementsAre("\"1\"", "1", "[1]", "{\"a\":1}"));
    EXPECT_THAT(texts<JSONValue>(JSONArray()), IsEmpty());
    EXPECT_EQ(Result<JSONValue>::parseArray(std::nullopt), std::nullopt);
}

struct Team : NSDictionaryInitialisable<Team> {
    explicit Team(const JSONDictionary& json) : name(JSONUtils::getStringFromJSON(json, "name", "unknown")) {}

    bool operator==(const Team&) const = default;

    std::string name;
};

TEST(NSDictionaryInitialisable, BuildsAModelOfEveryDictionary) {
    const JSONDictionary rovers{{"name", "Rovers"}};
    EXPECT_EQ(Team::parseData(rovers).value().name, "Rovers");
    EXPECT_EQ(Team::parseData(std::nullopt), std::nullopt);
    EXPECT_THAT(Team::parseArray(JSONArray{rovers, 1, JSONDictionary{}}),
                Optional(ElementsAre(Team(rovers), Team(JSONDictionary{}))));
    EXPECT_EQ(Team::parseArray(std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace corvane
