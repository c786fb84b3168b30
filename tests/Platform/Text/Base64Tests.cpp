#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/DataCoding.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/Text/Base64.hpp>

namespace corvane {

TEST(Base64, WritesAndReadsTheVectorsOfTheRFC) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"foobar", "Zm9vYmFy"},
        {"\xFB\xFF\xBE", "+/++"},
    };
    for (const auto& [bytes, text] : rows) {
        EXPECT_EQ(base64Text(Data(bytes).bytes()), text);
        EXPECT_EQ(base64Data(text), Data(bytes));
    }
    EXPECT_EQ(base64Data("Zh=="), Data("f")) << "bits left over are not looked at";
}

TEST(Base64, RefusesWhatIsNoBase64) {
    for (const std::string_view text : {"Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Zm9=v===", "Zm-_", "Zm9v\n", "=Zm9"})
        EXPECT_EQ(base64Data(text), std::nullopt) << text;
    EXPECT_TRUE(JSONDecoder().decode<Data>("\"Zm8\"").error().isDataCorrupted());
}

}  // namespace corvane
