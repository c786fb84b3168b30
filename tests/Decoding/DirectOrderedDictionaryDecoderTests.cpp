#include <array>
#include <cstdint>
#include <map>

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

template <class T>
std::string textOf(const T& value) {
    if constexpr (std::is_enum_v<T>) {
        return textOf(*rawValue(value));
    } else if constexpr (requires { value.rawValue(); }) {
        return textOf(value.rawValue());
    } else if constexpr (requires { value.text; }) {
        return '(' + value.text + ')';
    } else {
        return fmt::format("{}", value);
    }
}

/// Reads its member "m", once as it has to be there and once as it may be missing.
template <class Key, class Value>
struct Payload {
    std::string text;

    bool operator==(const Payload&) const = default;

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
        Payload payload;
        for (const auto& [key, value] : *needed)
            payload.text += fmt::format("{}{}={}", payload.text.empty() ? "" : " ", textOf(key), textOf(value));
        return payload;
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
    EXPECT_EQ((read<int, Payload<Side, std::string>>(R"("m":{"2":{"m":{"home":"b","away":"a"}},"x":{"n":1},"1":{}})")),
              "2=(home=b away=a) 1=(absent)");
}

TEST(DirectOrderedDictionaryDecoder, ConvertsNamesAsTheKeyTypeSays) {
    EXPECT_EQ(read<Side>(R"("m":{"away":1,"draw":2,"home":3,"1":4})"), "away=1 home=3");
    EXPECT_EQ(read<Card>(R"("m":{"2":1,"3":2,"+1":3,"red":4,"-254":5})"), "2=1 1=3");
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
    EXPECT_EQ((read<int, Payload<Side, int>>(R"("m":{"2":{"m":{"home":1,"away":true}}})")),
              "Expected an integer but found a Boolean at p.m.2.m.away.");
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
        for (const auto& [name, inner] : branches->value_or(OrderedDictionary<std::string, Branch>()))
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

}  // namespace
}  // namespace corvane
