#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string_view>

#include <Corvane/Export.hpp>
#include <Corvane/Platform/Data.hpp>
#include <Corvane/Platform/JSON/JSONValue.hpp>
#include <Corvane/Platform/PlatformError.hpp>

namespace corvane {

/// The domain of the errors of `JSONSerialization`; the codes are those of `JSONErrorCode`.
inline constexpr std::string_view jsonErrorDomain = "JSONErrorDomain";

enum class JSONErrorCode : std::int64_t {
    /// Nothing but white space.
    emptyInput = 1,
    /// Not JSON: a wrong or missing character, something behind the value, an unknown escape, half a
    /// surrogate pair.
    malformed = 2,
    /// The input, or a text to be written, is not UTF-8.
    invalidUTF8 = 3,
    /// More than `JSONSerialization::maximumDepth` arrays and dictionaries inside each other.
    tooDeep = 4,
    /// A number that is malformed or beyond the range of a double.
    invalidNumber = 5,
    /// Input of 4 GiB or more.
    tooLarge = 6,
    /// A number to be written is infinite or not a number.
    nonFiniteNumber = 7,
    outOfMemory = 8,
};

struct JSONWritingOptions {
    /// One member or element a line, two blanks of indentation a level, `"key": value`; empty arrays and
    /// dictionaries stay "[]" and "{}".
    bool prettyPrinted = false;
    /// Keys in the order of their bytes, which is that of their code points, instead of the dictionary's own.
    bool sortedKeys = false;

    friend bool operator==(const JSONWritingOptions&, const JSONWritingOptions&) = default;
};

/// Reads and writes JSON (RFC 8259). All operations may be called on any thread.
class CORVANE_EXPORT JSONSerialization {
  public:
    JSONSerialization() = delete;

    /// How many arrays and dictionaries may stand inside each other, in reading and in writing.
    static constexpr std::size_t maximumDepth = 1024;

    /// Reads one JSON value, of any kind, and nothing behind it but white space.
    ///
    /// The whole input is validated. Integers are exact from -2^63 to 2^64-1, larger ones become the nearest
    /// double, and a number beyond a double's range is an error. Of members with the same key the last value
    /// counts, in the place of the first. A byte order mark before the value is skipped. Half a surrogate
    /// pair is an error, and so is every other departure from the grammar.
    ///
    /// The bytes are read where they are and need not outlive the call.
    [[nodiscard]] static std::expected<JSONValue, PlatformError> jsonObject(const Data& data);

    /// The same from text, which is copied once to give it the padding that `Data` has.
    [[nodiscard]] static std::expected<JSONValue, PlatformError> jsonObject(std::string_view text);

    /// Writes a value of any kind. What it writes reads back as an equal value with the same order and the
    /// same Booleans; doubles are written as `numberText` has them and stay doubles. Only what must be
    /// escaped is.
    [[nodiscard]] static std::expected<Data, PlatformError> data(const JSONValue& value,
                                                                 JSONWritingOptions options = {});
};

}  // namespace corvane
