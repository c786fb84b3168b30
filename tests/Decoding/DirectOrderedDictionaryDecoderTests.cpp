#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <Corvane/Core/CustomTypes/TaggedType/TaggedType.hpp>
#include <Corvane/Decoding/DirectOrderedDictionaryDecoder.hpp>

namespace corvane {

namespace {

enum class Side : unsigned char { home, away };
enum class Card : std::uint8_t { yellow, red };

using TeamName = TaggedType<struct TeamNameTag, std::string>;
using TeamID = TaggedType<struct TeamIDTag, std::int64_t>;

static_assert(!OrderedDictionaryKey<std::string_view>, "it would end with the payload");

/// A number and a text at once: its raw value counts.
struct Minute {
    std::int64_t value = 0;

    explicit Minute(std::string_view /*text*/) {}

    explicit Minute(std::int64_t minute) : value(minute) {}

    static std::optional<Minute> fromRawValue(std::int64_t minute) {
        return minute >= 0 ? std::optional(Minute(minute)) : std::nullopt;
    }

    [[nodiscard]] std::int64_t rawValue() const { return value; }

    bool operator==(const Minute&) const = default;
};

/// Made from some texts only.
struct Season {
    std::string text;

    static std::optional<Season> fromDescription(std::string_view text) {
        return text.contains('/') ? std::optional(Season{std::string(text)}) : std::nullopt;
    }

    [[nodiscard]] const std::string& rawValue() const { return text; }

    bool operator==(const Season&) const = default;
};

std::string textOf(const std::string& key) {
    return key;
}

std::string textOf(Side side) {
    return side == Side::home ? "home" : "away";
}

std::string textOf(Card card) {
    return card == Card::yellow ? "yellow" : "red";
}

template <class Key>
    requires requires(const Key& key) { key.rawValue(); }
std::string textOf(const Key& key) {
    return fmt::format("{}", key.rawValue());
}

template <class Key>
    requires std::is_arithmetic_v<Key>
std::string textOf(Key key) {
    return fmt::format("{}", key);
}

/// Reads its member "m", once as it has to be there and once as it may be missing.
template <class Key, class Value>
struct Payload {
    std::string text;

    template <class Dictionary>
    static std::string describe(const Dictionary& dictionary) {
        std::string text;
        for (const auto& [key, value] : dictionary)
            text += fmt::format("{}{}={}", text.empty() ? "" : " ", textOf(key), value);
        return text;
    }

    static std::expected<Payload, DecodingError> decode(const Decoder& decoder) {
        const auto members = decoder.container();
        if (!members) return std::unexpected(members.error());
        const auto needed = DirectOrderedDictionaryDecoder::decode<Key, Value>(*members, "m");
        const auto optional = DirectOrderedDictionaryDecoder::decodeIfPresent<Key, Value>(*members, "m");
        if (optional && !*optional) {
            EXPECT_TRUE(!needed && needed.error().isKeyNotFound());
            return Payload{"absent"};
        }
        EXPECT_EQ(needed.has_value(), optional.has_value());
        if (!needed) {
            EXPECT_EQ(needed.error(), optional.error());
            return std::unexpected(needed.error());
        }
        EXPECT_EQ(*needed, **optional);
        return Payload{describe(*needed)};
    }
};

template <class Key, class Value = int>
std::string read(std::string_view member) {
    const auto payload =
        JSONDecoder().decode<std::map<std::string, Payload<Key, Value>>>(fmt::format(R"({{"p":{{{}}}}})", member));
    return payload ? payload->at("p").text : payload.error().description();
}

}  // namespace

template <>
struct Coding<Card> {
    static constexpr std::array rawValues{RawValue{Card::yellow, 1}, RawValue{Card::red, 2}};
};

namespace {

TEST(DirectOrderedDictionaryDecoder, KeepsPayloadOrder) {
    EXPECT_EQ(read<std::string>(R"("m":{"b":1,"a":2,"":3,"\u0061b":4})"), "b=1 a=2 =3 ab=4");
    EXPECT_EQ(read<std::string>(R"("m":{})"), "");
    EXPECT_EQ(read<std::string>(R"("other":{"b":1})"), "absent");
    EXPECT_EQ((read<std::string, std::string>(R"("m":{"b":"one","a":"two"})")), "b=one a=two");
}

TEST(DirectOrderedDictionaryDecoder, ConvertsNamesAsTheKeyTypeSays) {
    EXPECT_EQ(read<Side>(R"("m":{"away":1,"draw":2,"home":3,"1":4})"), "away=1 home=3");
    EXPECT_EQ(read<Card>(R"("m":{"2":1,"3":2,"+1":3,"red":4,"-254":5})"), "red=1 yellow=3");
    EXPECT_EQ(read<TeamName>(R"("m":{"Rovers":1,"":2})"), "Rovers=1 =2");
    EXPECT_EQ(read<TeamID>(R"("m":{"12":1,"x":2,"-9223372036854775808":3})"), "12=1 -9223372036854775808=3");
    EXPECT_EQ(read<Minute>(R"("m":{"90":1,"-1":2,"x":3})"), "90=1");
    EXPECT_EQ(read<Season>(R"("m":{"2023/24":1,"x":2})"), "2023/24=1");

    constexpr std::string_view numbers =
        R"("m":{"1":1," 2":2,"3a":3,"":4,"+":5,"-5":6,"300":7,"16777217":8,"9007199254740993":9,"9223372036854775807":0})";
    EXPECT_EQ(read<std::int64_t>(numbers), "1=1 -5=6 300=7 16777217=8 9007199254740993=9 9223372036854775807=0");
    EXPECT_EQ(read<std::uint8_t>(numbers), "1=1");
    EXPECT_EQ(read<std::int8_t>(numbers), "1=1 -5=6");
    EXPECT_EQ(read<float>(numbers), "1=1 -5=6 300=7");
    EXPECT_EQ(read<double>(numbers), "1=1 -5=6 300=7 16777217=8");
}

TEST(DirectOrderedDictionaryDecoder, GivesEqualKeysTheFirstPlaceAndTheLastValue) {
    EXPECT_EQ(read<int>(R"("m":{"01":1,"2":2,"1":3,"+1":4})"), "1=4 2=2");
    // A name that comes twice counts once, with its last value and in its first place.
    EXPECT_EQ(read<int>(R"("m":{"1":1,"01":2,"1":3})"), "1=2");
    EXPECT_EQ(read<std::string>(R"("m":{"a":"not a number","b":2,"a":3})"), "a=3 b=2");
}

TEST(DirectOrderedDictionaryDecoder, PassesOnWhatTheContainersSay) {
    EXPECT_EQ(read<Side>(R"("m":{"home":1,"draw":"2"})"), "Expected an integer but found text at p.m.draw.");
    EXPECT_EQ(read<Side>(R"("m":{"home":1,"draw":null})"), "Expected an integer but found null at p.m.draw.");
    EXPECT_EQ(read<Side>(R"("m":[1])"), "Expected a dictionary but found an array at p.m.");
    EXPECT_EQ(read<Side>(R"("m":null)"), "Expected a dictionary but found null at p.m.");
    EXPECT_EQ(read<Side>(R"("m":{"home":1e999})"),
              "The JSON text holds a number that is malformed or too large. (byte 18)");
}

/// Has others of its kind inside.
struct Branch {
    std::size_t inside = 0;

    static std::expected<Branch, DecodingError> decode(const Decoder& decoder) {
        const auto members = decoder.container();
        if (!members) return std::unexpected(members.error());
        const auto branches = DirectOrderedDictionaryDecoder::decodeIfPresent<std::string, Branch>(*members, "m");
        if (!branches) return std::unexpected(branches.error());
        Branch branch;
        if (!*branches) return branch;
        for (const auto& [name, inner] : **branches)
            branch.inside += 1 + inner.inside;
        return branch;
    }
};

TEST(DirectOrderedDictionaryDecoder, ReadsOftenInsideEachOtherInLittleTime) {
    // Time that doubles with each would not end.
    constexpr int levels = 200;
    const auto read = [](std::string document, std::string_view after) {
        for (int level = 0; level < levels; ++level)
            document = fmt::format(R"({{"m":{{"x":{}{}}}}})", document, after);
        return JSONDecoder().decode<Branch>(document);
    };
    EXPECT_EQ(read("{}", "")->inside, levels);
    EXPECT_EQ(read("{}", R"(,"y":{},"y":{})")->inside, 2 * levels);
    EXPECT_TRUE(read("1", "").error().isTypeMismatch());
}

TEST(DirectOrderedDictionaryDecoder, ReadsInsideEachOther) {
    using Inner = Payload<std::string, int>;

    struct Outer {
        std::string text;

        static std::expected<Outer, DecodingError> decode(const Decoder& decoder) {
            const auto members = decoder.container();
            if (!members) return std::unexpected(members.error());
            const auto days = DirectOrderedDictionaryDecoder::decode<int, Inner>(*members, "days");
            if (!days) return std::unexpected(days.error());
            Outer outer;
            for (const auto& [day, inner] : *days)
                outer.text += fmt::format("{}: {}; ", day, inner.text);
            return outer;
        }
    };

    const auto read = [](std::string_view document) {
        const auto outer = JSONDecoder().decode<std::vector<Outer>>(document);
        return outer ? outer->back().text : outer.error().description();
    };
    EXPECT_EQ(read(R"([{"days":{"2":{"m":{"b":1,"a":2}},"1":{"m":{}}}}])"), "2: b=1 a=2; 1: ; ");
    EXPECT_EQ(read(R"([{"days":{"2":{"m":{"b":1,"a":true}},"1":{"m":{}}}}])"),
              "Expected an integer but found a Boolean at [0].days.2.m.a.");
    EXPECT_EQ(read(R"([{"days":{"2":{"m":{}},"x":{"n":{}}}}])"), "2: ; ");
}

}  // namespace
}  // namespace corvane
