#include <cstring>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

#include "Everything.hpp"

namespace corvane {

namespace {

struct Slashed {
    int value = 0;

    static constexpr CodingRule codingRules[] = {{.member = "value", .key = "a\\b"}};
};

struct Quoted {
    std::optional<std::string> value;

    static constexpr CodingRule codingRules[] = {{.member = "value", .key = "a\":"}};
};

struct Node {
    std::vector<Node> c;
};

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    for (; count > 0; --count)
        text += part;
    return text;
}

template <class T>
std::string failureOf(std::string_view text) {
    const auto value = JSONDecoder().decode<T>(text);
    return value ? "no failure" : value.error().description();
}

TEST(JSONDecoder, DecodesPlainStructsOfEverySupportedKind) {
    const auto value = JSONDecoder().decode<Everything>(R"(
        { "unknown": [{"a": [1, 2]}, "x\u0041\\", -1.5e3, null, true], "tiny": -128, "huge": 18446744073709551615,
          "ratio" : -0.25, "share": 0.1, "live": true, "kickOff": 1700000000.5, "side": "away", "status": 2,
          "grade": "F", "teams": [{"id": 1, "name": "Atl\u00e9tico \"\ud83d\ude00\"\n\u0001", "city": null},
                                  {"name": "B", "id": -9223372036854775808, "city": "C"}],
          "flags": [true, false], "scores":[1,null], "groups": {"a\"b": [1], "": []}, "sides": {"-3": "home"},
          "goals": {"away": 2}, "form": {"z": [1], "a": [2], "z": [3]},
          "winner": {"id": 5.0, "name": ""}, "extra": {"z": [1e2, true], "a": null} } )");
    ASSERT_TRUE(value) << value.error().description();
    EXPECT_EQ(*value, everything());
    EXPECT_EQ(value->extra.description(), R"({"z":[100.0,true],"a":null})");
}

TEST(JSONDecoder, FollowsTheRulesOfAType) {
    const auto full =
        JSONDecoder().decode<Ruled>(R"({"cached":9,"short_name":"ROV","tags":[1],"bonus":null,"shortName":1})");
    EXPECT_EQ(full, (Ruled{"ROV", {1}, 3, std::nullopt}));
    EXPECT_EQ(JSONDecoder().decode<Ruled>(R"({"tags":null,"short_name":""})"), Ruled());
    EXPECT_EQ(failureOf<Ruled>(R"({"tags":[]})"), "There is no member \"short_name\" at the top level.");
    EXPECT_EQ(JSONDecoder().decode<Slashed>(R"({"a\b":1,"a\\b":2})")->value, 2) << "the first key is a backspace";
    EXPECT_FALSE(JSONDecoder().decode<Slashed>(std::string_view("{\0\0\0\0\0\0\0\0:1}", 12)));
    EXPECT_EQ(JSONDecoder().decode<Quoted>(R"({"a":"another","a\":":"b"})")->value, "b");
    EXPECT_EQ(JSONDecoder().decode<Quoted>(R"({"a":"another"})")->value, std::nullopt);
}

TEST(JSONDecoder, NamesThePathAndWhatWasWrong) {
    using Teams = std::map<std::string, std::vector<Team>>;
    const std::pair<std::string, std::string> cases[] = {
        {R"({"a":[{"id":1,"name":"x"},{"id":"2","name":""}]})", "Expected an integer but found text at a[1].id."},
        {R"({"a":[{"id":1,"name":null}]})", "Expected text but found null at a[0].name."},
        {R"({"a":[{"id":true,"name":""}]})", "Expected an integer but found a Boolean at a[0].id."},
        {R"({"a":[{"id":[],"name":""}]})", "Expected an integer but found an array at a[0].id."},
        {R"({"a":[{"id":1,"name":{}}]})", "Expected text but found a dictionary at a[0].name."},
        {R"({"a":[{"id":1,"name":"","city":7}]})", "Expected text but found a number at a[0].city."},
        {R"({"a":[{"name":""}]})", "There is no member \"id\" at a[0]."},
        {R"({"a":[[]]})", "Expected a dictionary but found an array at a[0]."},
        {R"({"a":[null]})", "Expected a dictionary but found null at a[0]."},
        {R"({"a":{}})", "Expected an array but found a dictionary at a."},
        {R"({"a b.c":1})", R"(Expected an array but found a number at ["a b.c"].)"},
        {R"({"\u0061\"":1})", R"(Expected an array but found a number at ["a""].)"},
        {"[]", "Expected a dictionary but found an array at the top level."},
        {R"({"a":[{"id":9223372036854775808,"name":""}]})",
         "Expected an integer from -9223372036854775808 to 9223372036854775807 but found 9223372036854775808 at "
         "a[0].id."},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(failureOf<Teams>(text), message) << text;
    EXPECT_EQ(failureOf<Side>("\"draw\""), "\"draw\" is not one of the enumeration's values at the top level.");
    EXPECT_EQ(failureOf<Status>("3"), "3 is not one of the enumeration's values at the top level.");
    EXPECT_EQ((failureOf<std::map<int, int>>(R"({"1":1,"+2":2})")),
              "The key is not one of the dictionary's at [\"+2\"].");
}

TEST(JSONDecoder, ChecksTheRangeOfNumbersExactly) {
    EXPECT_EQ(JSONDecoder().decode<int>("2147483647"), 2147483647);
    EXPECT_EQ(JSONDecoder().decode<int>(" 1e2\n"), 100);
    EXPECT_EQ(JSONDecoder().decode<std::uint8_t>("255.0"), 255);
    EXPECT_EQ(JSONDecoder().decode<std::uint8_t>("-0"), 0);
    // Of every length, with and without something behind them.
    for (std::int64_t number = 1; number < 1'000'000'000'000'000'000; number = number * 10 + number % 7) {
        const std::string text = std::to_string(number);
        EXPECT_EQ(JSONDecoder().decode<std::int64_t>(text), number);
        EXPECT_EQ(JSONDecoder().decode<std::vector<std::int64_t>>("[-" + text + "]"), std::vector{-number});
        for (std::size_t point = 1; point <= text.size(); ++point) {
            const std::string real = "-" + text.substr(0, point) + "." + text.substr(point) + "0";
            EXPECT_EQ(JSONDecoder().decode<std::vector<double>>("[" + real + "]"), std::vector{std::stod(real)});
        }
    }
    for (const char* text : {"256", "-1", "0.5", "1e3", "99999999999999999999"}) {
        const auto value = JSONDecoder().decode<std::uint8_t>(text);
        ASSERT_FALSE(value) << text;
        EXPECT_TRUE(value.error().isDataCorrupted()) << text;
        EXPECT_EQ(value.error().description(),
                  "Expected an integer from 0 to 255 but found " + std::string(text) + " at the top level.");
    }
    EXPECT_FALSE(JSONDecoder().decode<float>("1e39"));
}

TEST(JSONDecoder, ReadsDataInPlaceWhateverItsPaddingHolds) {
    for (const char filler : {'9', '"', '\\', 'e', ' '}) {
        for (const std::string_view text : {"12345678", "-1", "0", "1.5e1"}) {
            const std::shared_ptr<std::byte[]> buffer = std::make_shared<std::byte[]>(text.size() + Data::padding);
            std::memset(buffer.get(), filler, text.size() + Data::padding);
            std::memcpy(buffer.get(), text.data(), text.size());
            const auto value = JSONDecoder().decode<double>(Data::adopting(buffer, text.size()));
            EXPECT_EQ(value, std::stod(std::string(text))) << text << filler;
        }
    }
}

TEST(JSONDecoder, ValidatesTheWholeDocumentFirst) {
    const auto oneMegabyte = std::string(1 << 20, 'k');
    for (const std::string& text : {std::string(R"({"id":"not a number","name":)"), "{\"" + oneMegabyte + "\":1,"}) {
        const auto value = JSONDecoder().decode<Team>(text);
        ASSERT_FALSE(value) << text.substr(0, 60);
        EXPECT_TRUE(value.error().isDataCorrupted()) << value.error().description();
    }
    for (const std::string_view text : {"[1 2]", "[1 [2]]", R"({"\q":12})", "{1:2}"})
        EXPECT_TRUE(failureOf<std::vector<int>>(text).starts_with("The text is not valid JSON. (byte ")) << text;
    const auto longKey = JSONDecoder().decode<Team>("\xEF\xBB\xBF{\"" + oneMegabyte + R"(":[],"id":1,"name":"a"})");
    ASSERT_TRUE(longKey) << "and a byte order mark";
    EXPECT_EQ(longKey->name, "a");
    const std::string message = failureOf<std::map<std::string, int>>("{\"" + oneMegabyte + R"(":"x"})");
    EXPECT_LT(message.size(), 200U) << "a message stays readable whatever the document";
}

TEST(JSONDecoder, LimitsNesting) {
    const auto nested = [](std::size_t depth) { return repeated(R"({"c":[)", depth / 2) + repeated("]}", depth / 2); };
    const auto deepest = JSONDecoder().decode<Node>(nested(JSONSerialization::maximumDepth));
    ASSERT_TRUE(deepest) << deepest.error().description();
    EXPECT_EQ(failureOf<Node>(nested(JSONSerialization::maximumDepth + 2)),
              "The JSON value is nested too deeply. (byte 3072)");
}

TEST(JSONDecoder, LetsTheLastOfRepeatedKeysCount) {
    struct Case {
        std::string_view text;
        Team team;
    };

    const Case cases[] = {
        {R"({"id":1,"name":"a","id":2})", {2, "a", std::nullopt}},
        {R"({"id":"wrong","name":"a","id":2})", {2, "a", std::nullopt}},
        {R"({"city":"x","id":1,"name":"a","city":null})", {1, "a", std::nullopt}},
        {R"({"id":1,"\u0069d":3,"name":"a"})", {3, "a", std::nullopt}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(JSONDecoder().decode<Team>(c.text), c.team) << c.text;
    EXPECT_EQ(failureOf<Team>(R"({"id":1,"name":"a","id":null})"), "Expected an integer but found null at id.");
    // Nothing of the earlier value may shine through.
    const auto winner = JSONDecoder().decode<std::map<std::string, Team>>(
        R"({"w":{"id":1,"name":"a","city":"old"},"w":{"id":2,"name":"b"}})");
    EXPECT_EQ(winner, (std::map<std::string, Team>{{"w", {2, "b", std::nullopt}}}));
}

/// Scalars of every length around the blocks in which they are looked at, right and wrong ones.
std::vector<std::string> scalars() {
    std::vector<std::string> scalars{"-",   "01",  "-01", "00", "1.",  ".5", "1.e3", "1e",
                                     "1e+", "--1", "+1",  "1x", "1\"", "0",  "-0"};
    for (const std::string part : {"1", "-1"}) {
        for (std::size_t count = 1; count < 21; ++count) {
            const std::string digits = part + std::string(count, '7');
            for (const char* const rest : {"", ".5", ".12345678", ".123456789x", "e2", "x", "."})
                scalars.push_back(digits + rest);
        }
    }
    for (std::size_t count = 0; count < 36; ++count) {
        for (const char* const rest :
             {"", R"(\\)", R"(\\\\)", R"(\\\n)", R"(\/)", R"(\x)", R"(\\\)", R"(\u00e9)", R"(\u00e)", R"(\ud800)"})
            scalars.push_back('"' + std::string(count, 'a') + rest + '"');
    }
    return scalars;
}

TEST(JSONDecoder, PassesOverAndReadsWhatIsJSONAndNothingElse) {
    for (const std::string& scalar : scalars()) {
        const std::string document = R"({"x":)" + scalar + R"(,"id":1,"name":"a","more":[)" + scalar + "]}";
        const auto whole = JSONSerialization::jsonObject(document);
        const bool isJSON = whole.has_value();
        EXPECT_EQ(JSONDecoder().decode<Team>(document).has_value(), isJSON) << scalar;
        const auto value = JSONDecoder().decode<JSONValue>(document);
        EXPECT_EQ(value.has_value(), isJSON) << scalar;

        struct Read {
            std::int64_t x = 0;
        };

        const auto integer = isJSON ? (*whole)["x"].asInt64() : std::nullopt;
        const auto read = JSONDecoder().decode<Read>(document);
        EXPECT_EQ(read ? std::optional(read->x) : std::nullopt, integer) << scalar;
    }
}

}  // namespace
}  // namespace corvane
