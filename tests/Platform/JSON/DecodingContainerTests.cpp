#include <expected>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <Corvane/Platform/JSON/JSONDecoder.hpp>

namespace corvane {
namespace {

/// A value that keeps what `look` says about its decoder.
template <auto look>
struct Seen {
    std::string text;

    static std::expected<Seen, DecodingError> decode(const Decoder& decoder) { return Seen{look(decoder)}; }
};

/// What `look` says about the document.
template <auto look>
std::string seenIn(std::string_view document) {
    const auto value = JSONDecoder().decode<Seen<look>>(document);
    return value ? value->text : "failed: " + value.error().description();
}

template <class T>
std::string textOf(const std::expected<T, DecodingError>& value) {
    if (!value) return value.error().description();
    if constexpr (std::is_same_v<T, std::string>) {
        return *value;
    } else {
        return std::to_string(*value);
    }
}

/// Written as [home, away], whatever follows.
struct Score {
    int home = 0;
    int away = 0;

    static std::expected<Score, DecodingError> decode(const Decoder& decoder) {
        auto goals = decoder.unkeyedContainer();
        if (!goals) return std::unexpected(std::move(goals).error());
        const auto home = goals->decode<int>();
        const auto away = goals->decode<int>();
        if (!home || !away) return std::unexpected(home ? away.error() : home.error());
        if (*home < 0) return std::unexpected(decoder.dataCorrupted("The score is negative"));
        return Score{*home, *away};
    }

    bool operator==(const Score&) const = default;
};

/// Has no default.
class Minutes {
  public:
    explicit Minutes(int count) : count_(count) {}

    [[nodiscard]] int count() const { return count_; }

  private:
    int count_;
};

struct Match {
    Score score;
    std::optional<Score> halfTime;
    std::vector<Minutes> stoppages;
};

}  // namespace

template <>
struct Coding<Minutes> {
    static std::expected<Minutes, DecodingError> decode(const Decoder& decoder) {
        const auto count = decoder.decode<int>();
        if (!count) return std::unexpected(count.error());
        return Minutes(*count);
    }
};

namespace {

TEST(Decoder, LetsTypesDecodeThemselvesAmongPlainOnes) {
    const auto matches = JSONDecoder().decode<std::vector<Match>>(
        R"([{"score":[2,1,{"half":"read"}],"stoppages":[1,4]},{"stoppages":[],"halfTime":[1,0],"score":[3,3]}])");
    ASSERT_TRUE(matches) << matches.error().description();
    ASSERT_EQ(matches->size(), 2U);
    EXPECT_EQ((*matches)[0].score, (Score{2, 1}));
    EXPECT_EQ((*matches)[0].halfTime, std::nullopt);
    EXPECT_EQ((*matches)[0].stoppages[1].count(), 4);
    EXPECT_EQ((*matches)[1].halfTime, (Score{1, 0}));
}

TEST(Decoder, PassesOnTheErrorsOfTypesThatDecodeThemselves) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {R"([{"score":[1],"stoppages":[]}])", "The array has no further element at [0].score[1]."},
        {R"([{"score":[1,"x"],"stoppages":[]}])", "Expected an integer but found text at [0].score[1]."},
        {R"([{"score":{},"stoppages":[]}])", "Expected an array but found a dictionary at [0].score."},
        {R"([{"score":null,"stoppages":[]}])", "Expected an array but found null at [0].score."},
        {R"([{"score":[-1,0],"stoppages":[]}])", "The score is negative at [0].score."},
        {R"([{"score":[1,0],"stoppages":[1,{}]}])", "Expected an integer but found a dictionary at [0].stoppages[1]."},
        {R"([{"score":[1,0,],"stoppages":[]}])", "The text is not valid JSON. (byte 15)"},
        {R"([{"score":[1,0,{"half":[1}]],"stoppages":[]}])", "The text is not valid JSON. (byte 25)"},
        {R"([{"score":[-1,0],"stoppages":[]}, x])", "The text is not valid JSON. (byte 34)"},
    };
    for (const auto& [text, message] : cases) {
        const auto matches = JSONDecoder().decode<std::vector<Match>>(text);
        ASSERT_FALSE(matches) << text;
        EXPECT_EQ(matches.error().description(), message);
    }
}

TEST(KeyedDecodingContainer, GivesItsMembersInAnyOrderAnyNumberOfTimes) {
    constexpr auto look = [](const Decoder& decoder) {
        const auto members = *decoder.container();
        std::string text;
        for (const std::string_view key : members.allKeys())
            text.append(key).append(",");
        text += "|" + textOf(members.decode<int>("a")) + textOf(members.decode<int>("b"));
        text += textOf(members.decode<int>("a")) + "|" + textOf(members.decode<int>("no"));
        text += members.contains("n") ? "|n" : "|";
        text += textOf(members.decodeNil("n")) + textOf(members.decodeNil("a"));
        const bool absent = !*members.decodeIfPresent<int>("no") && !*members.decodeIfPresent<int>("n");
        text += absent && members.decodeIfPresent<int>("a") == 3 ? "|absent" : "|";
        return text;
    };
    EXPECT_EQ(seenIn<look>(R"({"b":1,"a":2,"n":null,"\u0061":3})"),
              "b,a,n,|313|There is no member \"no\" at the top level.|n10|absent");
}

TEST(KeyedDecodingContainer, OpensWhatIsNested) {
    constexpr auto look = [](const Decoder& decoder) {
        const auto outer = *decoder.container();
        std::string text;
        for (const char* key : {"d", "l", "s", "n", "none"}) {
            const auto dictionary = outer.nestedContainer(key);
            const auto array = outer.nestedUnkeyedContainer(key);
            text += dictionary ? textOf(dictionary->decode<std::string>("x")) : dictionary.error().description();
            text += "/" + std::string(array ? std::to_string(array->count()) : array.error().description()) + "\n";
        }
        return text + description(outer.nestedContainer("d")->nestedContainer("e")->codingPath());
    };
    EXPECT_EQ(seenIn<look>(R"({"d":{"x":1,"e":{}},"l":[1,2],"s":"","n":null})"),
              "Expected text but found a number at d.x./Expected an array but found a dictionary at d.\n"
              "Expected a dictionary but found an array at l./2\n"
              "Expected a dictionary but found text at s./Expected an array but found text at s.\n"
              "Expected a dictionary but found null at n./Expected an array but found null at n.\n"
              "There is no member \"none\" at the top level./There is no member \"none\" at the top level.\n"
              "d.e");
}

TEST(UnkeyedDecodingContainer, StaysAtAnElementThatCannotBeDecoded) {
    constexpr auto look = [](const Decoder& decoder) {
        auto elements = *decoder.unkeyedContainer();
        std::string text = std::to_string(elements.count());
        text += textOf(elements.decode<int>());
        text += textOf(elements.decodeNil());
        text += textOf(elements.decode<int>());
        text += textOf(elements.decode<std::string>());
        text += textOf(elements.decodeNil());
        text += elements.nestedUnkeyedContainer() ? "?" : "-";
        text += textOf(elements.nestedContainer()->decode<int>("x"));
        text += elements.skip() ? "skipped" : "";
        text += elements.isAtEnd() && !elements.skip() ? "end" : "";
        text += textOf(elements.decode<int>());
        return text;
    };
    EXPECT_EQ(seenIn<look>(R"([1,"s",null,{"x":5},[[]]])"),
              "510Expected an integer but found text at [1].s1-5skippedendThe array has no further element at [5].");
}

TEST(KeyedDecodingContainer, StaysLinear) {
    // A hundred thousand keys, and a thousand levels of which each lists its members: quadratic work would take hours.
    constexpr auto count = [](const Decoder& decoder) {
        const auto members = *decoder.container();
        std::size_t sum = 0;
        for (const auto key : members.allKeys() | std::views::reverse)
            sum += *members.decode<std::size_t>(key);
        return std::to_string(sum);
    };
    std::string wide = "{";
    for (int i = 0; i < 100'000; ++i)
        wide += "\"key" + std::to_string(i) + "\":1,";
    EXPECT_EQ(seenIn<count>(wide + "\"key0\":2}"), "100001");

    struct Level {
        std::size_t below = 0;

        static std::expected<Level, DecodingError> decode(const Decoder& decoder) {
            const auto members = decoder.container();
            if (!members) return std::unexpected(members.error());
            const auto next = members->decodeIfPresent<Level>("n");
            if (!next) return std::unexpected(next.error());
            return Level{*next ? (*next)->below + 1 : 0};
        }
    };

    std::string deep = "{}";
    const std::string wideMember = R"("x":[)" + std::string(200, '[') + std::string(200, ']') + "]";
    for (int i = 0; i < 800; ++i)
        deep.insert(0, R"({"n":)").append(",").append(wideMember).append("}");
    const auto levels = JSONDecoder().decode<Level>(deep);
    ASSERT_TRUE(levels) << levels.error().description();
    EXPECT_EQ(levels->below, 800U);
}

TEST(Decoder, TriesWhatFailsAtTheBottomOnlyAFewTimes) {
    static std::size_t reads = 0;

    struct Comment {
        static std::expected<Comment, DecodingError> decode(const Decoder& decoder) {
            ++reads;
            const auto members = decoder.container();
            if (!members) return std::unexpected(members.error());
            const auto replies = members->decode<std::vector<Comment>>("r");
            if (!replies) return std::unexpected(replies.error());
            return Comment();
        }
    };

    std::string document = R"({"r":0,"large":[[])";
    for (int i = 0; i < 10'000; ++i)
        document += ",[]";
    document += "]}";
    for (int i = 0; i < 100; ++i)
        document.insert(0, R"({"r":[)").append("]}");
    EXPECT_FALSE(JSONDecoder().decode<Comment>(document));
    EXPECT_LT(reads, 2'000U) << "each read looks at all of the large member";
}

TEST(JSONDecoder, CanBeUsedInsideItself) {
    constexpr auto look = [](const Decoder& decoder) {
        const auto inner = JSONDecoder().decode<std::vector<int>>(*decoder.decode<std::string>());
        return std::to_string(inner->size()) + textOf(decoder.decode<std::string>());
    };
    EXPECT_EQ(seenIn<look>(R"("[1,2,\u0033]")"), "3[1,2,3]");
}

}  // namespace
}  // namespace corvane
