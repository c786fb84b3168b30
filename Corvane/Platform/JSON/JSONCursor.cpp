#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>
#include <Corvane/Platform/JSON/Private/JSONCharacters.hpp>
#include <Corvane/Platform/JSON/Private/JSONNumberText.hpp>
#include <Corvane/Platform/JSON/Private/JSONReader.hpp>
#include <Corvane/Platform/JSON/Private/JSONStructure.hpp>

namespace corvane::detail {

namespace {

constexpr std::size_t maximumDepth = JSONSerialization::maximumDepth;

/// Whether the character stands behind a backslash for one other character.
constexpr bool isSimpleEscape(char c) noexcept {
    return c == '"' || c == '\\' || c == '/' || c == 'b' || c == 'f' || c == 'n' || c == 'r' || c == 't';
}

constexpr std::size_t blockSize = 16;

/// For each of the characters from `text` on, which must all be readable, one bit: whether it is a backslash.
inline unsigned backslashes(const char* text) noexcept {
#ifdef __SSE2__
    __m128i block;
    std::memcpy(&block, text, sizeof block);
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\\'))));
#else
    unsigned found = 0;
    for (std::size_t i = 0; i < blockSize; ++i)
        found |= static_cast<unsigned>(text[i] == '\\') << i;
    return found;
#endif
}

/// Whether there is a backslash. Reads whole blocks, also beyond the end.
inline bool hasEscape(std::string_view raw) noexcept {
    for (std::size_t i = 0; i < raw.size(); i += blockSize) {
        const unsigned found = backslashes(raw.data() + i);
        if (found != 0) return i + static_cast<std::size_t>(std::countr_zero(found)) < raw.size();
    }
    return false;
}

}  // namespace

JSONCursor::JSONCursor(std::string_view text, JSONStructure& structure)
    : text_(text.data()),
      tokens_(structure.tokens().data()),
      size_(static_cast<std::uint32_t>(text.size())),
      tokenCount_(static_cast<std::uint32_t>(structure.tokens().size())),
      structure_(structure) {}

// Tokens

std::string_view JSONCursor::tokenText() const noexcept {
    if (at_ >= tokenCount_) return {};
    std::string_view token(text_ + tokens_[at_], tokenEnd());
    while (isWhitespace(token.back()))
        token.remove_suffix(1);
    return token;
}

bool JSONCursor::take(char character) noexcept {
    if (peek() != character) return false;
    ++at_;
    return true;
}

bool JSONCursor::isLiteral(std::string_view literal) const noexcept {
    const char* const begin = text_ + tokens_[at_];
    const char* const end = begin + literal.size();
    const char* const limit = tokenEnd();
    return end <= limit && std::memcmp(begin, literal.data(), literal.size()) == 0 &&
           (end == limit || isWhitespace(*end));
}

[[gnu::always_inline]] inline bool JSONCursor::rawText(std::string_view& raw) const noexcept {
    // Behind a text's closing quote there is at most white space before the next token.
    const char* const begin = text_ + tokens_[at_] + 1;
    const char* last = tokenEnd() - 1;
    while (isWhitespace(*last))
        --last;
    if (last < begin || *last != '"') return false;
    raw = {begin, last};
    return true;
}

bool JSONCursor::unescape(std::string_view& raw) {
    if (!hasEscape(raw)) return true;
    const auto plain = structure_.unescaped(raw, scratch_);
    if (!plain) return false;
    raw = *plain;
    return true;
}

bool JSONCursor::hasValidEscapes(std::string_view raw) {
    std::size_t checked = 0;
    for (std::size_t i = 0; i < raw.size(); i += blockSize) {
        for (unsigned found = backslashes(raw.data() + i); found != 0; found &= found - 1) {
            const std::size_t at = i + static_cast<std::size_t>(std::countr_zero(found));
            if (at >= raw.size()) return true;
            // The second of two backslashes.
            if (at < checked) continue;
            const char escape = raw[at + 1];
            if (escape == 'u') return unescape(raw);
            if (!isSimpleEscape(escape)) return false;
            checked = at + 2;
        }
    }
    return true;
}

[[gnu::always_inline]] inline bool JSONCursor::passKey(std::string_view& raw) noexcept {
    if (peek() != '"' || !rawText(raw)) return false;
    ++at_;
    return take(':');
}

bool JSONCursor::readKey(std::string_view& key) {
    return passKey(key) && unescape(key);
}

std::string_view JSONCursor::kept(std::string_view text) {
    const bool isInDocument = text.data() >= text_ && text.data() < text_ + size_;
    return isInDocument ? text : keptTexts_.emplace_back(text);
}

// Scalars

bool JSONCursor::readNull() noexcept {
    if (peek() != 'n' || !isLiteral("null")) return false;
    ++at_;
    return true;
}

bool JSONCursor::read(bool& value, const CodingStep* path) {
    const char first = peek();
    if ((first != 't' || !isLiteral("true")) && (first != 'f' || !isLiteral("false"))) {
        return failMismatch("a Boolean", path);
    }
    value = first == 't';
    ++at_;
    return true;
}

bool JSONCursor::readTextView(std::string_view& text, const CodingStep* path) {
    if (peek() != '"') return failMismatch("text", path);
    if (!rawText(text) || !unescape(text)) return failMalformed();
    ++at_;
    return true;
}

bool JSONCursor::read(std::string& value, const CodingStep* path) {
    std::string_view text;
    if (!readTextView(text, path)) return false;
    value.assign(text);
    return true;
}

bool JSONCursor::read(JSONValue& value, const CodingStep* path) {
    const std::uint32_t start = at_;
    if (!skip()) return false;
    const std::uint32_t end = at_ < tokenCount_ ? tokens_[at_] : size_;
    auto read = readJSON({text_ + tokens_[start], end - tokens_[start]});
    if (!read) return failCorrupted("The value cannot be read", path);
    value = *std::move(read);
    return true;
}

bool JSONCursor::skipScalar() {
    std::string_view raw;
    double ignored = 0;
    const char first = peek();
    switch (first) {
        case '"':
            if (!rawText(raw) || !hasValidEscapes(raw)) return false;
            break;
        case 't':
            if (!isLiteral("true")) return false;
            break;
        case 'f':
            if (!isLiteral("false")) return false;
            break;
        case 'n':
            if (!isLiteral("null")) return false;
            break;
        default: {
            if (first != '-' && !isDigit(first)) return false;
            if (at_ + 1 < tokenCount_ && isShortNumber(tokenBegin())) break;
            JSONNumberText number;
            if (!scanNumber(tokenBegin(), tokenEnd(), number) ||
                (number.mayBeTooLarge() && !numberValue(number, ignored)))
                return false;
        }
    }
    ++at_;
    return true;
}

// Containers

template <class T>
bool JSONCursor::readOptional(std::optional<T>& value, const CodingStep* path) {
    value.reset();
    return readNull() || read(value.emplace(), path);
}

[[gnu::always_inline]] inline bool JSONCursor::readMember(void* object, const MemberCoding& member,
                                                          const CodingStep* path) {
    if (member.kind == MemberKind::other) return member.read(*this, object, path);
    void* const place = static_cast<std::byte*>(object) +
                        (static_cast<const std::byte*>(member.member) - static_cast<const std::byte*>(member.object));
    switch (member.kind) {
        case MemberKind::boolean:
            return read(*static_cast<bool*>(place), path);
        case MemberKind::int32:
            return read(*static_cast<std::int32_t*>(place), path);
        case MemberKind::int64:
            return read(*static_cast<std::int64_t*>(place), path);
        case MemberKind::real:
            return read(*static_cast<double*>(place), path);
        case MemberKind::text:
            return read(*static_cast<std::string*>(place), path);
        case MemberKind::optionalBoolean:
            return readOptional(*static_cast<std::optional<bool>*>(place), path);
        case MemberKind::optionalInt32:
            return readOptional(*static_cast<std::optional<std::int32_t>*>(place), path);
        case MemberKind::optionalInt64:
            return readOptional(*static_cast<std::optional<std::int64_t>*>(place), path);
        case MemberKind::optionalReal:
            return readOptional(*static_cast<std::optional<double>*>(place), path);
        case MemberKind::optionalText:
            return readOptional(*static_cast<std::optional<std::string>*>(place), path);
        case MemberKind::aggregate:
            return readAggregate(place, *member.nested, path);
        case MemberKind::other:
            break;
    }
    std::unreachable();
}

bool JSONCursor::readAggregate(void* object, const AggregateCoding& coding, const CodingStep* path) {
    if (exact_) return readAggregateExactly(object, coding, path);
    if (!take('{') || depth_ == maximumDepth) return false;
    ++depth_;
    std::uint64_t seen = 0;
    std::size_t likely = 0;
    auto step = CodingStep::to(path, std::string_view());
    if (!take('}')) {
        do {
            std::string_view key;
            if (!passKey(key) || (coding.hasBackslash && !unescape(key))) return false;
            std::size_t index = coding.find(key, likely);
            // A key with escapes is not one of ours as it stands, but may be one without them.
            if (index == coding.members.size() && !coding.hasBackslash && hasEscape(key)) {
                if (!unescape(key)) return false;
                index = coding.find(key, likely);
            }
            if (index == coding.members.size()) {
                const char first = peek();
                if (!(first == '{' || first == '[' ? skip() : skipScalar())) return false;
                continue;
            }
            // Which of two values under one key counts is told only by an exact look.
            const auto bit = std::uint64_t{1} << index;
            if ((seen & bit) != 0) return false;
            seen |= bit;
            likely = index + 1;
            const MemberCoding& member = coding.members[index];
            step.key = member.key;
            if (!readMember(object, member, &step)) return false;
        } while (take(','));
        if (!take('}')) return false;
    }
    --depth_;
    return (coding.required & ~seen) == 0;
}

bool JSONCursor::readAggregateExactly(void* object, const AggregateCoding& coding, const CodingStep* path) {
    JSONMemberTable table;
    if (!listMembers(table, path)) return false;
    const std::uint32_t start = at_;
    ++depth_;
    std::uint64_t seen = 0;
    for (const auto& entry : table.entries()) {
        const std::size_t index = coding.find(entry.key, coding.members.size());
        if (index == coding.members.size()) continue;
        const auto step = CodingStep::to(path, coding.members[index].key);
        at_ = entry.value;
        if (!readMember(object, coding.members[index], &step)) return false;
        seen |= std::uint64_t{1} << index;
    }
    --depth_;
    if (const std::uint64_t missing = coding.required & ~seen; missing != 0) {
        return failMissing(coding.members[static_cast<std::size_t>(std::countr_zero(missing))].key, path);
    }
    at_ = behind_[start];
    return true;
}

bool JSONCursor::readArray(void* list, ReadElement element, const CodingStep* path) {
    if (peek() != '[') return failMismatch("an array", path);
    if (depth_ == maximumDepth) return failMalformed();
    ++at_;
    ++depth_;
    auto step = CodingStep::to(path, std::size_t{0});
    const std::uint32_t begin = at_;
    if (!take(']')) {
        do {
            if (!element(*this, list, begin, &step)) return false;
            ++step.index;
        } while (take(','));
        if (!take(']')) return failMalformed();
    }
    --depth_;
    return true;
}

bool JSONCursor::readDictionaryInGoodFaith(void* dictionary, ReadEntry entry, const CodingStep* path) {
    // A failure makes all the attempts around it fail, and each then reads again what is inside it: there may only be
    // few of them, and none after the first failure.
    constexpr unsigned mostAttempts = 4;
    if (hasFailedAttempt_ || attempts_ == mostAttempts) return false;
    ++attempts_;
    const bool wasExact = std::exchange(exact_, false);
    const std::size_t depth = depth_;
    const bool isRead = readDictionary(dictionary, entry, path);
    exact_ = wasExact;
    depth_ = depth;
    --attempts_;
    hasFailedAttempt_ |= !isRead;
    return isRead;
}

bool JSONCursor::readDictionary(void* dictionary, ReadEntry entry, const CodingStep* path) {
    if (exact_) {
        JSONMemberTable table;
        if (!listMembers(table, path)) return false;
        const std::uint32_t start = at_;
        ++depth_;
        for (const auto& [key, value] : table.entries()) {
            const auto step = CodingStep::to(path, key);
            at_ = value;
            if (!entry(*this, dictionary, key, &step)) return false;
        }
        --depth_;
        at_ = behind_[start];
        return true;
    }
    if (!take('{') || depth_ == maximumDepth) return false;
    ++depth_;
    auto step = CodingStep::to(path, std::string_view());
    if (!take('}')) {
        do {
            if (!readKey(step.key)) return false;
            step.key = kept(step.key);
            if (!entry(*this, dictionary, step.key, &step)) return false;
        } while (take(','));
        if (!take('}')) return false;
    }
    --depth_;
    return true;
}

bool JSONCursor::skip() {
    std::array<std::uint32_t, maximumDepth> open;  // the brackets we are in; only written where it is used
    std::size_t level = 0;
    const auto passValidKey = [this] {
        std::string_view raw;
        return passKey(raw) && hasValidEscapes(raw);
    };
    const auto close = [&] {
        --level;
        if (!behind_.empty()) behind_[open[level]] = at_;
    };
    while (true) {
        const char first = peek();
        if (first != '{' && first != '[') {
            if (!skipScalar()) return failMalformed();
        } else if (!behind_.empty() && behind_[at_] != 0) {
            at_ = behind_[at_];
        } else {
            if (depth_ + level == maximumDepth) return failMalformed();
            open[level++] = at_++;
            if (take(first == '{' ? '}' : ']')) {
                close();
            } else {
                if (first == '{' && !passValidKey()) return failMalformed();
                continue;
            }
        }
        while (true) {
            if (level == 0) return true;
            const bool inDictionary = text_[tokens_[open[level - 1]]] == '{';
            if (take(',')) {
                if (inDictionary && !passValidKey()) return failMalformed();
                break;
            }
            if (!take(inDictionary ? '}' : ']')) return failMalformed();
            close();
        }
    }
}

bool JSONCursor::listMembers(JSONMemberTable& table, const CodingStep* path) {
    if (peek() != '{') return failMismatch("a dictionary", path);
    if (depth_ == maximumDepth) return failMalformed();
    if (behind_.empty()) behind_.assign(tokenCount_, 0);
    const std::uint32_t start = at_++;
    ++depth_;
    if (!take('}')) {
        do {
            std::string_view key;
            if (!readKey(key)) return failMalformed();
            table.add(kept(key), at_);
            if (!skip()) return false;
        } while (take(','));
        if (!take('}')) return failMalformed();
    }
    --depth_;
    behind_[start] = std::exchange(at_, start);
    return true;
}

bool JSONCursor::listElements(std::vector<std::uint32_t>& elements, const CodingStep* path) {
    if (peek() != '[') return failMismatch("an array", path);
    if (depth_ == maximumDepth) return failMalformed();
    if (behind_.empty()) behind_.assign(tokenCount_, 0);
    const std::uint32_t start = at_++;
    ++depth_;
    if (!take(']')) {
        do {
            elements.push_back(at_);
            if (!skip()) return false;
        } while (take(','));
        if (!take(']')) return failMalformed();
    }
    --depth_;
    behind_[start] = std::exchange(at_, start);
    return true;
}

}  // namespace corvane::detail
