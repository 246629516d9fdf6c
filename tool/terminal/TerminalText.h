#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Text for people to read. Names come from strangers: nothing in them may steer a terminal.

namespace kestms {

/// The text with control characters, direction overrides and bytes that are no UTF-8 written as
/// escapes (`\n`, `\x1b`, `\u202e`).
std::string printable(std::string_view utf8);

/// The same for a file's name, cut after as many bytes as a path can have.
std::string printableName(std::string_view utf8);

/// The number of terminal columns that the text takes: two for East Asian wide characters, none
/// for combining marks.
std::size_t displayWidth(std::string_view utf8);

/// Rows of cells under a heading, columns aligned by display width and set apart by two blanks;
/// no row ends in blanks. Cells are escaped with `printableName`.
class TextTable {
  public:
    enum class Align { Left, Right };
    struct Column {
        std::string heading;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns);
    /// One cell a column.
    void addRow(const std::vector<std::string>& cells);
    std::string text() const;

  private:
    std::vector<Align> aligns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace kestms
