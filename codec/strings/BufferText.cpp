#include "codec/strings/BufferText.h"

#include <cstring>
#include <limits>
#include <stdexcept>

namespace kest {
namespace {

using Pyxis::CharacterType;
using Pyxis::StringBuffer;

StringBuffer converted(const StringBuffer& buffer, CharacterType type) {
    StringBuffer result;
    StringBuffer::convertString(buffer, result, type);
    return result;
}

template <typename Character>
std::basic_string<Character> charactersOf(const StringBuffer& buffer) {
    std::basic_string<Character> text(
        static_cast<std::size_t>(buffer.numDataBytes()) / sizeof(Character), Character());
    if (!text.empty()) {
        std::memcpy(text.data(), buffer.data(), text.size() * sizeof(Character));
    }
    if (const auto end = text.find(Character()); end != text.npos) {
        text.resize(end);
    }
    return text;
}

template <typename Character>
StringBuffer bufferOf(std::basic_string_view<Character> text, CharacterType type) {
    constexpr std::size_t kMaximumBytes = std::numeric_limits<int>::max();
    if (text.size() >= kMaximumBytes / sizeof(Character)) {
        throw std::length_error("a text that no buffer can count");
    }
    const std::basic_string<Character> terminated(text);
    return {static_cast<int>((terminated.size() + 1) * sizeof(Character)),
            reinterpret_cast<const unsigned char*>(terminated.c_str()), type};
}

}  // namespace

std::u16string wideText(const StringBuffer& buffer) {
    if (buffer.type() == CharacterType::Wide) {
        return charactersOf<char16_t>(buffer);
    }
    return charactersOf<char16_t>(converted(buffer, CharacterType::Wide));
}

std::string narrowText(const StringBuffer& buffer) {
    if (buffer.type() != CharacterType::Wide) {
        return charactersOf<char>(buffer);
    }
    return charactersOf<char>(converted(buffer, CharacterType::Narrow));
}

StringBuffer wideBuffer(std::u16string_view text) {
    return bufferOf(text, CharacterType::Wide);
}

StringBuffer narrowBuffer(std::string_view text) {
    return bufferOf(text, CharacterType::Narrow);
}

}  // namespace kest
