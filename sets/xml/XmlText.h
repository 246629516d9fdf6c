#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

// Character classes and searches in XML text.

namespace kest::xml {

/// Tab, CR, LF and space.
constexpr bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

constexpr std::string_view kSpaces = " \t\r\n";

/// A set of characters with constant-time lookup.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters) {
            members_[static_cast<unsigned char>(c)] = true;
        }
    }
    constexpr bool has(char c) const { return members_[static_cast<unsigned char>(c)]; }

    /// Position of the first member at or after `from`, or the end of the text.
    constexpr std::size_t find(std::string_view text, std::size_t from) const {
        constexpr std::size_t kStep = 4;  // fewer checks for the end
        while (from + kStep <= text.size() && !has(text[from]) && !has(text[from + 1]) &&
               !has(text[from + 2]) && !has(text[from + 3])) {
            from += kStep;
        }
        while (from < text.size() && !has(text[from])) {
            ++from;
        }
        return from;
    }

    /// Position of the first other character at or after `from`, or the end of the text.
    constexpr std::size_t skip(std::string_view text, std::size_t from) const {
        while (from < text.size() && has(text[from])) {
            ++from;
        }
        return from;
    }

  private:
    std::array<bool, 256> members_{};
};

/// A position at or after `from` before which there is no `quote`, '&', tab, CR or LF. Long values,
/// such as paths, are skipped in blocks that become vector instructions.
inline std::size_t skipPlain(std::string_view text, std::size_t from, char quote) {
    constexpr std::size_t kBlock = 16;
    while (from + kBlock <= text.size()) {
        std::array<unsigned char, kBlock> block{};
        std::memcpy(block.data(), text.data() + from, kBlock);
        unsigned char marks = 0;
        for (const unsigned char c : block) {
            const bool isMark = c < ' ' || c == static_cast<unsigned char>(quote) || c == '&';
            marks = static_cast<unsigned char>(marks | static_cast<unsigned char>(isMark));
        }
        if (marks != 0) {
            break;
        }
        from += kBlock;
    }
    return from;
}

/// Position of the first character at or after `from` that is not white space, or the end of the
/// text.
constexpr std::size_t skipSpace(std::string_view text, std::size_t from) {
    while (from < text.size() && isSpace(text[from])) {
        ++from;
    }
    return from;
}

/// Position past a comment whose text starts at `from`; npos when no '>' follows its first "--".
constexpr std::size_t commentEnd(std::string_view text, std::size_t from) {
    const std::size_t dashes = text.find("--", from);
    return dashes != std::string_view::npos && text.substr(dashes).starts_with("-->")
               ? dashes + 3
               : std::string_view::npos;
}

/// The name, semicolon included, of the reference at the start of `text`; empty when there is none.
/// A name never contains the character that starts a reference, so long runs of it stay cheap.
constexpr std::string_view referenceName(std::string_view text) {
    for (std::size_t at = 1; at < text.size() && text[at] != text[0]; ++at) {
        if (text[at] == ';') {
            return text.substr(1, at);
        }
    }
    return {};
}

}  // namespace kest::xml
