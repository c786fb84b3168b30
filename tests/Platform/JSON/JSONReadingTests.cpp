#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

using namespace std::string_literals;

/// None of whose members is in any document.
struct Nothing {
    std::optional<int> nothing;
};

std::string repeated(std::string_view part, std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += part;
    return text;
}

TEST(JSONSerialization, KeepsNumbersAsExactAsTheyCanBe) {
    const std::pair<std::string, JSONNumber> cases[] = {
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9223372036854775808", std::uint64_t{1} << 63},
        {"18446744073709551615", UINT64_MAX},
        {"18446744073709551616", 0x1p64},
        {"-9223372036854777857", -0x1.0000000000001p63},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"1e2", 100.0},
        {"0.1", 0.1},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"1e-400", 0.0},
        {"5e-324", 5e-324},
        {"1" + repeated("0", 300) + "e-300", 1.0},
        {"-12345678901234.0", -12345678901234.0},
    };
    for (const auto& [text, number] : cases) {
        const auto value = JSONSerialization::jsonObject(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(value->asNumber(), number) << text;
        EXPECT_EQ(value->asNumber()->isFloatingPoint(), number.isFloatingPoint()) << text;
        EXPECT_EQ(JSONDecoder().decode<double>(text), number.doubleValue()) << text;
        EXPECT_EQ(JSONDecoder().decode<std::int64_t>(text).value_or(7), number.exactInt64().value_or(7)) << text;
        EXPECT_EQ(JSONDecoder().decode<std::uint64_t>(text).value_or(7), number.exactUInt64().value_or(7)) << text;
    }
    EXPECT_EQ(JSONSerialization::jsonObject("-9223372036854775809")->asNumber(), -0x1p63);
    EXPECT_FALSE(JSONDecoder().decode<std::int64_t>("-9223372036854775809"));
    // Large integers among everything that looks like one.
    const auto mixed = JSONSerialization::jsonObject(
        R"({"99999999999999999999":"\"99999999999999999999","x":[99999999999999999999,-99999999999999999999 ,
            0.99999999999999999999,1e-10,12,99999999999999999999.5,99999999999999999999e1]})");
    ASSERT_TRUE(mixed);
    EXPECT_EQ((*mixed)["99999999999999999999"].asString(), "\"99999999999999999999");
    EXPECT_EQ((*mixed)["x"], JSONValue(JSONArray{1e20, -1e20, 1.0, 1e-10, 12, 1e20, 1e21}));
}

TEST(JSONSerialization, HasOneAnswerForEveryBadInput) {
    struct Case {
        std::string text;
        JSONErrorCode code;
    };

    const Case cases[] = {
        {"", JSONErrorCode::emptyInput},
        {" \r\n\t", JSONErrorCode::emptyInput},
        {"\xEF\xBB\xBF", JSONErrorCode::emptyInput},
        {"{} x", JSONErrorCode::malformed},
        {"{}\0"s, JSONErrorCode::malformed},
        {"[1,]", JSONErrorCode::malformed},
        {R"({"y":1 "z":2})", JSONErrorCode::malformed},
        {R"(12"y")", JSONErrorCode::invalidNumber},
        {"[1", JSONErrorCode::malformed},
        {"{a:1}", JSONErrorCode::malformed},
        {"\"a", JSONErrorCode::malformed},
        {"\"a\nb\"", JSONErrorCode::malformed},
        {R"("\x41")", JSONErrorCode::malformed},
        {R"("\u12g4")", JSONErrorCode::malformed},
        {R"("\ud800")", JSONErrorCode::malformed},
        {R"("\ud800\u0041")", JSONErrorCode::malformed},
        {R"("\udc00")", JSONErrorCode::malformed},
        {"tru", JSONErrorCode::malformed},
        {"NaN", JSONErrorCode::malformed},
        {"\"\xff\"", JSONErrorCode::invalidUTF8},
        {"\"\xed\xa0\x80\"", JSONErrorCode::invalidUTF8},
        {"\"\xc0\x80\"", JSONErrorCode::invalidUTF8},
        {"\xff\xfe{\0}\0"s, JSONErrorCode::invalidUTF8},
        {"1e400", JSONErrorCode::invalidNumber},
        {"[" + repeated("9", 400) + "]", JSONErrorCode::invalidNumber},
        {"01", JSONErrorCode::invalidNumber},
        {"-", JSONErrorCode::invalidNumber},
        {repeated("[", 100'000), JSONErrorCode::malformed},
        {repeated("[", 100'000) + repeated("]", 100'000), JSONErrorCode::tooDeep},
        {repeated(R"({"a":)", 100'000) + "1" + repeated("}", 100'000), JSONErrorCode::tooDeep},
    };
    for (const Case& c : cases) {
        const auto value = JSONSerialization::jsonObject(c.text);
        ASSERT_FALSE(value) << c.text.substr(0, 60);
        EXPECT_EQ(value.error().domain(), "JSONErrorDomain");
        EXPECT_EQ(value.error().code(), static_cast<std::int64_t>(c.code)) << c.text.substr(0, 60);
        // The decoder validates what it passes over, too.
        for (const std::string& text : {c.text, R"({"x":)" + c.text + "}"}) {
            const auto decoded = JSONDecoder().decode<Nothing>(text);
            ASSERT_FALSE(decoded) << text.substr(0, 60);
            EXPECT_TRUE(decoded.error().isDataCorrupted()) << text.substr(0, 60) << decoded.error().description();
            EXPECT_TRUE(decoded.error().context().codingPath.empty());
        }
    }
}

TEST(JSONSerialization, ReadsUpToTheMaximumDepthAndNoDeeper) {
    const auto brackets = [](std::size_t depth) { return repeated("[", depth) + repeated("]", depth); };
    const auto deepest = JSONSerialization::jsonObject(brackets(JSONSerialization::maximumDepth));
    ASSERT_TRUE(deepest);
    const auto written = JSONSerialization::data(*deepest);
    ASSERT_TRUE(written) << "what can be read can be written";
    EXPECT_EQ(written->text(), brackets(JSONSerialization::maximumDepth));
    EXPECT_FALSE(JSONSerialization::jsonObject(brackets(JSONSerialization::maximumDepth + 1)));
    EXPECT_FALSE(JSONSerialization::data(JSONArray{*deepest}));
}

}  // namespace
}  // namespace corvane
