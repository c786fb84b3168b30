#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace corvane::detail {

/// Where a walk through the tokens of a document stands. A token is a bracket, a colon, a comma, or the first character
/// of a text or of another scalar; `JSONStructure` finds them. Small, so that a walk keeps its own on the stack, where
/// the compiler can leave it in registers.
class JSONTokens {
  public:
    /// `offsets` are the positions of `count` tokens in `text`, behind them that of the text's end. Some bytes behind
    /// the text may be read (`Data::padding`).
    JSONTokens(std::string_view text, const std::uint32_t* offsets, std::size_t count) noexcept
        : text_(text.data()), first_(offsets), at_(offsets), end_(offsets + count) {}

    [[nodiscard]] bool isAtEnd() const noexcept { return at_ == end_; }

    /// How many tokens there are from here on.
    [[nodiscard]] std::size_t left() const noexcept { return static_cast<std::size_t>(end_ - at_); }

    [[nodiscard]] std::size_t count() const noexcept { return static_cast<std::size_t>(end_ - first_); }

    [[nodiscard]] std::uint32_t position() const noexcept { return static_cast<std::uint32_t>(at_ - first_); }

    void moveTo(std::uint32_t position) noexcept { at_ = first_ + position; }

    void pass(std::size_t tokens = 1) noexcept { at_ += tokens; }

    void stepBack() noexcept { --at_; }

    /// The token's first character, zero behind the last token.
    [[nodiscard]] char peek() const noexcept { return at_ != end_ ? text_[*at_] : '\0'; }

    /// The first character of the token behind this one, which must not be the last.
    [[nodiscard]] char peekNext() const noexcept { return text_[at_[1]]; }

    /// The first character of the token that was at `position`.
    [[nodiscard]] char at(std::uint32_t position) const noexcept { return text_[first_[position]]; }

    [[nodiscard]] bool take(char character) noexcept {
        if (peek() != character) return false;
        ++at_;
        return true;
    }

    /// Where the token begins in the text; behind the last one, where the text ends.
    [[nodiscard]] std::uint32_t offset() const noexcept { return *at_; }

    [[nodiscard]] const char* begin() const noexcept { return text_ + *at_; }

    /// Where the token ends at the latest: where the next one begins.
    [[nodiscard]] const char* limit() const noexcept { return text_ + at_[1]; }

  private:
    const char* text_;
    const std::uint32_t* first_;
    const std::uint32_t* at_;
    const std::uint32_t* end_;
};

}  // namespace corvane::detail
