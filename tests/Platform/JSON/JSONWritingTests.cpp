#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

using namespace std::string_literals;

std::string written(const JSONValue& value, JSONWritingOptions options = {}) {
    const auto data = JSONSerialization::data(value, options);
    return data ? std::string(data->text()) : data.error().description();
}

TEST(JSONSerialization, WritesCompactPrettyAndSorted) {
    const JSONValue value = JSONDictionary{{"b", JSONArray{1, JSONDictionary{{"z", true}, {"y", nullptr}}}},
                                           {"a", JSONArray{}},
                                           {"é", JSONDictionary{}},
                                           {"B", 1.0}};
    EXPECT_EQ(written(value), R"({"b":[1,{"z":true,"y":null}],"a":[],"é":{},"B":1.0})");
    EXPECT_EQ(written(value, {.sortedKeys = true}), R"({"B":1.0,"a":[],"b":[1,{"y":null,"z":true}],"é":{}})");
    EXPECT_EQ(written(value, {.prettyPrinted = true, .sortedKeys = true}), R"({
  "B": 1.0,
  "a": [],
  "b": [
    1,
    {
      "y": null,
      "z": true
    }
  ],
  "é": {}
})");
    EXPECT_EQ(written(JSONDictionary{}, {.prettyPrinted = true}), "{}");
    EXPECT_EQ(written("alone", {.prettyPrinted = true}), "\"alone\"");
}

TEST(JSONSerialization, EscapesWhatMustBeAndNothingElse) {
    EXPECT_EQ(written("\"\\/\b\f\n\r\t\x01\x1f\x7f\0é\u2028"s),
              "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\\u0000é\u2028\"");
    EXPECT_EQ(written(JSONDictionary{{"a\"b", 1}}), R"({"a\"b":1})");
}

TEST(JSONSerialization, RefusesWhatJSONCannotExpressButDescribesIt) {
    EXPECT_EQ(written(JSONArray{std::nan("")}),
              "Error Domain=JSONErrorDomain Code=7 \"JSON cannot express a number that is not finite.\"");
    EXPECT_FALSE(JSONSerialization::data(JSONArray{HUGE_VAL}));
    EXPECT_EQ(written("\xff"), "Error Domain=JSONErrorDomain Code=3 \"The text is not valid UTF-8.\"");
    EXPECT_FALSE(JSONSerialization::data(JSONDictionary{{"\xc3", 1}}));
    EXPECT_EQ(JSONValue(JSONArray{std::nan(""), -HUGE_VAL, 1}).description(), "[nan,-inf,1]");
}

TEST(JSONSerialization, WritesWhatReadsBackEqualOrderAndBooleansIncluded) {
    const std::string text =
        R"({"z":[true,1,1.0,0,false,-0.0,1e+300,5e-324,18446744073709551615,-9223372036854775808],)"
        R"("a":{"\u0000":"\"","q":[[],{},""]}})";
    const auto value = JSONSerialization::jsonObject(text);
    ASSERT_TRUE(value);
    for (const bool pretty : {false, true}) {
        const auto again = JSONSerialization::jsonObject(*JSONSerialization::data(*value, {.prettyPrinted = pretty}));
        ASSERT_TRUE(again);
        EXPECT_EQ(*again, *value);
        EXPECT_EQ(written(*again), text);
    }
}

}  // namespace
}  // namespace corvane
