#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <simdjson.h>

#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>

namespace corvane::detail {

namespace {

constexpr std::size_t blanksPerLevel = 2;

bool needsEscape(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

}  // namespace

std::optional<JSONErrorCode> JSONWriter::write(const JSONValue& value) {
    writeValue(value);
    return failure_;
}

void JSONWriter::fail(JSONErrorCode code) {
    if (!failure_) failure_ = code;
}

void JSONWriter::writeValue(const JSONValue& value) {
    switch (value.kind()) {
        case JSONValue::Kind::null:
            text_ += "null";
            break;
        case JSONValue::Kind::number:
            writeNumber(value);
            break;
        case JSONValue::Kind::text:
            writeText(*value.asString());
            break;
        case JSONValue::Kind::array:
            writeArray(*value.asArray());
            break;
        case JSONValue::Kind::dictionary:
            writeDictionary(*value.asDictionary());
            break;
    }
}

void JSONWriter::writeNumber(const JSONValue& value) {
    if (const auto boolean = value.asBool()) {
        text_ += *boolean ? "true" : "false";
        return;
    }
    const JSONNumber number = *value.asNumber();
    if (strictness_ == Strictness::strict && !std::isfinite(number.doubleValue())) fail(JSONErrorCode::nonFiniteNumber);
    text_ += number.description();
}

void JSONWriter::writeText(std::string_view text) {
    if (strictness_ == Strictness::strict && !simdjson::validate_utf8(text.data(), text.size())) {
        fail(JSONErrorCode::invalidUTF8);
    }
    text_ += '"';
    while (true) {
        const auto plainEnd = std::ranges::find_if(text, needsEscape);
        text_.append(text.begin(), plainEnd);
        if (plainEnd == text.end()) break;
        switch (const char special = *plainEnd) {
            case '"':
            case '\\':
                (text_ += '\\') += special;
                break;
            case '\b':
                text_ += "\\b";
                break;
            case '\f':
                text_ += "\\f";
                break;
            case '\n':
                text_ += "\\n";
                break;
            case '\r':
                text_ += "\\r";
                break;
            case '\t':
                text_ += "\\t";
                break;
            default:
                fmt::format_to(std::back_inserter(text_), "\\u{:04x}", special);
        }
        text.remove_prefix(static_cast<std::size_t>(plainEnd - text.begin()) + 1);
    }
    text_ += '"';
}

void JSONWriter::writeArray(const JSONArray& array) {
    if (!enter('[')) return;
    bool first = true;
    for (const JSONValue& element : array) {
        startItem(std::exchange(first, false));
        writeValue(element);
    }
    leave(']', first);
}

void JSONWriter::writeDictionary(const JSONDictionary& dictionary) {
    if (!enter('{')) return;
    bool first = true;
    if (options_.sortedKeys) {
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
    leave('}', first);
}

void JSONWriter::writeMember(const JSONDictionary::Member& member, bool first) {
    startItem(first);
    writeText(member.key);
    text_ += options_.prettyPrinted ? ": " : ":";
    writeValue(member.value);
}

bool JSONWriter::enter(char bracket) {
    if (depth_ == JSONSerialization::maximumDepth) {
        fail(JSONErrorCode::tooDeep);
        text_ += "…";
        return false;
    }
    ++depth_;
    text_ += bracket;
    return true;
}

void JSONWriter::leave(char bracket, bool empty) {
    --depth_;
    if (!empty) breakLine();
    text_ += bracket;
}

void JSONWriter::startItem(bool first) {
    if (!first) text_ += ',';
    breakLine();
}

void JSONWriter::breakLine() {
    if (!options_.prettyPrinted) return;
    text_ += '\n';
    text_.append(depth_ * blanksPerLevel, ' ');
}

}  // namespace corvane::detail
