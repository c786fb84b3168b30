#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Options.hpp"

namespace matchday {

enum class Style { plain, strong, faint, good, bad, live };

/// Columns that `text` takes on a terminal: wide characters count two, combining ones none.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// `text` with everything replaced that a terminal would obey instead of showing: texts of strangers may contain
/// escape sequences. Line feeds go too.
[[nodiscard]] std::string printable(std::string_view text);

/// `text` cut to `columns`, with an ellipsis where something is missing.
[[nodiscard]] std::string elided(std::string_view text, std::size_t columns);

/// Standard output. Written line by line, so that what a user sees is never half a line.
class Terminal {
  public:
    explicit Terminal(ColorMode colors);

    /// Whether all that was written so far has arrived. Once a reader has gone away or the disk is full, nothing
    /// more is tried.
    [[nodiscard]] bool isWritable() const noexcept { return failure_ == 0; }

    /// The error number of the write that failed, 0 for none.
    [[nodiscard]] int failure() const noexcept { return failure_; }

    /// Columns to fill: the terminal's, 80 when standard output is something else.
    [[nodiscard]] std::size_t columns() const noexcept { return columns_; }

    [[nodiscard]] std::size_t rows() const noexcept { return rows_; }

    /// Asks for the size anew.
    void measure();

    /// Whether somebody sits there, who sees what is written and may type.
    [[nodiscard]] bool isInteractive() const noexcept { return isInteractive_; }

    [[nodiscard]] std::string styled(Style style, std::string_view text) const;

    void line(std::string_view text = {});

    /// Text without an end of line, for one who knows that it is a terminal.
    void write(std::string_view text);

  private:
    bool hasColors_;
    bool isInteractive_;
    std::size_t columns_ = 80;
    std::size_t rows_ = 24;
    int failure_ = 0;
};

}  // namespace matchday
