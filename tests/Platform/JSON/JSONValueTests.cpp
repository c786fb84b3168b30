#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane {
namespace {

JSONValue nested(int depth) {
    JSONValue value;
    for (int i = 0; i < depth; ++i)
        value = i % 2 == 0 ? JSONValue(JSONArray{value}) : JSONDictionary{{"k", value}};
    return value;
}

TEST(JSONValue, ChainsLookUpsThroughWhatIsNotThere) {
    const JSONValue payload =
        JSONDictionary{{"scores", JSONArray{1, 0.0, "x"}}, {"none", nullptr}, {"live", true}, {"live", false}};
    EXPECT_EQ(payload["scores"][0].asInt64(), 1);
    EXPECT_EQ(payload["scores"][1].asInt64(), 0);
    EXPECT_EQ(payload["scores"][2].asInt64(), std::nullopt);
    EXPECT_TRUE(payload["scores"][3].isNull());
    EXPECT_TRUE(payload["scores"][-1].isNull());
    EXPECT_TRUE(payload["venue"]["name"][7].isNull());
    EXPECT_EQ(payload["live"].asBool(), false) << "the later value counts";
    EXPECT_EQ(payload.find("venue"), nullptr);
    ASSERT_NE(payload.find("none"), nullptr);
    EXPECT_TRUE(payload.find("none")->isNull());
}

TEST(JSONValue, SharesContentUntilOneCopyIsChanged) {
    for (const bool read : {false, true}) {
        const JSONDictionary original =
            read ? *JSONSerialization::jsonObject(R"({"a":[1,2],"b":"text"})")->asDictionary()
                 : JSONDictionary{{"a", JSONArray{1, 2}}, {"b", "text"}};
        JSONDictionary changed = original;
        JSONArray list = *changed["a"].asArray();
        EXPECT_TRUE(list.set(0, 9));
        list.append(list);
        EXPECT_TRUE(list.remove(1));
        EXPECT_FALSE(list.set(2, 0));
        EXPECT_FALSE(list.remove(2));
        changed.set("a", list);
        changed.set("c", nullptr);
        EXPECT_TRUE(changed.remove("b"));
        EXPECT_FALSE(changed.remove("b"));
        EXPECT_EQ(JSONValue(original).description(), R"({"a":[1,2],"b":"text"})");
        EXPECT_EQ(JSONValue(changed).description(), R"({"a":[9,[9,2]],"c":null})");
    }
}

TEST(JSONDictionary, FindsItsKeysHoweverManyAndKeepsTheirOrder) {
    for (const int count : {1, 16, 17, 5000, 3}) {
        JSONDictionary built;
        std::string text = "\xEF\xBB\xBF{";
        for (int i = 0; i < count; ++i) {
            built.set("key" + std::to_string(i), i);
            text += "\"key" + std::to_string(i) + "\":" + std::to_string(i) + ",";
        }
        built.set("key0", "again");
        const auto read = JSONSerialization::jsonObject(text + R"("key0":"again"})");
        ASSERT_TRUE(read);
        ASSERT_EQ(*read, JSONValue(built));
        for (const JSONDictionary& dictionary : {built, *read->asDictionary()}) {
            ASSERT_EQ(dictionary.size(), static_cast<std::size_t>(count));
            int position = 0;
            for (const auto& [key, value] : dictionary) {
                EXPECT_EQ(key, "key" + std::to_string(position++));
                EXPECT_EQ(dictionary.find(key), &value);
            }
            EXPECT_EQ(dictionary["key0"].asString(), "again") << "last value, first place";
            EXPECT_FALSE(dictionary.contains("key" + std::to_string(count)));
        }
        JSONDictionary copy = *read->asDictionary();
        EXPECT_TRUE(copy.remove("key0"));
        EXPECT_FALSE(copy.contains("key0"));
        copy.set("new", true);
        EXPECT_EQ(copy["new"].asBool(), true);
    }
}

TEST(JSONValue, ComparesDictionariesWithoutAndArraysWithOrder) {
    EXPECT_EQ((JSONDictionary{{"a", 1}, {"b", 2.0}}), (JSONDictionary{{"b", 2}, {"a", true}}));
    EXPECT_NE((JSONDictionary{{"a", 1}, {"b", 2}}), (JSONDictionary{{"a", 1}, {"c", 2}}));
    EXPECT_NE((JSONDictionary{{"a", 1}}), (JSONDictionary{{"a", 1}, {"b", 2}}));
    EXPECT_EQ((JSONArray{1, "x"}), (JSONArray{1, "x"}));
    EXPECT_NE((JSONArray{1, 2}), (JSONArray{2, 1}));
    EXPECT_NE(JSONValue("1"), JSONValue(1));
    EXPECT_NE(JSONValue(nullptr), JSONValue(false));
    EXPECT_NE(JSONValue(JSONArray{}), JSONValue(JSONDictionary{}));
}

TEST(JSONValue, IsComparedCopiedAndDestroyedHoweverDeep) {
    const JSONValue deep = nested(100'000);
    const JSONValue copy = deep;
    EXPECT_TRUE(deep == nested(100'000));
    EXPECT_FALSE(deep == nested(99'999));
    EXPECT_NE(deep.description().find("…"), std::string::npos);
    const auto written = JSONSerialization::data(deep);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error().code(), static_cast<std::int64_t>(JSONErrorCode::tooDeep));
}

TEST(JSONValue, OutlivesTheDocumentItWasReadFromOnManyThreads) {
    auto document = JSONSerialization::jsonObject(R"({"teams":["Rovers","United"],"round":7})");
    ASSERT_TRUE(document);
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = *document->asDictionary(), inner = (*document)["teams"], i]() mutable {
            copy.set("round", i);
            for (int round = 0; round < 100; ++round) {
                const JSONValue teams = copy["teams"];
                EXPECT_EQ(teams[1].asString(), "United");
                EXPECT_EQ(inner[0].asString(), "Rovers");
            }
        });
    }
    document = JSONValue();
}

}  // namespace
}  // namespace corvane
