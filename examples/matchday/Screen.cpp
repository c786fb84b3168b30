#include "Screen.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace matchday {

using corvane::ObservableOption;

std::shared_ptr<Screen> Screen::make(Terminal& terminal) {
    return std::shared_ptr<Screen>(new Screen(terminal));
}

Screen::Screen(Terminal& terminal) : terminal_(terminal) {
    // The alternate screen, without a cursor and without wrapping lines.
    if (terminal_.isInteractive()) terminal_.write("\033[?1049h\033[?25l\033[?7l\033[2J");
}

Screen::~Screen() {
    if (terminal_.isInteractive()) terminal_.write("\033[?7h\033[?25h\033[?1049l");
}

void Screen::show(const std::vector<std::string>& rows) {
    while (rows_.size() < rows.size())
        addRow();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        ++assignedCount_;
        rows_[i].setValue(i < rows.size() ? rows[i] : std::string());
    }
}

void Screen::repaint() {
    if (!terminal_.isInteractive()) return;
    terminal_.write("\033[2J");
    for (std::size_t i = 0; i < rows_.size(); ++i)
        paint(i + 1, rows_[i].value());
}

void Screen::addRow() {
    rows_.emplace_back(std::string());
    rows_.back().addObserver(
        shared_from_this(), ObservableOption::changed,
        [this, row = rows_.size()](const std::string& text, ObservableOption) { paint(row, text); });
}

void Screen::paint(std::size_t row, const std::string& text) {
    ++paintedCount_;
    if (!terminal_.isInteractive()) {
        if (!text.empty()) terminal_.line(text);
    } else if (row <= terminal_.rows()) {
        terminal_.write(fmt::format("\033[{};1H{}\033[K", row, text));
    }
}

}  // namespace matchday
