#include <cmath>

#include <gtest/gtest.h>

#include <Corvane/Platform/AnyError.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>

#include "Everything.hpp"

namespace corvane {
namespace {

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
    const auto data = JSONEncoder().encode(everything());
    ASSERT_TRUE(data) << data.error().description();
    EXPECT_EQ(
        data->text(),
        R"({"tiny":-128,"huge":18446744073709551615,"ratio":-0.25,"share":0.1,"live":true,)"
        R"("kickOff":1700000000.5,"side":"away","status":2,"grade":"F",)"
        R"("teams":[{"id":1,"name":"Atlético \"😀\"\n\u0001"},{"id":-9223372036854775808,"name":"B","city":"C"}],)"
        R"("flags":[true,false],"scores":[1,null],"groups":{"":[],"a\"b":[1]},"sides":{"-3":"home"},)"
        R"("goals":{"away":2},"form":{"z":[3],"a":[2]},"winner":{"id":5,"name":""},)"
        R"("extra":{"z":[100.0,true],"a":null}})");
    EXPECT_EQ(JSONDecoder().decode<Everything>(*data), everything());
}

TEST(JSONEncoder, FormatsAsAsked) {
    const std::vector<Ruled> values{{"a", {1}, 9, 2}};
    EXPECT_EQ(textOf(JSONEncoder{.outputFormatting = {.sortedKeys = true}}.encode(values)),
              R"([{"bonus":2,"short_name":"a","tags":[1]}])");
    EXPECT_EQ(textOf(JSONEncoder{.outputFormatting = {.prettyPrinted = true}}.encode(values)),
              "[\n  {\n    \"short_name\": \"a\",\n    \"tags\": [\n      1\n    ],\n    \"bonus\": 2\n  }\n]");
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
