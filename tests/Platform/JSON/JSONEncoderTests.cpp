#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/Collections/OrderedDictionary.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

namespace corvane {
namespace {

enum class Side { home, away };

struct Team {
    std::int64_t id = 0;
    std::string name;
    std::optional<std::string> city;
    bool secret = false;

    static constexpr CodingRule codingRules[] = {
        {.member = "id", .key = "team_id"},
        {.member = "secret", .presence = CodingPresence::notCoded},
    };

    bool operator==(const Team&) const = default;
};

struct Everything {
    std::vector<Team> teams;
    std::map<int, std::vector<bool>> flags;
    std::map<Side, double> odds;
    std::vector<std::optional<int>> scores;
    float share = 0;
    std::uint64_t huge = 0;
    Date kickOff;
    JSONValue extra;
    OrderedDictionary<std::string, std::string> texts;

    bool operator==(const Everything&) const = default;
};

/// Encodes itself as `write` says.
template <auto write>
struct Writing {
    static void encode(Encoder& encoder) { write(encoder); }
};

std::string textOf(const std::expected<Data, EncodingError>& data) {
    return data ? std::string(data->text()) : data.error().description();
}

template <auto write>
std::string written(JSONWritingOptions options = {}) {
    return textOf(JSONEncoder{.outputFormatting = options}.encode(std::vector{Writing<write>()}));
}

TEST(JSONEncoder, WritesWhatTheDecoderReads) {
    const Everything value{
        .teams = {{1, "Atlético \"A\"\n\x01", std::nullopt, true}, {-5, "", "Ürgüp"}},
        .flags = {{-1, {true, false}}, {7, {}}},
        .odds = {{Side::home, 0.1}, {Side::away, -0.0}},
        .scores = {1, std::nullopt},
        .share = 0.1F,
        .huge = std::numeric_limits<std::uint64_t>::max(),
        .kickOff = Date(Date::duration(1700000000.25)),
        .extra = JSONDictionary{{"z", true}, {"a", JSONArray{1.0, nullptr}}},
        .texts = {{"z", ""}, {"", "\\/\t"}},
    };
    const auto data = JSONEncoder().encode(value);
    ASSERT_TRUE(data) << data.error().description();
    EXPECT_EQ(data->text(),
              R"({"teams":[{"team_id":1,"name":"Atlético \"A\"\n\u0001"},{"team_id":-5,"name":"","city":"Ürgüp"}],)"
              R"("flags":{"-1":[true,false],"7":[]},"odds":{"home":0.1,"away":-0.0},"scores":[1,null],"share":0.1,)"
              R"("huge":18446744073709551615,"kickOff":1700000000.25,"extra":{"z":true,"a":[1.0,null]},)"
              R"("texts":{"z":"","":"\\/\t"}})");
    auto read = JSONDecoder().decode<Everything>(*data);
    ASSERT_TRUE(read) << read.error().description();
    read->teams[0].secret = true;
    EXPECT_EQ(*read, value);
}

TEST(JSONEncoder, FormatsAsAsked) {
    const std::vector<Team> teams{{1, "a", "c"}};
    EXPECT_EQ(textOf(JSONEncoder{.outputFormatting = {.sortedKeys = true}}.encode(teams)),
              R"([{"city":"c","name":"a","team_id":1}])");
    EXPECT_EQ(textOf(JSONEncoder{.outputFormatting = {.prettyPrinted = true}}.encode(teams)),
              "[\n  {\n    \"team_id\": 1,\n    \"name\": \"a\",\n    \"city\": \"c\"\n  }\n]");
    EXPECT_EQ(textOf(JSONEncoder().encode("a literal")), "\"a literal\"");
}

TEST(JSONEncoder, SaysWhatJSONCannotExpress) {
    using Doubles = std::map<std::string, std::vector<double>>;
    EXPECT_EQ(textOf(JSONEncoder().encode(Doubles{{"a", {1, HUGE_VAL, std::nan("")}}})),
              "JSON cannot express the number inf at a[1].");
    EXPECT_EQ(textOf(JSONEncoder().encode(std::vector{std::nanf("")})), "JSON cannot express the number nan at [0].");
    EXPECT_EQ(textOf(JSONEncoder().encode(std::vector<std::string>{"", "\xff"})),
              "The text is not valid UTF-8 at [1].");
    EXPECT_EQ(textOf(JSONEncoder().encode(std::map<std::string, int>{{"\xff", 1}})).substr(0, 30),
              "The text is not valid UTF-8 at");
    // NOLINTNEXTLINE(clang-analyzer-optin.core.EnumCastOutOfRange)
    EXPECT_EQ(textOf(JSONEncoder().encode(static_cast<Side>(9))),
              "The value is none of the enumeration's at the top level.");

    struct Node {
        std::vector<Node> c;
    };

    Node root;
    for (std::size_t i = 0; i < JSONSerialization::maximumDepth / 2; ++i)
        root = Node{{root}};
    const auto tooDeep = JSONEncoder().encode(root);
    ASSERT_FALSE(tooDeep);
    EXPECT_EQ(tooDeep.error().description().substr(0, 35), "The value is nested too deeply at c");
    EXPECT_TRUE(JSONEncoder().encode(root.c[0])) << "one level less is fine";
}

TEST(Encoder, WritesByWayOfContainers) {
    constexpr auto write = [](Encoder& encoder) {
        auto members = encoder.container();
        members.encode("n", 1);
        members.encodeIfPresent("absent", std::optional<int>());
        members.encodeIfPresent("present", std::optional(2));
        {
            auto list = members.nestedUnkeyedContainer("l");
            list.encode(true);
            list.encodeNil();
            list.nestedContainer().encode("x", std::string("y"));
            list.nestedUnkeyedContainer().encode(1.5);
        }
        members.encodeNil("nil");
        auto empty = members.nestedContainer("e");
    };
    EXPECT_EQ(written<write>(), R"([{"n":1,"present":2,"l":[true,null,{"x":"y"},[1.5]],"nil":null,"e":{}}])");
    EXPECT_EQ(written<[](Encoder& encoder) { encoder.encode(std::vector{1}); }>(), "[[1]]");
    EXPECT_EQ(written<[](Encoder& encoder) { encoder.encodeNil(); }>(), "[null]");
}

TEST(Encoder, RefusesWhatWouldNotBeOneValue) {
    EXPECT_EQ(written<[](Encoder&) {}>(), "No value was encoded at [0].");
    EXPECT_EQ(written<[](Encoder& encoder) { encoder.fail("The score is negative"); }>(),
              "The score is negative at [0].");
    constexpr auto twice = [](Encoder& encoder) {
        encoder.encode(1);
        encoder.container().encode("a", 2);
    };
    EXPECT_EQ(written<twice>(), "A second value was encoded at [0].");
    constexpr auto crossed = [](Encoder& encoder) {
        auto outer = encoder.container();
        auto inner = outer.nestedContainer("in");
        outer.encode("late", 1);
    };
    EXPECT_EQ(written<crossed>(), "A nested container is still open at [0].");
    constexpr auto deep = [](Encoder& encoder) {
        auto outer = encoder.container();
        outer.nestedUnkeyedContainer("in").nestedContainer().encode("x", HUGE_VAL);
    };
    EXPECT_EQ(written<deep>(), "JSON cannot express the number inf at [0].in[0].x.");
    const AnyError any = JSONEncoder().encode(HUGE_VAL).error();
    EXPECT_EQ(any.description(), "JSON cannot express the number inf at the top level.");
}

}  // namespace
}  // namespace corvane
