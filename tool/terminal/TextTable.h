#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kestms {

/// Rows of cells under a heading, with columns aligned by display width and separated by two
/// blanks; no row ends in blanks. Cells are escaped with `printableName`.
class TextTable {
  public:
    enum class Align { Left, Right };
    /// How a column shrinks when the table is too wide.
    enum class Fit {
        Whole,
        KeepEnd,       ///< paths: cells lose their beginning
        KeepStart,     ///< cells lose their end, after those above, the rightmost column first
        LeaveOut,      ///< removed before cells are cut, the leftmost of its kind first
        LeaveOutLast,  ///< the same, after all of those
    };
    struct Column {
        std::string heading;
        Align align = Align::Left;
        Fit fit = Fit::Whole;
    };

    explicit TextTable(std::vector<Column> columns);
    /// One cell a column.
    void addRow(const std::vector<std::string>& cells);
    /// The table, fitted to a width in terminal columns if possible; 0 for any width.
    std::string text(std::size_t columns = 0) const;

  private:
    std::vector<std::size_t> widthsFor(std::size_t columns) const;
    std::string cellText(std::size_t column, const std::string& cell, std::size_t width) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace kestms
