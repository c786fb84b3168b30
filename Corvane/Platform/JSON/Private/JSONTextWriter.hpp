#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <Corvane/Platform/Data.hpp>

namespace corvane::detail {

/// Writes the parts of a JSON text: who calls it sees to their order.
class JSONTextWriter {
  public:
    explicit JSONTextWriter(bool prettyPrinted) noexcept : prettyPrinted_(prettyPrinted) {}

    /// How many arrays and dictionaries are open.
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }

    /// What is written so far.
    [[nodiscard]] std::string_view written() const noexcept { return text_; }

    void writePlain(std::string_view text) { text_ += text; }

    /// The text in quotes and with the escapes it needs. Nothing is checked.
    void writeText(std::string_view text);

    void writeKey(std::string_view key) {
        writeText(key);
        text_ += prettyPrinted_ ? ": " : ":";
    }

    void open(char bracket) {
        ++depth_;
        text_ += bracket;
    }

    /// An empty array or dictionary stays on its line.
    void close(char bracket, bool empty) {
        --depth_;
        if (!empty) breakLine();
        text_ += bracket;
    }

    /// What comes before an element or a key.
    void startItem(bool first) {
        if (!first) text_ += ',';
        breakLine();
    }

    [[nodiscard]] std::string text() && { return std::move(text_); }

    /// The text as data that keeps the text's own buffer.
    [[nodiscard]] Data data() &&;

  private:
    void breakLine() {
        constexpr std::size_t blanksPerLevel = 2;
        if (!prettyPrinted_) return;
        text_ += '\n';
        text_.append(depth_ * blanksPerLevel, ' ');
    }

    bool prettyPrinted_;
    std::size_t depth_ = 0;
    std::string text_;
};

}  // namespace corvane::detail
