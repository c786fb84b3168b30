#include <gtest/gtest.h>

#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

JSONDictionary member(const std::string& json) {
    return *JSONSerialization::jsonObject("{\"x\": " + json + "}")->asDictionary();
}

TEST(JSONUtils, ReadsEachKindByItsOwnRules) {
    constexpr auto absent = std::nullopt;

    struct {
        std::string json;
        std::optional<std::string> string, forced;
        std::optional<std::int64_t> integer;
        std::optional<double> real;
        bool boolean;
    } const cases[] = {
        {"\"12\"", "12", "12", absent, absent, false},
        {"\"true\"", "true", "true", absent, absent, true},
        {"\"TRUE\"", "TRUE", "TRUE", absent, absent, false},
        {"\"1\"", "1", "1", absent, absent, false},
        {"5.0", absent, "5", 5, 5.0, true},
        {"1.5", absent, "1.5", 1, 1.5, true},
        {"-12.9", absent, "-12.9", -12, -12.9, true},
        {"0.0", absent, "0", 0, 0.0, false},
        {"true", absent, "1", 1, 1.0, true},
        {"18446744073709551615", absent, "18446744073709551615", INT64_MAX, 0x1p64, true},
        {"-1e300", absent, "-1e+300", INT64_MIN, -1e300, true},
        {"null", absent, absent, absent, absent, false},
        {"[1]", absent, absent, absent, absent, false},
    };

    for (const auto& test : cases) {
        const JSONDictionary json = member(test.json);
        const auto single = test.real ? std::optional(static_cast<float>(*test.real)) : absent;
        EXPECT_EQ(JSONUtils::getStringFromJSON(json, "x"), test.string) << test.json;
        EXPECT_EQ(JSONUtils::getStringFromJSON(json, "x", "default"), test.string.value_or("default")) << test.json;
        EXPECT_EQ(JSONUtils::getForceStringFromJSON(json, "x"), test.forced) << test.json;
        EXPECT_EQ(JSONUtils::getInt64FromJSON(json, "x"), test.integer) << test.json;
        EXPECT_EQ(JSONUtils::getNumberFromJSON(json, "x", 7), test.integer.value_or(7)) << test.json;
        EXPECT_EQ(JSONUtils::getDoubleFromJSON(json, "x", 7.5), test.real.value_or(7.5)) << test.json;
        EXPECT_EQ(JSONUtils::getFloatFromJSON(json, "x"), single) << test.json;
        EXPECT_EQ(JSONUtils::getBoolFromJSON(json, "x"), test.boolean) << test.json;
    }
}

TEST(JSONUtils, TakesTheTextsOfAnArrayAndLeavesTheRestOut) {
    const JSONDictionary mixed = member(R"(["a", 1, "b", null, ["c"]])");
    EXPECT_EQ(JSONUtils::getStringArrayFromJSON(mixed, "x"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(JSONUtils::getStringArrayFromJSON(member("[]"), "x"), std::vector<std::string>());
    EXPECT_FALSE(JSONUtils::getStringArrayFromJSON(member("\"a\""), "x"));
}

}  // namespace
}  // namespace corvane
