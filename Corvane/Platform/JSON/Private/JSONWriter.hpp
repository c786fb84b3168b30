#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <Corvane/Platform/JSON/JSONSerialization.hpp>

namespace corvane::detail {

/// Writes one JSON value as text.
class JSONWriter {
  public:
    /// Lenient is for developers' eyes: non-finite numbers stand as "nan", "inf" and "-inf", what is too deep
    /// as "…", and texts are not checked.
    enum class Strictness : unsigned char { strict, lenient };

    JSONWriter(JSONWritingOptions options, Strictness strictness) : options_(options), strictness_(strictness) {}

    /// The failure, when there is one; the text is of no use then.
    std::optional<JSONErrorCode> write(const JSONValue& value);

    [[nodiscard]] std::string text() && { return std::move(text_); }

  private:
    void writeValue(const JSONValue& value);
    void writeHeld(std::monostate null);
    void writeHeld(bool boolean);
    void writeHeld(std::integral auto integer);
    void writeHeld(double number);
    void writeHeld(const JSONBlockReference& text);
    void writeHeld(const JSONArray& array);
    void writeHeld(const JSONDictionary& dictionary);
    void writeText(std::string_view text);
    void writeMember(const JSONDictionary::Member& member, bool first);
    bool enter(char bracket);
    void leave(char bracket, bool empty);
    void startItem(bool first);
    void breakLine();
    void fail(JSONErrorCode code);

    JSONWritingOptions options_;
    Strictness strictness_;
    std::size_t depth_ = 0;
    std::string text_;
    std::optional<JSONErrorCode> failure_;
};

}  // namespace corvane::detail
