#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <simdjson.h>

#include <Corvane/Platform/JSON/Private/JSONBlocks.hpp>
#include <Corvane/Platform/JSON/Private/JSONWriter.hpp>
#include <Corvane/Platform/Text/NumberText.hpp>

namespace corvane::detail {

namespace {

constexpr std::size_t blanksPerLevel = 2;

/// Whether a character must be escaped, by its value.
constexpr auto mustBeEscaped = [] {
    std::array<bool, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control)
        table[control] = true;
    table['"'] = table['\\'] = true;
    return table;
}();

bool needsEscape(char character) noexcept {
    return mustBeEscaped[static_cast<unsigned char>(character)];
}

}  // namespace

std::optional<JSONErrorCode> JSONWriter::write(const JSONValue& value) {
    writeValue(value);
    // Looked at once for all: what is not the values' own text is ASCII, so one text cannot complete another.
    if (strictness_ == Strictness::strict && !simdjson::validate_utf8(text_.data(), text_.size())) {
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
    text_ += "null";
}

void JSONWriter::writeHeld(bool boolean) {
    text_ += boolean ? "true" : "false";
}

void JSONWriter::writeHeld(std::integral auto integer) {
    std::array<char, 24> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init)
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), integer);
    text_ += std::string_view(digits.data(), end.ptr);
}

void JSONWriter::writeHeld(double number) {
    if (strictness_ == Strictness::strict && !std::isfinite(number)) fail(JSONErrorCode::nonFiniteNumber);
    text_ += numberText(number);
}

void JSONWriter::writeHeld(const JSONBlockReference& text) {
    writeText(textOf(text));
}

void JSONWriter::writeText(std::string_view text) {
    text_ += '"';
    while (true) {
        const auto plain = static_cast<std::size_t>(std::ranges::find_if(text, needsEscape) - text.begin());
        text_ += text.substr(0, plain);
        if (plain == text.size()) break;
        switch (const char special = text[plain]) {
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
        text.remove_prefix(plain + 1);
    }
    text_ += '"';
}

void JSONWriter::writeHeld(const JSONArray& array) {
    if (!enter('[')) return;
    bool first = true;
    for (const JSONValue& element : array) {
        startItem(std::exchange(first, false));
        writeValue(element);
    }
    leave(']', first);
}

void JSONWriter::writeHeld(const JSONDictionary& dictionary) {
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
