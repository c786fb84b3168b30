#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>
#include <Corvane/Platform/JSON/Private/JSONReader.hpp>
#include <Corvane/Platform/JSON/Private/JSONScalars.hpp>
#include <Corvane/Platform/JSON/Private/JSONStructure.hpp>

// Scalars

namespace corvane::detail {

namespace {

/// Whether the character stands behind a backslash for one other character.
constexpr bool isSimpleEscape(char c) noexcept {
    return c == '"' || c == '\\' || c == '/' || c == 'b' || c == 'f' || c == 'n' || c == 'r' || c == 't';
}

}  // namespace

bool hasOnlySimpleEscapes(std::string_view raw) noexcept {
    std::size_t checked = 0;
    for (std::size_t i = 0; i < raw.size(); i += escapeBlock) {
        for (unsigned found = backslashes(raw.data() + i); found != 0; found &= found - 1) {
            const std::size_t at = i + static_cast<std::size_t>(std::countr_zero(found));
            if (at >= raw.size()) return true;
            // The second of two backslashes.
            if (at < checked) continue;
            if (!isSimpleEscape(raw[at + 1])) return false;
            checked = at + 2;
        }
    }
    return true;
}

JSONCursor::JSONCursor(JSONStructure& structure) : tokens_(structure.tokens()), structure_(structure) {}

std::string_view JSONCursor::tokenText() const noexcept {
    if (tokens_.isAtEnd()) return {};
    std::string_view token(tokens_.begin(), tokens_.limit());
    while (isWhitespace(token.back()))
        token.remove_suffix(1);
    return token;
}

bool JSONCursor::unescape(std::string_view& raw) {
    if (!hasEscape(raw)) return true;
    const auto plain = structure_.unescaped(raw, scratch_);
    if (!plain) return false;
    raw = *plain;
    return true;
}

bool JSONCursor::keepUnescaped(std::string_view& text) {
    if (!unescape(text)) return false;
    text = keptTexts_.emplace_front(text);
    return true;
}

bool JSONCursor::readNull() noexcept {
    return takeNull(tokens_);
}

bool JSONCursor::read(bool& value, const CodingStep* path) {
    return takeBoolean(tokens_, value) || failMismatch("a Boolean", path);
}

bool JSONCursor::readTextView(std::string_view& text, const CodingStep* path) {
    if (tokens_.peek() != '"') return failMismatch("text", path);
    if (!rawText(tokens_, text) || !unescape(text)) return failMalformed();
    tokens_.pass();
    return true;
}

bool JSONCursor::read(std::string& value, const CodingStep* path) {
    std::string_view text;
    if (!readTextView(text, path)) return false;
    value.assign(text);
    return true;
}

bool JSONCursor::read(JSONValue& value, const CodingStep* path) {
    const char* const begin = tokens_.begin();
    if (!skip()) return false;
    auto read = readJSON({begin, tokens_.begin()});
    if (!read) return failCorrupted("The value cannot be read", path);
    value = *std::move(read);
    return true;
}

}  // namespace corvane::detail
