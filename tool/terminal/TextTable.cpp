#include "tool/terminal/TextTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tool/terminal/TerminalText.h"

namespace kestms {
namespace {

constexpr std::string_view kGap = "  ";
/// A cut cell keeps at least this width.
constexpr std::size_t kLeastWidth = 16;

std::size_t tableWidth(const std::vector<std::size_t>& widths) {
    std::size_t sum = 0;
    std::size_t shown = 0;
    for (const std::size_t width : widths) {
        sum += width;
        shown += width > 0 ? 1 : 0;
    }
    return sum + (shown > 0 ? (shown - 1) * kGap.size() : 0);
}

}  // namespace

TextTable::TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {
    std::vector<std::string>& headings = rows_.emplace_back();
    for (const Column& column : columns_) {
        headings.push_back(column.heading);
    }
}

void TextTable::addRow(const std::vector<std::string>& cells) {
    std::vector<std::string>& row = rows_.emplace_back();
    for (const std::string& cell : cells) {
        row.push_back(printableName(cell));
    }
    row.resize(columns_.size());
}

/// The width of each column, 0 for one that is left out.
std::vector<std::size_t> TextTable::widthsFor(std::size_t columns) const {
    std::vector<std::size_t> widths(columns_.size());
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    std::vector<std::size_t> least = widths;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const Fit fit = columns_[i].fit;
        least[i] = fit == Fit::KeepEnd || fit == Fit::KeepStart ? std::min(widths[i], kLeastWidth)
                                                                : widths[i];
    }
    for (const Fit fit : {Fit::LeaveOut, Fit::LeaveOutLast}) {
        for (std::size_t i = 0; i < widths.size() && columns > 0; ++i) {
            if (tableWidth(least) > columns && columns_[i].fit == fit) {
                widths[i] = least[i] = 0;
            }
        }
    }
    for (const Fit fit : {Fit::KeepEnd, Fit::KeepStart}) {
        // The first column says what the row is about.
        for (std::size_t i = widths.size(); i-- > 0 && columns > 0;) {
            const std::size_t whole = tableWidth(widths);
            if (whole > columns && columns_[i].fit == fit) {
                widths[i] -= std::min(widths[i] - least[i], whole - columns);
            }
        }
    }
    return widths;
}

std::string TextTable::cellText(std::size_t column, const std::string& cell,
                                std::size_t width) const {
    const std::string shown = columns_[column].fit == Fit::KeepEnd ? shortenedLeft(cell, width)
                                                                   : shortenedRight(cell, width);
    const std::string padding(width - std::min(width, displayWidth(shown)), ' ');
    return columns_[column].align == Align::Right ? padding + shown : shown + padding;
}

std::string TextTable::text(std::size_t columns) const {
    const std::vector<std::size_t> widths = widthsFor(columns);
    std::string text;
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (widths[i] > 0) {
                line += line.empty() ? "" : kGap;
                line += cellText(i, row[i], widths[i]);
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kestms
