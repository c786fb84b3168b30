#include <cstdint>
#include <map>

#include <gmock/gmock.h>

#include <Corvane/Core/CustomTypes/TaggedType/CacheIdentifiable.hpp>
#include <Corvane/Core/CustomTypes/TaggedType/NameTags.hpp>
#include <Corvane/Core/CustomTypes/TaggedType/TaggedType.hpp>
#include <Corvane/Platform/JSON/JSONDecoder.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>
#include <Corvane/Testing/LogRecorder.hpp>

namespace corvane {

using FlagName = TaggedType<FlagNameTag, std::string>;
using FlagCacheName = TaggedType<FlagCacheNameTag, std::string>;
using TeamID = TaggedType<struct TeamIDTag, std::int64_t>;

struct OnlyLess {
    int rank;

    friend bool operator<(OnlyLess a, OnlyLess b) { return a.rank < b.rank; }
};

class Nothing {
  public:
    explicit Nothing(int) {}
};

using Ranked = TaggedType<struct RankTag, OnlyLess>;
using Plain = TaggedType<struct PlainTag, Nothing>;

// What a value cannot do, its tagged value cannot do either.
template <class T>
concept HasHash = requires(const T& value) { std::hash<T>()(value); };
template <class T>
concept HasEmptiness = requires(const T& value) { value.isEmpty() || value.isNotEmpty(); };
template <class T>
concept HasText = requires(const T& value) { value.description() + value.debugDescription(); };

static_assert(Comparable<FlagName> && HasHash<FlagName> && HasEmptiness<FlagName> && !HasEmptiness<TeamID>);
static_assert(Comparable<Ranked> && !std::equality_comparable<Ranked>);
static_assert(AnyTaggedType<Plain> && !Comparable<Plain> && !std::equality_comparable<Plain> && !HasHash<Plain>);
static_assert(!HasText<Plain> && !HasEmptiness<Plain> && !Decodable<Plain> && !Encodable<Plain>);

static_assert(CacheIdentifiable<FlagCacheName> && !CacheIdentifiable<FlagName>);
static_assert(!CacheIdentifiable<TaggedType<FlagCacheNameTag, int>>);

// Tags are not mixed up, and only literals become tagged values unasked.
static_assert(!std::constructible_from<FlagCacheName, FlagName> && !std::is_assignable_v<FlagCacheName&, FlagName>);
static_assert(!std::equality_comparable_with<FlagName, FlagCacheName>);
static_assert(!std::convertible_to<std::string, FlagName> && !std::convertible_to<std::int64_t, TeamID>);
static_assert(!std::constructible_from<FlagName, char (&)[8]> && !std::constructible_from<TeamID, const char (&)[2]>);

TEST(TaggedType, TakesLiteralsWhole) {
    EXPECT_EQ(FlagName("a\0b").value(), std::string("a\0b", 3));
    EXPECT_EQ(FlagName('x').value(), "x");
    EXPECT_EQ(FlagName(U'\x7F').value(), "\x7F");
    EXPECT_EQ(FlagName(U'\u07FF').value(), "\u07FF");
    EXPECT_EQ(FlagName(U'\uFFFF').value(), "\uFFFF");
    EXPECT_EQ(FlagName(U'\U0010FFFF').value(), "\U0010FFFF");
    EXPECT_EQ(FlagName(char32_t{0xD800}).value(), "\uFFFD");
    EXPECT_TRUE(FlagName().isEmpty() && FlagName("").isEmpty() && FlagName("no").isNotEmpty());
}

TEST(TaggedType, ChangesItsTagOnlyByCopying) {
    EXPECT_EQ(FlagCacheName::copyValue(FlagName("no")).cacheID(), "no");
    EXPECT_EQ(FlagCacheName::copyOptionalValue(std::optional(FlagName("no"))), FlagCacheName("no"));
    EXPECT_EQ(FlagCacheName::copyOptionalValue(std::optional<FlagName>()), std::nullopt);
    EXPECT_EQ(TeamID::fromRawValue(4).rawValue(), 4);

    const std::optional<std::vector<TeamID>> teams({TeamID(3), TeamID(1), TeamID(3)});
    EXPECT_EQ(values(*teams), values(teams));
    EXPECT_THAT(values(*teams), ::testing::ElementsAre(3, 1, 3));
    EXPECT_EQ(values(std::optional<std::vector<TeamID>>()), std::nullopt);
}

struct Team {
    TeamID id;
    FlagName flag;
    std::optional<FlagCacheName> cached;
    std::vector<TaggedType<struct ScoresTag, std::vector<int>>> scores;
};

TEST(TaggedType, IsTheBareValueAsJSON) {
    EXPECT_EQ(JSONEncoder().encode(FlagName("a\"c"))->text(), JSONEncoder().encode(std::string("a\"c"))->text());

    const std::string_view text = R"({"id":9007199254740993,"flag":"no","cached":"n","scores":[[1,2],[]]})";
    const auto team = JSONDecoder().decode<Team>(text);
    ASSERT_TRUE(team) << team.error().description();
    EXPECT_EQ(team->id, TeamID(9007199254740993));
    EXPECT_EQ(team->cached, FlagCacheName("n"));
    EXPECT_EQ(JSONEncoder().encode(*team)->text(), text);

    const auto refused = JSONDecoder().decode<Team>(R"({"id":"7","flag":"no","scores":[]})");
    const auto bare = JSONDecoder().decode<std::map<std::string, std::int64_t>>(R"({"id":"7"})");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().description(), bare.error().description());
}

TEST(TaggedType, IsNotMadeFromADescription) {
    testing::LogRecorder log(LogLevel::error);
    EXPECT_EQ(FlagName::fromDescription("no"), std::nullopt);
    EXPECT_THAT(log.messages("Unspecified"),
                ::testing::ElementsAre(::testing::StartsWith(
                    "TaggedType initialisation via LosslessStringConvertible is not supported, use .init(value: ) "
                    "instead\nat: init(_:), in  TaggedType + LosslessStringConvertible, at line: ")));
}

}  // namespace corvane
