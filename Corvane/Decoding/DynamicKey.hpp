#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include <Corvane/Decoding/IntValue.hpp>

namespace corvane::detail {

/// A coding key for any member name of a payload's dictionary. The text it is made from must outlive it; an integer's
/// digits are its own.
class DynamicKey {
  public:
    explicit constexpr DynamicKey(std::string_view stringValue) noexcept : text_(stringValue) {}

    explicit DynamicKey(std::int64_t intValue) noexcept
        : digitCount_(static_cast<std::size_t>(
              std::to_chars(digits_.data(), digits_.data() + digits_.size(), intValue).ptr - digits_.data())) {}

    [[nodiscard]] constexpr std::string_view stringValue() const noexcept {
        return digitCount_ > 0 ? std::string_view(digits_.data(), digitCount_) : text_;
    }

    /// The integer that the text is in decimal; absent for any other text.
    [[nodiscard]] std::optional<std::int64_t> intValue() const noexcept { return corvane::intValue(stringValue()); }

  private:
    std::string_view text_;
    std::array<char, 20> digits_{};
    std::size_t digitCount_ = 0;
};

}  // namespace corvane::detail
