#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

#include <simdjson.h>

#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane::detail {

std::optional<JSONErrorCode> JSONWriter::write(const JSONValue& value) {
    const std::size_t start = writer_.written().size();
    writeValue(value);
    const std::string_view text = writer_.written().substr(start);
    // Looked at once for all: what is not the values' own text is ASCII, so one text cannot complete another.
    if (strictness_ == Strictness::strict && !simdjson::validate_utf8(text.data(), text.size())) {
        fail(JSONErrorCode::invalidUTF8);
    }
    return failure_;
}

void JSONWriter::fail(JSONErrorCode code) {
    if (!failure_) failure_ = code;
}

void JSONWriter::writeValue(const JSONValue& value) {
    JSONAccess::visit(value, [this](const auto& held) { writeHeld(held); });
}

void JSONWriter::writeHeld(std::monostate /*null*/) {
    writer_.writePlain("null");
}

void JSONWriter::writeHeld(bool boolean) {
    writer_.writePlain(boolean ? "true" : "false");
}

void JSONWriter::writeHeld(std::integral auto integer) {
    std::array<char, 24> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), integer);
    writer_.writePlain({digits.data(), end.ptr});
}

void JSONWriter::writeHeld(double number) {
    if (strictness_ == Strictness::strict && !std::isfinite(number)) fail(JSONErrorCode::nonFiniteNumber);
    writer_.writePlain(numberText(number));
}

void JSONWriter::writeHeld(const JSONBlockReference& text) {
    writer_.writeText(textOf(text));
}

void JSONWriter::writeHeld(const JSONArray& array) {
    if (!enter('[')) return;
    bool first = true;
    for (const JSONValue& element : array) {
        writer_.startItem(std::exchange(first, false));
        writeValue(element);
    }
    writer_.close(']', first);
}

void JSONWriter::writeHeld(const JSONDictionary& dictionary) {
    if (!enter('{')) return;
    bool first = true;
    if (sortedKeys_) {
        std::vector<JSONDictionary::Iterator> members;
        members.reserve(dictionary.size());
        for (auto member = dictionary.begin(); member != dictionary.end(); ++member)
            members.push_back(member);
        std::ranges::sort(members, {}, [](const auto& member) { return (*member).key; });
        for (const auto& member : members)
            writeMember(*member, std::exchange(first, false));
    } else {
        for (const auto& member : dictionary)
            writeMember(member, std::exchange(first, false));
    }
    writer_.close('}', first);
}

void JSONWriter::writeMember(const JSONDictionary::Member& member, bool first) {
    writer_.startItem(first);
    writer_.writeKey(member.key);
    writeValue(member.value);
}

bool JSONWriter::enter(char bracket) {
    if (writer_.depth() == JSONSerialization::maximumDepth) {
        fail(JSONErrorCode::tooDeep);
        writer_.writePlain("…");
        return false;
    }
    writer_.open(bracket);
    return true;
}

}  // namespace corvane::detail
