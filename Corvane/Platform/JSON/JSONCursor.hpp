#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <forward_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/JSON/AggregateCoding.hpp>
#include <Corvane/Platform/JSON/CodingPath.hpp>
#include <Corvane/Platform/JSON/DecodingError.hpp>
#include <Corvane/Platform/JSON/JSONDigits.hpp>
#include <Corvane/Platform/JSON/JSONNumber.hpp>
#include <Corvane/Platform/JSON/JSONTokens.hpp>

namespace corvane {

class JSONValue;

namespace detail {

class JSONStructure;
struct JSONNumberText;

/// The error whose text is `problem` and where it is.
[[nodiscard]] CORVANE_EXPORT DecodingError corruptedAt(std::string_view problem, const CodingStep* path);

/// The members of one dictionary of a document, in payload order, each key once.
class CORVANE_EXPORT JSONMemberTable {
  public:
    struct Entry {
        std::string_view key;
        std::uint32_t value;
    };

    static constexpr std::size_t none = SIZE_MAX;

    [[nodiscard]] const std::vector<Entry>& entries() const noexcept { return entries_; }

    /// The position of `key`, or `none`. Looking keys up in their order costs no hashing.
    [[nodiscard]] std::size_t find(std::string_view key, std::size_t likely = none) const noexcept;

    /// A later value under the same key takes the place of the earlier one.
    void add(std::string_view key, std::uint32_t value);

  private:
    void rebuildSlots();
    [[nodiscard]] std::size_t slotOf(std::string_view key) const noexcept;

    std::vector<Entry> entries_;
    std::vector<std::uint32_t> slots_;
};

/// Walks through the tokens of one document and reads its values into typed variables. The wall between the
/// templates that know the types and the JSON reader.
///
/// A document is first read in good faith: in one pass, without looking for what went wrong. Only when something did,
/// or when a key occurs twice, is it read again exactly. Types that decode themselves see the members and elements of
/// their value as the exact way tells them, and whole structs, lists and dictionaries that they ask for are again tried
/// in good faith first. What they list is at first passed by its brackets, and what nobody has read of it by the end is
/// validated then.
///
/// Every `read` operation leaves the cursor behind the value when it succeeds; when it fails, `takeError` has the
/// reason.
class CORVANE_EXPORT JSONCursor {
  public:
    /// Reads the document in `text`, behind which `Data::padding` bytes may be read, with `read`, which may be called
    /// twice and gets `target` and the cursor at the top-level value.
    static std::optional<DecodingError> readDocument(std::string_view text, void* target,
                                                     bool (*read)(JSONCursor&, void* target));

    JSONCursor(const JSONCursor&) = delete;
    JSONCursor& operator=(const JSONCursor&) = delete;

    /// Whether there is a null, which is then read.
    [[nodiscard]] bool readNull() noexcept;

    bool read(bool& value, const CodingStep* path);
    bool read(double& value, const CodingStep* path);
    bool read(float& value, const CodingStep* path);
    bool read(std::string& value, const CodingStep* path);
    bool read(JSONValue& value, const CodingStep* path);

    template <JSONInteger T>
    bool read(T& value, const CodingStep* path) {
        using Limits = std::numeric_limits<T>;
        if (std::int64_t whole = 0; takeShortInteger(tokens_, whole)) {
            value = static_cast<T>(whole);
            // Sixteen digits fit into both.
            if (static_cast<std::int64_t>(value) == whole && (value < T{}) == (whole < 0)) return true;
            tokens_.stepBack();
        }
        if constexpr (std::is_signed_v<T>) {
            std::int64_t wide = 0;
            if (!readSigned(wide, Limits::min(), Limits::max(), path)) return false;
            value = static_cast<T>(wide);
        } else {
            std::uint64_t wide = 0;
            if (!readUnsigned(wide, Limits::max(), path)) return false;
            value = static_cast<T>(wide);
        }
        return true;
    }

    bool readAggregate(void* object, const AggregateCoding& coding, const CodingStep* path);

    /// `begin` is the position of the array's first element.
    using ReadElement = bool (*)(JSONCursor&, void* list, std::uint32_t begin, const CodingStep*);

    /// Calls `element` for each element with the cursor at it.
    bool readArray(void* list, ReadElement element, const CodingStep* path);

    /// How many elements there are at most in an array that began at `begin` and has `count` elements up to here, if
    /// the others are like them. There is at least one.
    [[nodiscard]] std::size_t expectedElements(std::uint32_t begin, std::size_t count) const noexcept {
        const std::size_t tokens = (tokens_.position() - begin) / count;
        return count + tokens_.left() / (tokens > 0 ? tokens : 1) + 1;
    }

    using ReadEntry = bool (*)(JSONCursor&, void* dictionary, std::string_view key, const CodingStep*);

    /// How many members the dictionary at the cursor has at most; it has been passed before.
    [[nodiscard]] std::size_t mostMembers() const noexcept {
        // Each is a key, a colon, at least one more token, and a comma or the closing bracket.
        const std::uint32_t at = tokens_.position();
        return at < behind_.size() && behind_[at] > at ? (behind_[at] - at - 1) / 4 : 0;
    }

    /// Calls `entry` for each member with the cursor at its value.
    bool readDictionary(void* dictionary, ReadEntry entry, const CodingStep* path);

    /// Reads with `read`, in good faith, what would otherwise be read exactly. False when that failed, or was not tried
    /// as trying has not been worth it in this document: then the cursor is where it was, nothing is known of why, and
    /// what was read is to be thrown away.
    template <class Read>
    bool readInGoodFaith(const Read& read) {
        const auto attempt = beginAttempt();
        return attempt && endAttempt(*attempt, read());
    }

    /// Whether a failure now has to have its reason, and repeated keys have been sorted out.
    [[nodiscard]] bool isExact() const noexcept { return exact_; }

    /// The text at the cursor, unescaped; it holds until the next text is read.
    bool readTextView(std::string_view& text, const CodingStep* path);

    /// Passes one value, validating it.
    bool skip();

    /// Lists the members of the dictionary, or the elements of the array, at the cursor, which stays where it is.
    bool listMembers(JSONMemberTable& table, const CodingStep* path);
    bool listElements(std::vector<std::uint32_t>& elements, const CodingStep* path);

    [[nodiscard]] std::uint32_t position() const noexcept { return tokens_.position(); }

    void moveTo(std::uint32_t position) noexcept { tokens_.moveTo(position); }

    /// A copy of the step that lives as long as the cursor.
    const CodingStep* keep(const CodingStep& step) { return &steps_.emplace_front(step); }

    /// Always false.
    bool fail(DecodingError error);
    bool failMismatch(std::string_view expected, const CodingStep* path);
    bool failCorrupted(std::string_view problem, const CodingStep* path);
    bool failMissing(std::string_view key, const CodingStep* path);
    bool failRawValue(const CodingStep* path);
    bool failAtEnd(const CodingStep* path);

    [[nodiscard]] DecodingError takeError();

    /// While it lives, reading is exact.
    class ExactScope {
      public:
        explicit ExactScope(JSONCursor& cursor) noexcept
            : cursor_(cursor), before_(std::exchange(cursor.exact_, true)), depth_(cursor.depth_) {}

        ExactScope(const ExactScope&) = delete;
        ExactScope& operator=(const ExactScope&) = delete;

        ~ExactScope() {
            cursor_.exact_ = before_;
            cursor_.depth_ = depth_;
        }

      private:
        JSONCursor& cursor_;
        bool before_;
        std::size_t depth_;
    };

  private:
    struct Attempt {
        std::uint32_t start;
        std::size_t depth;
        bool wasExact;
    };

    explicit JSONCursor(JSONStructure& structure);

    [[nodiscard]] std::optional<Attempt> beginAttempt() noexcept;
    bool endAttempt(const Attempt& attempt, bool isRead);

    [[nodiscard]] std::string_view tokenText() const noexcept;
    [[nodiscard]] bool unescape(std::string_view& raw);
    [[nodiscard]] bool keepUnescaped(std::string_view& text);
    [[nodiscard]] bool readKey(std::string_view& key);
    [[nodiscard]] static bool numberValue(const JSONNumberText& number, double& value) noexcept;
    [[nodiscard]] bool readNumber(JSONNumberText& number, std::string_view expected, const CodingStep* path);
    bool readSigned(std::int64_t& value, std::int64_t least, std::int64_t most, const CodingStep* path);
    bool readUnsigned(std::uint64_t& value, std::uint64_t most, const CodingStep* path);
    bool failRange(std::int64_t least, std::uint64_t most, const CodingStep* path);
    bool failMalformed();
    bool skipScalar();
    [[nodiscard]] bool passKey(JSONTokens& tokens);
    [[nodiscard]] bool passValue(JSONTokens& tokens);
    template <class T>
    bool read(std::optional<T>& value, const CodingStep* path);
    bool readMember(void* object, const MemberCoding& member, const CodingStep* path);
    bool readAggregateExactly(void* object, const AggregateCoding& coding, const CodingStep* path);
    void startAgainExactly();
    void wantEnds();

    [[nodiscard]] bool isChecked(std::uint32_t start) const { return !behind_.empty() && isChecked_[start]; }

    void markChecked(std::uint32_t start, std::uint32_t behind);
    [[nodiscard]] bool passUnchecked();
    [[nodiscard]] bool checkUnchecked();
    template <class Add>
    bool list(char closing, const Add& add);

    JSONTokens tokens_;
    bool exact_ = false;
    /// Attempts inside each other, and how many tokens were passed in vain.
    unsigned attempts_ = 0;
    std::size_t wastedTokens_ = 0;
    std::size_t depth_ = 0;
    JSONStructure& structure_;
    std::string scratch_;
    /// For each opening bracket that was passed, the token behind its closing one; empty until wanted.
    std::vector<std::uint32_t> behind_;
    /// Whether what is between those brackets is valid, if all that is listed below is.
    std::vector<bool> isChecked_;
    /// Arrays and dictionaries that were only passed by their brackets when what holds them was listed.
    std::vector<std::uint32_t> unchecked_;
    std::forward_list<std::string> keptTexts_;
    std::forward_list<CodingStep> steps_;
    std::optional<DecodingError> error_;
};

}  // namespace detail

}  // namespace corvane
