#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

// Character classes and cuts of XML text.

namespace kest::xml {

/// Tab, CR, LF and space.
constexpr bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

constexpr std::string_view kSpaces = " \t\r\n";

/// A set of characters that can be asked in one step.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters) {
            members_[static_cast<unsigned char>(c)] = true;
        }
    }
    constexpr bool has(char c) const { return members_[static_cast<unsigned char>(c)]; }

    /// The first place from `from` on with a member, or the end of the text.
    constexpr std::size_t find(std::string_view text, std::size_t from) const {
        constexpr std::size_t kStep = 4;  // fewer questions whether the text ends
        while (from + kStep <= text.size() && !has(text[from]) && !has(text[from + 1]) &&
               !has(text[from + 2]) && !has(text[from + 3])) {
            from += kStep;
        }
        while (from < text.size() && !has(text[from])) {
            ++from;
        }
        return from;
    }

    /// The first place from `from` on with anything else, or the end of the text.
    constexpr std::size_t skip(std::string_view text, std::size_t from) const {
        while (from < text.size() && has(text[from])) {
            ++from;
        }
        return from;
    }

  private:
    std::array<bool, 256> members_{};
};

/// A place from `from` on before which there is neither `quote`, '&', tab, CR nor LF. Long values,
/// as paths are, are passed in blocks that become vector instructions.
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

/// The first place from `from` on that is no white space, or the end of the text.
constexpr std::size_t skipSpace(std::string_view text, std::size_t from) {
    while (from < text.size() && isSpace(text[from])) {
        ++from;
    }
    return from;
}

/// The place behind a comment whose text starts at `from`; npos when its first "--" has no '>'.
constexpr std::size_t commentEnd(std::string_view text, std::size_t from) {
    const std::size_t dashes = text.find("--", from);
    return dashes != std::string_view::npos && text.substr(dashes).starts_with("-->")
               ? dashes + 3
               : std::string_view::npos;
}

/// The name, semicolon included, of the reference at the start of `text`; empty when there is none.
/// No name holds the character that starts a reference, so that many of them are passed quickly.
constexpr std::string_view referenceName(std::string_view text) {
    for (std::size_t at = 1; at < text.size() && text[at] != text[0]; ++at) {
        if (text[at] == ';') {
            return text.substr(1, at);
        }
    }
    return {};
}

}  // namespace kest::xml
