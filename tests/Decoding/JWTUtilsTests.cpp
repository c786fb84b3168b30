#include <gtest/gtest.h>

#include <Corvane/Decoding/JWTUtils.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>

namespace corvane {

TEST(JWTUtils, ReadsTheSecondPartOrSaysWhyNot) {
    const auto reader = [](std::string_view json) { return JSONSerialization::jsonObject(json).error().description(); };

    struct {
        std::string token, expected;
    } const cases[] = {
        {"eyJhIjoxfQ", "absent"},
        {"eyJhIjoxfQ.eyJhIjoxfQ.x", R"({"a":1})"},  // ten characters, padded to twelve
        {".eyJhIjoxMn0=", R"({"a":12})"},
        {"h.eyJhIjoiPz4/In0.s.more", R"({"a":"?>?"})"},
        {"h.eyJhIjoiPz4_In0.s", "badToken"},
        {"h.eyJhI.s", "badToken"},
        {"h.WzFd.s", "other"},
        {"h..s", reader("")},
        {"h.e30gIHg.s", reader("{}  x")},
    };

    for (const auto& test : cases) {
        const auto claims = JWTUtils::decodePayload(test.token);
        const std::string result = !claims   ? claims.error().description()
                                   : *claims ? JSONValue(**claims).description()
                                             : "absent";
        EXPECT_EQ(result, test.expected) << test.token;
    }
}

}  // namespace corvane
