#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <Corvane/Observation/Observable.hpp>

#include "Terminal.hpp"

namespace matchday {

/// Rows of text, each an observable of its own: what is shown again is only what has changed. A terminal's whole screen
/// is used, and given back at the end; elsewhere a row that has changed becomes a line. Main thread only.
class Screen : public std::enable_shared_from_this<Screen> {
  public:
    /// The terminal has to outlive the screen.
    [[nodiscard]] static std::shared_ptr<Screen> make(Terminal& terminal);

    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Makes these the rows of the screen.
    void show(const std::vector<std::string>& rows);

    /// Paints all rows of a terminal again, which has another size.
    void repaint();

    /// How many rows were assigned, and how many of these had to be painted.
    [[nodiscard]] std::size_t assignedCount() const noexcept { return assignedCount_; }

    [[nodiscard]] std::size_t paintedCount() const noexcept { return paintedCount_; }

  private:
    explicit Screen(Terminal& terminal);

    void addRow();
    void paint(std::size_t row, const std::string& text);

    Terminal& terminal_;
    std::vector<corvane::Observable<std::string>> rows_;
    std::size_t assignedCount_ = 0;
    std::size_t paintedCount_ = 0;
};

}  // namespace matchday
