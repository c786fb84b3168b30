#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Decoding/JSONUtils.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

JSONDictionary member(const std::string& json) {
    return *JSONSerialization::jsonObject("{\"x\": " + json + "}")->asDictionary();
}

TEST(JSONUtils, ReadsEachKindByItsOwnRules) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();

    struct {
        std::string json;
        std::optional<std::string> string, forced;
        std::optional<std::int64_t> integer;
        std::optional<double> real;
        bool boolean;
    } const cases[] = {
        {"\"12\"", "12", "12", std::nullopt, std::nullopt, false},
        {"\"\"", "", "", std::nullopt, std::nullopt, false},
        {"\"true\"", "true", "true", std::nullopt, std::nullopt, true},
        {"\"TRUE\"", "TRUE", "TRUE", std::nullopt, std::nullopt, false},
        {"\"1\"", "1", "1", std::nullopt, std::nullopt, false},
        {"5", std::nullopt, "5", 5, 5.0, true},
        {"5.0", std::nullopt, "5", 5, 5.0, true},
        {"1.5", std::nullopt, "1.5", 1, 1.5, true},
        {"-12.9", std::nullopt, "-12.9", -12, -12.9, true},
        {"0.0", std::nullopt, "0", 0, 0.0, false},
        {"true", std::nullopt, "1", 1, 1.0, true},
        {"false", std::nullopt, "0", 0, 0.0, false},
        {"18446744073709551615", std::nullopt, "18446744073709551615", largest, 0x1p64, true},
        {"1e300", std::nullopt, "1e+300", largest, 1e300, true},
        {"-1e300", std::nullopt, "-1e+300", std::numeric_limits<std::int64_t>::min(), -1e300, true},
        {"null", std::nullopt, std::nullopt, std::nullopt, std::nullopt, false},
        {"[1]", std::nullopt, std::nullopt, std::nullopt, std::nullopt, false},
        {"{}", std::nullopt, std::nullopt, std::nullopt, std::nullopt, false},
    };

    for (const auto& test : cases) {
        const JSONDictionary json = member(test.json);
        EXPECT_EQ(JSONUtils::getStringFromJSON(json, "x"), test.string) << test.json;
        EXPECT_EQ(JSONUtils::getStringFromJSON(json, "x", "default"), test.string.value_or("default")) << test.json;
        EXPECT_EQ(JSONUtils::getForceStringFromJSON(json, "x"), test.forced) << test.json;
        EXPECT_EQ(JSONUtils::getIntFromJSON(json, "x"), test.integer) << test.json;
        EXPECT_EQ(JSONUtils::getInt64FromJSON(json, "x"), test.integer) << test.json;
        EXPECT_EQ(JSONUtils::getIntFromJSON(json, "x", 7), test.integer.value_or(7)) << test.json;
        EXPECT_EQ(JSONUtils::getNumberFromJSON(json, "x", 7), test.integer.value_or(7)) << test.json;
        EXPECT_EQ(JSONUtils::getDoubleFromJSON(json, "x"), test.real) << test.json;
        EXPECT_EQ(JSONUtils::getDoubleFromJSON(json, "x", 7.5), test.real.value_or(7.5)) << test.json;
        const auto single = test.real ? std::optional(static_cast<float>(*test.real)) : std::nullopt;
        EXPECT_EQ(JSONUtils::getFloatFromJSON(json, "x"), single) << test.json;
        EXPECT_EQ(JSONUtils::getFloatFromJSON(json, "x", 7.5F), single.value_or(7.5F)) << test.json;
        EXPECT_EQ(JSONUtils::getBoolFromJSON(json, "x"), test.boolean) << test.json;
        EXPECT_FALSE(JSONUtils::getForceStringFromJSON(json, "y")) << test.json;
    }
}

TEST(JSONUtils, TakesTheTextsOfAnArrayAndLeavesTheRestOut) {
    const JSONDictionary mixed = member(R"(["a", 1, "b", null, ["c"]])");
    EXPECT_EQ(JSONUtils::getStringArrayFromJSON(mixed, "x"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(JSONUtils::getArrayFromJSON(mixed, "x").value().size(), 5);
    EXPECT_EQ(JSONUtils::getStringArrayFromJSON(member("[]"), "x"), std::vector<std::string>());
    EXPECT_FALSE(JSONUtils::getStringArrayFromJSON(member("\"a\""), "x"));
    EXPECT_FALSE(JSONUtils::getArrayFromJSON(member("{}"), "x"));
}

}  // namespace
}  // namespace corvane
