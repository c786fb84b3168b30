#pragma once

#include <concepts>
#include <optional>
#include <variant>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>
#include <Corvane/Platform/JSON/Private/JSONTextWriter.hpp>

namespace corvane::detail {

/// Writes a loosely typed JSON value as text.
class JSONWriter {
  public:
    /// Lenient is for developers' eyes: non-finite numbers stand as "nan", "inf" and "-inf", what is too deep
    /// as "…", and texts are not checked.
    enum class Strictness : unsigned char { strict, lenient };

    JSONWriter(JSONTextWriter& writer, bool sortedKeys, Strictness strictness) noexcept
        : writer_(writer), sortedKeys_(sortedKeys), strictness_(strictness) {}

    /// The failure, when there is one; the text is of no use then.
    std::optional<JSONErrorCode> write(const JSONValue& value);

  private:
    void writeValue(const JSONValue& value);
    void writeHeld(std::monostate null);
    void writeHeld(bool boolean);
    void writeHeld(std::integral auto integer);
    void writeHeld(double number);
    void writeHeld(const JSONBlockReference& text);
    void writeHeld(const JSONArray& array);
    void writeHeld(const JSONDictionary& dictionary);
    void writeMember(const JSONDictionary::Member& member, bool first);
    bool enter(char bracket);
    void fail(JSONErrorCode code);

    JSONTextWriter& writer_;
    bool sortedKeys_;
    Strictness strictness_;
    std::optional<JSONErrorCode> failure_;
};

}  // namespace corvane::detail
