#include <bit>
#include <utility>

#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/JSONScalars.hpp>

// Structs, arrays and dictionaries.

namespace corvane::detail {

namespace {

constexpr std::size_t maximumDepth = JSONSerialization::maximumDepth;

[[gnu::always_inline]] inline void* placeOf(void* object, const MemberCoding& member) noexcept {
    return static_cast<std::byte*>(object) +
           (static_cast<const std::byte*>(member.member) - static_cast<const std::byte*>(member.object));
}

/// Calls `visit` with a member of a type that the reader knows by itself and that holds no others; false for others.
template <class Visit>
[[gnu::always_inline]] inline bool visitScalar(void* object, const MemberCoding& member, const Visit& visit) {
    void* const place = placeOf(object, member);
    switch (member.kind) {
        case MemberKind::boolean:
            return visit(*static_cast<bool*>(place));
        case MemberKind::int32:
            return visit(*static_cast<std::int32_t*>(place));
        case MemberKind::int64:
            return visit(*static_cast<std::int64_t*>(place));
        case MemberKind::real:
            return visit(*static_cast<double*>(place));
        case MemberKind::text:
            return visit(*static_cast<std::string*>(place));
        case MemberKind::optionalBoolean:
            return visit(*static_cast<std::optional<bool>*>(place));
        case MemberKind::optionalInt32:
            return visit(*static_cast<std::optional<std::int32_t>*>(place));
        case MemberKind::optionalInt64:
            return visit(*static_cast<std::optional<std::int64_t>*>(place));
        case MemberKind::optionalReal:
            return visit(*static_cast<std::optional<double>*>(place));
        case MemberKind::optionalText:
            return visit(*static_cast<std::optional<std::string>*>(place));
        case MemberKind::aggregate:
        case MemberKind::other:
            return false;
    }
    std::unreachable();
}

// What nearly all values are, taken without a look at the rest. When they say no, the tokens are where they were, and
// the cursor has to read the value.

[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, bool& value) noexcept {
    return takeBoolean(tokens, value);
}

[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, std::int64_t& value) noexcept {
    return takeShortInteger(tokens, value);
}

[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, std::int32_t& value) noexcept {
    std::int64_t wide = 0;
    if (!takeShortInteger(tokens, wide)) return false;
    value = static_cast<std::int32_t>(wide);
    if (value == wide) return true;
    tokens.stepBack();
    return false;
}

[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, double& value) noexcept {
    return takeShortDecimal(tokens, value);
}

[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, std::string& value) {
    std::string_view text;
    if (!takePlainText(tokens, text)) return false;
    value.assign(text);
    return true;
}

template <class T>
[[gnu::always_inline]] inline bool takePlain(JSONTokens& tokens, std::optional<T>& value) {
    value.reset();
    return takeNull(tokens) || takePlain(tokens, value.emplace());
}

}  // namespace

template <class T>
bool JSONCursor::read(std::optional<T>& value, const CodingStep* path) {
    value.reset();
    return readNull() || read(value.emplace(), path);
}

bool JSONCursor::readMember(void* object, const MemberCoding& member, const CodingStep* path) {
    if (member.kind == MemberKind::aggregate) return readAggregate(placeOf(object, member), *member.nested, path);
    if (member.kind == MemberKind::other) return member.read(*this, object, path);
    return visitScalar(object, member, [&](auto& value) { return read(value, path); });
}

bool JSONCursor::readAggregate(void* object, const AggregateCoding& coding, const CodingStep* path) {
    if (exact_) return readAggregateExactly(object, coding, path);
    JSONTokens tokens = tokens_;
    if (!tokens.take('{') || depth_ == maximumDepth) return false;
    ++depth_;
    std::uint64_t seen = 0;
    const MemberCoding* const last = coding.members.data() + coding.members.size();
    const MemberCoding* likely = coding.members.data();
    if (!tokens.take('}')) {
        do {
            // A key, a colon and a value.
            if (tokens.left() < 3 || tokens.peekNext() != ':') return false;
            const MemberCoding* member = likely;
            if (likely != last && likely->isAt(tokens.begin(), tokens.limit())) {
                tokens.pass(2);
            } else {
                std::string_view key;
                if (*tokens.begin() != '"' || !rawText(tokens, key)) return false;
                tokens.pass(2);
                member = coding.findAt(key);
                if (member == nullptr && hasEscape(key)) {
                    if (!unescape(key)) return false;
                    member = coding.find(key);
                }
                if (member == nullptr) {
                    if (passPlainScalar(tokens)) continue;
                    tokens_ = tokens;
                    if (!skip()) return false;
                    tokens = tokens_;
                    continue;
                }
            }
            // Which of two values under one key counts is told only by an exact look.
            if ((seen & member->bit) != 0) return false;
            seen |= member->bit;
            likely = member + 1;
            if (visitScalar(object, *member, [&](auto& value) { return takePlain(tokens, value); })) continue;
            tokens_ = tokens;
            const auto step = CodingStep::to(path, member->key);
            if (!readMember(object, *member, &step)) return false;
            tokens = tokens_;
        } while (tokens.take(','));
        if (!tokens.take('}')) return false;
    }
    --depth_;
    tokens_ = tokens;
    return (coding.required & ~seen) == 0;
}

bool JSONCursor::readAggregateExactly(void* object, const AggregateCoding& coding, const CodingStep* path) {
    JSONMemberTable table;
    if (!listMembers(table, path)) return false;
    const std::uint32_t start = position();
    ++depth_;
    std::uint64_t seen = 0;
    for (const auto& entry : table.entries()) {
        const MemberCoding* const member = coding.find(entry.key);
        if (member == nullptr) continue;
        const auto step = CodingStep::to(path, member->key);
        moveTo(entry.value);
        if (!readMember(object, *member, &step)) return false;
        seen |= member->bit;
    }
    --depth_;
    if (const std::uint64_t missing = coding.required & ~seen; missing != 0) {
        return failMissing(coding.members[static_cast<std::size_t>(std::countr_zero(missing))].key, path);
    }
    moveTo(behind_[start]);
    return true;
}

bool JSONCursor::readArray(void* list, ReadElement element, const CodingStep* path) {
    if (tokens_.peek() != '[') return failMismatch("an array", path);
    if (depth_ == maximumDepth) return failMalformed();
    tokens_.pass();
    ++depth_;
    auto step = CodingStep::to(path, std::size_t{0});
    const std::uint32_t begin = position();
    if (!tokens_.take(']')) {
        do {
            if (!element(*this, list, begin, &step)) return false;
            ++step.index;
        } while (tokens_.take(','));
        if (!tokens_.take(']')) return failMalformed();
    }
    --depth_;
    return true;
}

[[gnu::always_inline]] inline bool JSONCursor::readKey(std::string_view& key) {
    if (!takeKey(tokens_, key)) return false;
    return !hasEscape(key) || keepUnescaped(key);
}

bool JSONCursor::readDictionary(void* dictionary, ReadEntry entry, const CodingStep* path) {
    if (exact_) {
        JSONMemberTable table;
        if (!listMembers(table, path)) return false;
        const std::uint32_t start = position();
        ++depth_;
        for (const auto& [key, value] : table.entries()) {
            const auto step = CodingStep::to(path, key);
            moveTo(value);
            if (!entry(*this, dictionary, key, &step)) return false;
        }
        --depth_;
        moveTo(behind_[start]);
        return true;
    }
    if (!tokens_.take('{') || depth_ == maximumDepth) return false;
    ++depth_;
    auto step = CodingStep::to(path, std::string_view());
    if (!tokens_.take('}')) {
        do {
            if (!readKey(step.key)) return false;
            if (!entry(*this, dictionary, step.key, &step)) return false;
        } while (tokens_.take(','));
        if (!tokens_.take('}')) return false;
    }
    --depth_;
    return true;
}

bool JSONCursor::listMembers(JSONMemberTable& table, const CodingStep* path) {
    if (tokens_.peek() != '{') return failMismatch("a dictionary", path);
    return list('}', [&] {
        std::string_view key;
        if (!readKey(key)) return failMalformed();
        table.add(key, position());
        return true;
    });
}

bool JSONCursor::listElements(std::vector<std::uint32_t>& elements, const CodingStep* path) {
    if (tokens_.peek() != '[') return failMismatch("an array", path);
    return list(']', [&] {
        elements.push_back(position());
        return true;
    });
}

template <class Add>
bool JSONCursor::list(char closing, const Add& add) {
    if (depth_ == maximumDepth) return failMalformed();
    wantEnds();
    const std::uint32_t start = position();
    const bool isFirst = !isChecked_[start];
    tokens_.pass();
    ++depth_;
    if (!tokens_.take(closing)) {
        do {
            if (!add()) return false;
            const std::uint32_t value = position();
            if (!passUnchecked()) return false;
            if (isFirst && behind_[value] != 0 && !isChecked_[value]) unchecked_.push_back(value);
        } while (tokens_.take(','));
        if (!tokens_.take(closing)) return failMalformed();
    }
    --depth_;
    markChecked(start, position());
    moveTo(start);
    return true;
}

}  // namespace corvane::detail
