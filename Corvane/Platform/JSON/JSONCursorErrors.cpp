#include <utility>

#include <fmt/format.h>

#include <Corvane/Platform/JSON/JSONCursor.hpp>
#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/ClippedText.hpp>
#include <Corvane/Platform/JSON/Private/JSONCharacters.hpp>
#include <Corvane/Platform/JSON/Private/JSONErrors.hpp>
#include <Corvane/Platform/JSON/Private/JSONNumberText.hpp>
#include <Corvane/Platform/JSON/Private/JSONStructure.hpp>

// What went wrong, and the second look at a document in which something did.

namespace corvane::detail {

namespace {

std::string_view kindName(char first) {
    switch (first) {
        case '{':
            return "a dictionary";
        case '[':
            return "an array";
        case '"':
            return "text";
        case 't':
        case 'f':
            return "a Boolean";
        default:
            return "a number";
    }
}

/// How many brackets are open there.
std::size_t depthAt(const JSONTokens& tokens) noexcept {
    std::size_t depth = 0;
    for (std::uint32_t i = 0; i < tokens.position(); ++i) {
        const char first = tokens.at(i);
        if (first == '{' || first == '[') ++depth;
        if (first == '}' || first == ']') --depth;
    }
    return depth;
}

DecodingError notJSON(JSONErrorCode code) {
    return DecodingError::dataCorrupted({{}, jsonErrorText(code)});
}

}  // namespace

DecodingError corruptedAt(std::string_view problem, const CodingStep* path) {
    CodingPath codingPath = pathOf(path);
    std::string text = fmt::format("{} at {}.", problem, description(codingPath));
    return DecodingError::dataCorrupted({std::move(codingPath), std::move(text)});
}

std::optional<DecodingError> JSONCursor::readDocument(std::string_view text, void* target,
                                                      bool (*read)(JSONCursor&, void* target)) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    JSONStructure structure;
    if (const auto code = structure.index(text)) return notJSON(*code);
    JSONCursor cursor(structure);
    if (read(cursor, target) && cursor.tokens_.isAtEnd() && cursor.checkUnchecked()) return std::nullopt;

    cursor.startAgainExactly();
    if (!cursor.skip()) return cursor.takeError();
    if (!cursor.tokens_.isAtEnd()) {
        cursor.failMalformed();
        return cursor.takeError();
    }
    cursor.moveTo(0);
    if (read(cursor, target)) return std::nullopt;
    return cursor.takeError();
}

void JSONCursor::startAgainExactly() {
    moveTo(0);
    depth_ = 0;
    exact_ = true;
    error_.reset();
    behind_.clear();
    unchecked_.clear();
    wantEnds();
}

std::optional<JSONCursor::Attempt> JSONCursor::beginAttempt() noexcept {
    // A failure makes all the attempts around it fail, and each then reads again what is inside it: there may only be
    // few inside each other, and only until they have cost as much as the whole document.
    constexpr unsigned mostAttempts = 4;
    if (attempts_ == mostAttempts || wastedTokens_ > tokens_.count()) return std::nullopt;
    ++attempts_;
    return Attempt{position(), depth_, std::exchange(exact_, false)};
}

bool JSONCursor::endAttempt(const Attempt& attempt, bool isRead) {
    --attempts_;
    exact_ = attempt.wasExact;
    depth_ = attempt.depth;
    wantEnds();
    if (isRead) {
        // What spans several tokens begins with a bracket.
        if (position() - attempt.start > 1) markChecked(attempt.start, position());
    } else {
        // A failure at the value's beginning may come after a look at all of it.
        moveTo(attempt.start);
        wastedTokens_ += passUnchecked() ? position() - attempt.start : tokens_.count();
        moveTo(attempt.start);
    }
    return isRead;
}

bool JSONCursor::fail(DecodingError error) {
    error_ = std::move(error);
    return false;
}

bool JSONCursor::failMismatch(std::string_view expected, const CodingStep* path) {
    if (!exact_) return false;
    CodingPath codingPath = pathOf(path);
    const std::string place = description(codingPath);
    if (tokens_.peek() == 'n') {
        return fail(DecodingError::valueNotFound(
            std::string(expected),
            {std::move(codingPath), fmt::format("Expected {} but found null at {}.", expected, place)}));
    }
    return fail(DecodingError::typeMismatch(
        std::string(expected), {std::move(codingPath), fmt::format("Expected {} but found {} at {}.", expected,
                                                                   kindName(tokens_.peek()), place)}));
}

bool JSONCursor::failCorrupted(std::string_view problem, const CodingStep* path) {
    return exact_ && fail(corruptedAt(problem, path));
}

bool JSONCursor::failMissing(std::string_view key, const CodingStep* path) {
    if (!exact_) return false;
    CodingPath codingPath = pathOf(path);
    std::string text = fmt::format("There is no member \"{}\" at {}.", clippedText(key), description(codingPath));
    return fail(DecodingError::keyNotFound(CodingKey(std::string(key)), {std::move(codingPath), std::move(text)}));
}

bool JSONCursor::failRawValue(const CodingStep* path) {
    if (!exact_) return false;
    return failCorrupted(fmt::format("{} is not one of the enumeration's values", clippedText(tokenText())), path);
}

bool JSONCursor::failAtEnd(const CodingStep* path) {
    CodingPath codingPath = pathOf(path);
    std::string text = fmt::format("The array has no further element at {}.", description(codingPath));
    return fail(DecodingError::valueNotFound("an element", {std::move(codingPath), std::move(text)}));
}

bool JSONCursor::failMalformed() {
    if (!exact_) return false;
    // All that the parser has not refused is told apart here, where nobody is in a hurry.
    const char first = tokens_.peek();
    JSONErrorCode code = JSONErrorCode::malformed;
    JSONNumberText number;
    double ignored = 0;
    if (first == '-' || isDigit(first)) {
        if (!scanNumber(tokens_.begin(), tokens_.limit(), number) || !numberValue(number, ignored))
            code = JSONErrorCode::invalidNumber;
    } else if ((first == '{' || first == '[') && depthAt(tokens_) >= JSONSerialization::maximumDepth) {
        code = JSONErrorCode::tooDeep;
    }
    return fail(DecodingError::dataCorrupted({{}, fmt::format("{} (byte {})", jsonErrorText(code), tokens_.offset())}));
}

DecodingError JSONCursor::takeError() {
    if (!error_) return notJSON(JSONErrorCode::malformed);
    DecodingError error = *std::move(error_);
    error_.reset();
    return error;
}

}  // namespace corvane::detail
