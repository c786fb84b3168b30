#include "Table.hpp"

#include <algorithm>
#include <utility>

namespace matchday {
namespace {

constexpr std::string_view indent = "  ";
constexpr std::string_view gap = "  ";

std::string blanks(std::size_t count) {
    return std::string(count, ' ');
}

}  // namespace

void Table::print(Terminal& terminal) const {
    for (const std::string& line : lines(terminal))
        terminal.line(line);
}

std::vector<std::string> Table::lines(const Terminal& terminal) const {
    std::vector<std::string> lines;
    std::vector<std::size_t> widths;
    std::vector<Cell> titles;
    for (const Column& column : columns_) {
        std::size_t width = displayWidth(column.title);
        for (const auto& row : rows_)
            width = std::max(width, displayWidth(row[widths.size()].text));
        widths.push_back(width);
        titles.push_back({column.title, Style::faint});
    }

    const auto addRow = [&](const std::vector<Cell>& row) {
        std::string line;
        std::size_t pending = 0;  // Blanks wait for something to follow them: no line ends in blanks.
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            const std::size_t free = widths[i] - displayWidth(row[i].text);
            std::size_t before = 0;
            if (columns_[i].alignment == Alignment::right) before = free;
            if (columns_[i].alignment == Alignment::center) before = free / 2;
            pending += (i == 0 ? indent : gap).size() + before;
            if (!row[i].text.empty()) {
                line += blanks(std::exchange(pending, 0)) + terminal.styled(row[i].style, row[i].text);
                pending = free - before;
            } else {
                pending += free - before;
            }
        }
        lines.push_back(std::move(line));
    };
    addRow(titles);
    for (const auto& row : rows_)
        addRow(row);
    return lines;
}

}  // namespace matchday
