#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

namespace corvane {

/// Reads the fields of a date from the front of a text. What fails to be read gives `none`, or false.
class DateTextReader {
  public:
    /// What is no number that a text can have.
    static constexpr unsigned none = std::numeric_limits<unsigned>::max();

    explicit DateTextReader(std::string_view text) noexcept : at_(text.data()), end_(text.data() + text.size()) {}

    [[nodiscard]] bool isAtEnd() const noexcept { return at_ == end_; }

    [[gnu::always_inline]] bool skip(std::string_view literal) noexcept {
        if (left() < literal.size()) return false;
        for (std::size_t place = 0; place < literal.size(); ++place) {
            if (at_[place] != literal[place]) return false;
        }
        at_ += literal.size();
        return true;
    }

    /// Exactly two digits.
    [[gnu::always_inline]] unsigned two() noexcept {
        if (left() < 2) return none;
        const unsigned tens = digit(0);
        const unsigned ones = digit(1);
        at_ += 2;
        return std::max(tens, ones) > 9 ? none : 10 * tens + ones;
    }

    /// Exactly `width` digits.
    [[gnu::always_inline]] unsigned digits(std::size_t width) noexcept {
        if (left() < width) return none;
        unsigned number = 0;
        unsigned greatest = 0;
        for (std::size_t place = 0; place < width; ++place) {
            greatest = std::max(greatest, digit(place));
            number = 10 * number + digit(place);
        }
        at_ += width;
        return greatest > 9 ? none : number;
    }

    /// As many digits as there are, `most` of them at most.
    unsigned digitsUpTo(std::size_t most) noexcept {
        std::size_t width = 0;
        while (width < most && width < left() && digit(width) <= 9)
            ++width;
        return width == 0 ? none : digits(width);
    }

    /// Whether this comes next, in whatever case ASCII letters are.
    [[nodiscard]] bool isAt(std::string_view name) const noexcept {
        if (left() < name.size()) return false;
        for (std::size_t place = 0; place < name.size(); ++place) {
            if (lowerCase(at_[place]) != lowerCase(name[place])) return false;
        }
        return true;
    }

    /// Passes over what `isAt` found.
    void advance(std::size_t length) noexcept { at_ += length; }

  private:
    [[nodiscard]] std::size_t left() const noexcept { return static_cast<std::size_t>(end_ - at_); }

    static constexpr char lowerCase(char c) noexcept {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }

    /// More than nine for what is no digit.
    [[nodiscard]] unsigned digit(std::size_t place) const noexcept {
        return static_cast<unsigned char>(at_[place]) - unsigned{'0'};
    }

    const char* at_;
    const char* end_;
};

}  // namespace corvane
