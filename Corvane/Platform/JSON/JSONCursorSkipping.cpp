#include <array>
#include <utility>

#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/JSONScalars.hpp>

// Passing over what nobody wants yet.

namespace corvane::detail {

namespace {

constexpr std::size_t maximumDepth = JSONSerialization::maximumDepth;

}  // namespace

bool JSONCursor::skipScalar() {
    if (passPlainScalar(tokens_)) return true;
    const char first = tokens_.peek();
    if (first == '"') {
        std::string_view raw;
        if (!rawText(tokens_, raw) || !unescape(raw)) return false;
    } else if (first == '-' || isDigit(first)) {
        JSONNumberText number;
        double ignored = 0;
        if (!scanNumber(tokens_.begin(), tokens_.limit(), number) ||
            (number.mayBeTooLarge() && !numberValue(number, ignored)))
            return false;
    } else if (tokens_.isAtEnd() ||
               (!isLiteral(tokens_, "null") && !isLiteral(tokens_, "true") && !isLiteral(tokens_, "false"))) {
        return false;
    }
    tokens_.pass();
    return true;
}

[[gnu::always_inline]] inline bool JSONCursor::passKey(JSONTokens& tokens) {
    std::string_view raw;
    return takeKey(tokens, raw) && (!hasEscape(raw) || hasOnlySimpleEscapes(raw) || unescape(raw));
}

[[gnu::always_inline]] inline bool JSONCursor::passValue(JSONTokens& tokens) {
    std::array<std::uint32_t, maximumDepth> open;  // the brackets we are in; only written where it is used
    std::size_t level = 0;
    while (true) {
        const char first = tokens.peek();
        if (first != '{' && first != '[') {
            if (!passPlainScalar(tokens)) {
                tokens_ = tokens;
                if (!skipScalar()) return false;
                tokens = tokens_;
            }
        } else if (isChecked(tokens.position())) {
            tokens.moveTo(behind_[tokens.position()]);
        } else {
            if (depth_ + level == maximumDepth) return false;
            open[level++] = tokens.position();
            tokens.pass();
            const bool isEmpty = tokens.peek() == (first == '{' ? '}' : ']');
            if (!isEmpty && first == '{' && !passKey(tokens)) return false;
            if (!isEmpty) continue;
        }
        while (true) {
            if (level == 0) return true;
            const bool inDictionary = tokens.at(open[level - 1]) == '{';
            if (tokens.take(',')) {
                if (inDictionary && !passKey(tokens)) return false;
                break;
            }
            if (!tokens.take(inDictionary ? '}' : ']')) return false;
            --level;
            if (!behind_.empty()) markChecked(open[level], tokens.position());
        }
    }
}

bool JSONCursor::skip() {
    JSONTokens tokens = tokens_;
    const bool isPassed = (depth_ < maximumDepth && passPlainArray(tokens)) || passValue(tokens);
    tokens_ = tokens;
    return isPassed || failMalformed();
}

void JSONCursor::wantEnds() {
    if (!behind_.empty()) return;
    behind_.assign(tokens_.count(), 0);
    isChecked_.assign(tokens_.count(), false);
}

void JSONCursor::markChecked(std::uint32_t start, std::uint32_t behind) {
    behind_[start] = behind;
    isChecked_[start] = true;
}

bool JSONCursor::passUnchecked() {
    const char first = tokens_.peek();
    if (first != '{' && first != '[') return skip();
    std::array<std::uint32_t, maximumDepth> open;  // as in `passValue`
    std::size_t level = 0;
    JSONTokens tokens = tokens_;
    while (!tokens.isAtEnd()) {
        const char c = *tokens.begin();
        const std::uint32_t at = tokens.position();
        tokens.pass();
        if (c == '}' || c == ']') {
            behind_[open[--level]] = tokens.position();
        } else if (c != '{' && c != '[') {
            continue;
        } else if (behind_[at] != 0) {
            tokens.moveTo(behind_[at]);
        } else {
            if (depth_ + level == maximumDepth) return failMalformed();
            open[level++] = at;
        }
        if (level > 0) continue;
        tokens_ = tokens;
        return true;
    }
    return false;
}

bool JSONCursor::checkUnchecked() {
    for (const std::uint32_t value : unchecked_) {
        moveTo(value);
        if (!skip()) return false;
    }
    return true;
}

}  // namespace corvane::detail
