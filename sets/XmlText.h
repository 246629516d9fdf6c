#pragma once

#include <array>
#include <cstddef>
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

/// The first place from `from` on that is no white space, or the end of the text.
constexpr std::size_t skipSpace(std::string_view text, std::size_t from) {
    while (from < text.size() && isSpace(text[from])) {
        ++from;
    }
    return from;
}

}  // namespace kest::xml
