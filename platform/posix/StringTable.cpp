#include "platform/posix/StringTable.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pyxis/StringBuffer.h"

namespace kest::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string withoutEscapes(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 'n' || next == 't' || next == '\\') {
            plain.push_back(next == 'n' ? '\n' : next == 't' ? '\t' : '\\');
            ++i;
        } else {
            plain.push_back(text[i]);
        }
    }
    return plain;
}

/// UTF-8 text up to its first zero byte as 16-bit characters. The host turns an invalid byte into a
/// lone surrogate, so that paths survive; a text shows U+FFFD instead.
std::u16string decoded(const std::string& text) {
    const Pyxis::StringBuffer narrow(static_cast<int>(text.size()),
                                     reinterpret_cast<const unsigned char*>(text.data()),
                                     Pyxis::CharacterType::Narrow);
    Pyxis::StringBuffer wide;
    Pyxis::StringBuffer::convertString(narrow, wide, Pyxis::CharacterType::Wide);
    std::u16string characters(static_cast<std::size_t>(wide.numDataBytes()) / 2 - 1, u'\0');
    if (!characters.empty()) {
        std::memcpy(characters.data(), wide.data(), 2 * characters.size());
    }
    bool isPair = false;
    for (char16_t& unit : characters) {
        if (unit >= 0xDC80 && unit < 0xDD00 && !isPair) {
            unit = u'\uFFFD';
        }
        isPair = unit >= 0xD800 && unit < 0xDC00;
    }
    return characters;
}

void parseLine(std::string_view line, StringTable& table) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    std::uint16_t id = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), id);
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    if (error == std::errc() && (line.starts_with(' ') || line.starts_with('\t'))) {
        table.emplace(id, decoded(withoutEscapes(line.substr(1))));
    }
}

}  // namespace

StringTable parseStringTable(std::string_view file) {
    if (file.starts_with(kByteOrderMark)) {
        file.remove_prefix(kByteOrderMark.size());
    }
    StringTable table;
    while (!file.empty()) {
        const std::size_t length = std::min(file.find('\n'), file.size());
        parseLine(file.substr(0, length), table);
        file.remove_prefix(std::min(length + 1, file.size()));
    }
    return table;
}

}  // namespace kest::platform
