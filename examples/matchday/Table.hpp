#pragma once

#include <string>
#include <vector>

#include "Terminal.hpp"

namespace matchday {

/// Rows of cells in columns that are as wide as their widest cell.
class Table {
  public:
    enum class Alignment { left, center, right };

    struct Column {
        std::string title;
        Alignment alignment = Alignment::left;
    };

    struct Cell {
        std::string text;
        Style style = Style::plain;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}

    /// Adds a row, one cell per column.
    void add(std::vector<Cell> row) { rows_.push_back(std::move(row)); }

    /// Prints the titles and the rows.
    void print(Terminal& terminal) const;

    /// The lines that `print` prints, styled for the terminal.
    [[nodiscard]] std::vector<std::string> lines(const Terminal& terminal) const;

  private:
    std::vector<Column> columns_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace matchday
