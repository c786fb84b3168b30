#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <Corvane/Core/Throwable.hpp>
#include <Corvane/Platform/JSON/JSONEncoder.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace {

using corvane::Data;
using corvane::Decoder;
using corvane::DecodingError;
using corvane::JSONArray;
using corvane::JSONDecoder;
using corvane::JSONDictionary;
using corvane::JSONEncoder;
using corvane::JSONSerialization;
using corvane::JSONValue;

void require(bool holds) {
    if (!holds) std::abort();
}

/// Looks at nothing, so that all of the document is passed over.
struct Ignored {
    static std::expected<Ignored, DecodingError> decode(const Decoder&) { return Ignored(); }
};

/// Reads anything by way of the containers.
struct Tree {
    JSONValue value;

    static std::expected<Tree, DecodingError> decode(const Decoder& decoder) {
        if (decoder.decodeNil()) return Tree();
        if (auto text = decoder.decode<std::string>()) return Tree{JSONValue(*text)};
        if (auto boolean = decoder.decode<bool>()) return Tree{JSONValue(*boolean)};
        if (auto whole = decoder.decode<std::int64_t>()) return Tree{JSONValue(*whole)};
        if (auto whole = decoder.decode<std::uint64_t>()) return Tree{JSONValue(*whole)};
        if (auto number = decoder.decode<double>()) return Tree{JSONValue(*number)};
        return decoder.unkeyedContainer() ? decodeArray(decoder) : decodeDictionary(decoder);
    }

    static std::expected<Tree, DecodingError> decodeArray(const Decoder& decoder) {
        auto elements = *decoder.unkeyedContainer();
        JSONArray array;
        while (!elements.isAtEnd()) {
            auto element = elements.decode<Tree>();
            if (!element) return std::unexpected(element.error());
            array.append(std::move(element->value));
        }
        return Tree{JSONValue(std::move(array))};
    }

    static std::expected<Tree, DecodingError> decodeDictionary(const Decoder& decoder) {
        const auto members = decoder.container();
        if (!members) return std::unexpected(members.error());
        JSONDictionary dictionary;
        for (const auto key : members->allKeys()) {
            auto member = members->decode<Tree>(key);
            if (!member) return std::unexpected(member.error());
            dictionary.set(key, std::move(member->value));
        }
        return Tree{JSONValue(std::move(dictionary))};
    }
};

enum class Side { home, away };

struct Model {
    std::optional<std::int64_t> id;
    std::optional<std::string> name;
    std::optional<double> odds;
    std::optional<float> share;
    std::optional<std::uint8_t> tiny;
    std::optional<bool> live;
    std::optional<Side> side;
    std::vector<Model> children;
    std::map<std::string, std::vector<int>> groups;
    std::map<int, JSONValue> any;

    static constexpr corvane::CodingRule codingRules[] = {
        {.member = "children", .key = "c", .presence = corvane::CodingPresence::optional},
        {.member = "groups", .key = "g", .presence = corvane::CodingPresence::optional},
        {.member = "any", .key = "a", .presence = corvane::CodingPresence::optional},
    };

    bool operator==(const Model&) const = default;
};

/// Reads a model the exact way from the start.
std::expected<Model, DecodingError> readExactly(const Data& data) {
    using corvane::detail::JSONCursor;
    Model model;
    auto error = JSONCursor::readDocument(data.text(), &model, [](JSONCursor& cursor, void* target) {
        const JSONCursor::ExactScope scope(cursor);
        Model read;
        if (!corvane::detail::readValue(cursor, read, nullptr)) return false;
        *static_cast<Model*>(target) = std::move(read);
        return true;
    });
    if (error) return std::unexpected(*std::move(error));
    return model;
}

/// Both ways of reading tell the same, and what was read can be written and read again.
void checkModel(const Data& data) {
    const auto model = JSONDecoder().decode<Model>(data);
    const auto exact = readExactly(data);
    require(model.has_value() == exact.has_value());
    if (!model) {
        require(model.error() == exact.error() && !model.error().description().empty());
        return;
    }
    require(*model == *exact);
    for (const bool sorted : {false, true}) {
        const auto written = JSONEncoder{.outputFormatting = {.sortedKeys = sorted}}.encode(*model);
        require(written.has_value() && JSONDecoder().decode<Model>(*written) == *model);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Data data(std::as_bytes(std::span(bytes, size)));
    const auto value = JSONSerialization::jsonObject(data);
    require(JSONDecoder().decode<Ignored>(data).has_value() == value.has_value());
    checkModel(data);
    static_cast<void>(JSONDecoder().decode<std::vector<corvane::Throwable<Model>>>(data));
    // The instrumented stack is too small for a tree of the greatest depth.
    constexpr std::ptrdiff_t treeDepth = 100;
    if (!value || std::ranges::count_if(data.text(), [](char c) { return c == '[' || c == '{'; }) > treeDepth) return 0;
    const auto whole = JSONDecoder().decode<JSONValue>(data);
    require(whole.has_value() && *whole == *value);
    const auto tree = JSONDecoder().decode<Tree>(data);
    require(tree.has_value() && tree->value == *value);
    return 0;
}
