#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <Corvane/Platform/Collections/OrderedDictionary.hpp>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::Pair;

template <class Dictionary>
auto entriesOf(const Dictionary& dictionary) {
    std::vector<std::pair<typename Dictionary::key_type, typename Dictionary::mapped_type>> entries;
    for (const auto& [key, value] : dictionary)
        entries.emplace_back(key, value);
    return entries;
}

TEST(OrderedDictionary, AppendsNewKeysAndReplacesInPlace) {
    OrderedDictionary<std::string, int> points{{"b", 1}, {"a", 2}, {"b", 3}};
    EXPECT_THAT(entriesOf(points), ElementsAre(Pair("b", 3), Pair("a", 2)));
    EXPECT_FALSE(points.set("b", 4));
    EXPECT_TRUE(points.set(std::string_view("c"), 5));
    EXPECT_FALSE(points.tryEmplace("a", 9).second);
    points["d"] += 6;
    for (auto [key, value] : points)
        value *= 10;
    EXPECT_THAT(entriesOf(points), ElementsAre(Pair("b", 40), Pair("a", 20), Pair("c", 50), Pair("d", 60)));
    EXPECT_EQ(*points.find(std::string_view("c")), 50);
    EXPECT_FALSE(points.contains("x"));
    EXPECT_TRUE(points.remove("b"));
    EXPECT_FALSE(points.remove("b"));
    points["b"] = 1;
    EXPECT_THAT(entriesOf(points), ElementsAre(Pair("a", 20), Pair("c", 50), Pair("d", 60), Pair("b", 1)));
    EXPECT_EQ((*std::prev(points.end())).key, "b");
}

/// All keys that are even collide, and so do all that are odd.
struct PoorHash {
    std::size_t operator()(int key) const { return static_cast<std::size_t>(key % 2); }
};

template <class Hash>
class OrderedDictionaryModel : public testing::Test {};

using Hashes = testing::Types<SeededHash<int>, PoorHash>;
TYPED_TEST_SUITE(OrderedDictionaryModel, Hashes);

/// Long random use beside a plain list that does the same slowly. Values are on the heap, so that a value lost or
/// destroyed twice is found where memory is checked.
TYPED_TEST(OrderedDictionaryModel, DoesWhatAListOfPairsDoes) {
    OrderedDictionary<int, std::shared_ptr<int>, TypeParam> dictionary;
    std::vector<std::pair<int, int>> model;
    std::mt19937 random(7);
    for (int step = 0; step < 20'000; ++step) {
        const int key = static_cast<int>(random() % 400);
        // Times of growing and times of shrinking.
        const bool grows = step / 1'000 % 2 == 0;
        const auto known = std::ranges::find(model, key, &std::pair<int, int>::first);
        if (random() % 10 < (grows ? 7U : 2U)) {
            ASSERT_EQ(dictionary.set(key, std::make_shared<int>(step)), known == model.end());
            if (known == model.end()) {
                model.emplace_back(key, step);
            } else {
                known->second = step;
            }
        } else {
            // Often the oldest, as a cache does.
            const int unwanted = random() % 2 == 0 && !model.empty() ? model.front().first : key;
            ASSERT_EQ(dictionary.remove(unwanted),
                      std::erase_if(model, [unwanted](const auto& entry) { return entry.first == unwanted; }) == 1);
        }
        if (step % 1'000 == 500) {
            const auto isUnwanted = [](int k) { return k % 3 == 0; };
            ASSERT_EQ(dictionary.removeIf([&](int k, const auto&) { return isUnwanted(k); }),
                      std::erase_if(model, [&](const auto& entry) { return isUnwanted(entry.first); }));
        }
        if (step % 1'000 == 750) dictionary = OrderedDictionary(dictionary);
        ASSERT_EQ(dictionary.size(), model.size());
        if (step % 50 != 0) continue;
        std::vector<std::pair<int, int>> entries;
        for (const auto& [k, value] : dictionary) {
            entries.emplace_back(k, *value);
            ASSERT_EQ(dictionary.find(k)->get(), value.get());
        }
        ASSERT_EQ(entries, model);
        auto last = dictionary.end();
        for (auto entry = model.rbegin(); entry != model.rend(); ++entry)
            ASSERT_EQ((*--last).key, entry->first);
    }
}

TEST(OrderedDictionary, IsAValue) {
    const OrderedDictionary<std::string, int> constant{{"a", 1}, {"b", 2}};
    auto original = constant;
    auto copy = original;
    copy["b"] = 0;
    EXPECT_EQ(original, constant);
    EXPECT_NE(copy, original);
    EXPECT_NE(original, (OrderedDictionary<std::string, int>{{"b", 2}, {"a", 1}}));

    auto taken = std::move(original);
    EXPECT_EQ(taken, constant);
    EXPECT_TRUE(original.empty());  // NOLINT(bugprone-use-after-move)
    original["again"] = 1;
    original.swap(taken);
    EXPECT_EQ(original, constant);
    taken.clear();
    EXPECT_FALSE(taken.contains("again"));
}

TEST(OrderedDictionary, TakesKeysAndValuesFromItself) {
    OrderedDictionary<std::string, std::string> texts{{"first", "a text that is too long to be kept in place"}};
    // Each step reads from an entry while the memory around it may be given up.
    for (int i = 0; i < 100; ++i)
        texts.tryEmplace(texts.begin()->value + std::to_string(i), texts.begin()->value);
    OrderedDictionary<std::string, std::string> chain{{"0", "1"}};
    for (int i = 1; i < 100; ++i) {
        const std::string& last = std::prev(chain.end())->value;
        chain.tryEmplace(last, std::to_string(i + 1));
    }
    EXPECT_EQ(std::prev(texts.end())->value, "a text that is too long to be kept in place");
    EXPECT_EQ(*chain.find("99"), "100");
}

}  // namespace
}  // namespace corvane
