#include "tool/terminal/TerminalText.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>

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

/// Control characters, line separators, direction marks and invisible characters.
constexpr std::array kEscaped = {
    Range{0x0000, 0x001F}, Range{0x007F, 0x009F}, Range{0x061C, 0x061C},   Range{0x180E, 0x180E},
    Range{0x200B, 0x200B}, Range{0x200E, 0x200F}, Range{0x2028, 0x202E},   Range{0x2060, 0x206F},
    Range{0xFEFF, 0xFEFF}, Range{0xFFF9, 0xFFFB}, Range{0xE0000, 0xE007F},
};

template <std::size_t N>
bool isIn(std::uint32_t character, const std::array<Range, N>& ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

std::size_t widthOf(char32_t character) {
    return isIn(character, kZeroWidth) ? 0 : isIn(character, kWide) ? 2 : 1;
}

/// Whether all characters are printable and one column wide, as in nearly all texts.
bool isPlain(std::string_view utf8) {
    return std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool isSurrogate(std::uint32_t character) {
    return character >= 0xD800 && character <= 0xDFFF;
}

/// Code points; an invalid byte becomes a lone surrogate U+DC80 + (byte - 0x80).
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

/// The character in UTF-16.
std::u16string units(char32_t character) {
    if (character < 0x10000) {
        return {static_cast<char16_t>(character)};
    }
    return {static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)),
            static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF))};
}

std::string encode(char32_t character) {
    return Pyxis::wideToUtf8(units(character));
}

/// As JSON escapes it.
std::string escapedUnits(char32_t character) {
    std::string text;
    for (const char16_t unit : units(character)) {
        std::array<char, 8> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\u%04x", unsigned{unit});
        text += escaped.data();
    }
    return text;
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

std::string printableJson(std::string_view json) {
    const auto isAscii = [](char c) { return c >= 0 && c < 0x7F; };
    std::string text;
    text.reserve(json.size());
    // Documents are large, and nearly all of them is ASCII.
    for (auto rest = json.begin(); rest != json.end();) {
        const auto other = std::find_if_not(rest, json.end(), isAscii);
        text.append(rest, other);
        rest = std::find_if(other, json.end(), isAscii);
        for (const char32_t character : decode({other, rest})) {
            text += isIn(character, kEscaped) ? escapedUnits(character) : encode(character);
        }
    }
    return text;
}

std::string fileMessage(const std::string& file, std::string_view reason) {
    const std::string name = file.substr(file.rfind('/') + 1);
    for (const std::string& repeated : {file, name}) {
        const std::string start = repeated + ":";
        if (!repeated.empty() && reason.starts_with(start)) {
            reason.remove_prefix(start.size());
            reason.remove_prefix(std::min(reason.find_first_not_of(' '), reason.size()));
        }
    }
    std::string line(reason);
    std::replace(line.begin(), line.end(), '\n', ' ');
    return (file.empty() ? "''" : printableName(file)) + ": " + printable(line);
}

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string text;
    for (const std::string& word : words) {
        text.append(text.empty() ? "" : separator).append(word);
    }
    return text;
}

std::size_t displayWidth(std::string_view utf8) {
    if (isPlain(utf8)) {
        return utf8.size();
    }
    std::size_t width = 0;
    for (const char32_t character : decode(utf8)) {
        width += widthOf(character);
    }
    return width;
}

namespace {

constexpr std::string_view kEllipsis = "...";

/// The end of the longest prefix that leaves room for an ellipsis.
template <typename Iterator>
Iterator fitting(Iterator begin, Iterator end, std::size_t columns) {
    std::size_t width = kEllipsis.size();
    return std::find_if(begin, end, [&](char32_t character) {
        width += widthOf(character);
        return width > columns;
    });
}

std::string textOf(std::u32string::const_iterator begin, std::u32string::const_iterator end) {
    std::string text;
    std::for_each(begin, end, [&text](char32_t character) { text += encode(character); });
    return text;
}

}  // namespace

std::string shortenedRight(std::string_view utf8, std::size_t columns) {
    if (displayWidth(utf8) <= columns) {
        return std::string(utf8);
    }
    const std::u32string characters = decode(utf8);
    return textOf(characters.begin(), fitting(characters.begin(), characters.end(), columns))
        .append(kEllipsis);
}

std::string shortenedLeft(std::string_view utf8, std::size_t columns) {
    if (displayWidth(utf8) <= columns) {
        return std::string(utf8);
    }
    const std::u32string characters = decode(utf8);
    const auto start = fitting(characters.rbegin(), characters.rend(), columns).base();
    return std::string(kEllipsis) + textOf(start, characters.end());
}

}  // namespace kestms
