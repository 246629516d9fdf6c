#include "tool/terminal/TerminalText.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "host/Text.h"

namespace kestms {
namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

/// Characters of East Asian width W and F, in blocks (Unicode 15, EastAsianWidth.txt).
constexpr std::array kWide = {
    Range{0x1100, 0x115F},   Range{0x231A, 0x231B},   Range{0x23E9, 0x23EC},
    Range{0x2E80, 0x303E},   Range{0x3041, 0x33FF},   Range{0x3400, 0x4DBF},
    Range{0x4E00, 0x9FFF},   Range{0xA000, 0xA4CF},   Range{0xA960, 0xA97F},
    Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},   Range{0xFE30, 0xFE6F},
    Range{0xFF01, 0xFF60},   Range{0xFFE0, 0xFFE6},   Range{0x1F300, 0x1F64F},
    Range{0x1F680, 0x1F6FF}, Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD},
};

/// Combining marks and other characters without a width of their own.
constexpr std::array kZeroWidth = {
    Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD}, Range{0x064B, 0x065F},
    Range{0x1AB0, 0x1AFF}, Range{0x1DC0, 0x1DFF}, Range{0x200B, 0x200D}, Range{0x20D0, 0x20FF},
    Range{0x302A, 0x302D}, Range{0x3099, 0x309A}, Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F},
};

/// Controls, line separators and marks that turn the direction of the text around them.
constexpr std::array kEscaped = {
    Range{0x0000, 0x001F}, Range{0x007F, 0x009F}, Range{0x200E, 0x200F},
    Range{0x2028, 0x202E}, Range{0x2066, 0x2069}, Range{0xFEFF, 0xFEFF},
};

template <std::size_t N>
bool isIn(std::uint32_t character, const std::array<Range, N>& ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

/// Whether all characters are shown as they are and one column wide, as nearly all are.
bool isPlain(std::string_view utf8) {
    return std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool isSurrogate(std::uint32_t character) {
    return character >= 0xD800 && character <= 0xDFFF;
}

/// Code points; a byte that is no UTF-8 is a lone surrogate U+DC80 + (byte - 0x80).
std::u32string decode(std::string_view utf8) {
    const std::u16string wide = Pyxis::utf8ToWide(utf8);
    std::u32string characters;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const bool pair =
            (wide[i] & 0xFC00) == 0xD800 && i + 1 < wide.size() && (wide[i + 1] & 0xFC00) == 0xDC00;
        if (pair) {
            const auto high = static_cast<std::uint32_t>(wide[i] & 0x3FF);
            const auto low = static_cast<std::uint32_t>(wide[++i] & 0x3FF);
            characters.push_back(static_cast<char32_t>(0x10000 + (high << 10) + low));
        } else {
            characters.push_back(wide[i]);
        }
    }
    return characters;
}

std::string escape(std::uint32_t character) {
    switch (character) {
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            break;
    }
    std::array<char, 16> text{};
    const bool rawByte = isSurrogate(character);
    const std::uint32_t shown = rawByte ? character & 0xFF : character;
    std::snprintf(text.data(), text.size(), shown < 0x100 ? "\\x%02x" : "\\u%04x", shown);
    return text.data();
}

std::string encode(char32_t character) {
    if (character < 0x10000) {
        const auto unit = static_cast<char16_t>(character);
        return Pyxis::wideToUtf8({&unit, 1});
    }
    const std::array<char16_t, 2> units = {
        static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)),
        static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF))};
    return Pyxis::wideToUtf8({units.data(), units.size()});
}

}  // namespace

std::string printable(std::string_view utf8) {
    if (isPlain(utf8)) {
        return std::string(utf8);
    }
    std::string text;
    for (const char32_t character : decode(utf8)) {
        text += isIn(character, kEscaped) || isSurrogate(character) ? escape(character)
                                                                    : encode(character);
    }
    return text;
}

std::string printableName(std::string_view utf8) {
    return utf8.size() <= PATH_MAX ? printable(utf8) : printable(utf8.substr(0, PATH_MAX)) + "...";
}

std::size_t displayWidth(std::string_view utf8) {
    if (isPlain(utf8)) {
        return utf8.size();
    }
    std::size_t width = 0;
    for (const char32_t character : decode(utf8)) {
        width += isIn(character, kZeroWidth) ? 0 : isIn(character, kWide) ? 2 : 1;
    }
    return width;
}

TextTable::TextTable(std::vector<Column> columns) {
    std::vector<std::string> headings;
    for (Column& column : columns) {
        aligns_.push_back(column.align);
        headings.push_back(std::move(column.heading));
    }
    rows_.push_back(std::move(headings));
}

void TextTable::addRow(const std::vector<std::string>& cells) {
    std::vector<std::string>& row = rows_.emplace_back();
    for (const std::string& cell : cells) {
        row.push_back(printableName(cell));
    }
    row.resize(aligns_.size());
}

std::string TextTable::text() const {
    std::vector<std::size_t> widths(aligns_.size());
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    std::string text;
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - displayWidth(row[i]), ' ');
            line += i == 0 ? "" : "  ";
            line += aligns_[i] == Align::Right ? padding + row[i] : row[i] + padding;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kestms
