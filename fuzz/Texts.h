#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/Input.h"
#include "host/Text.h"
#include "pyxis/StringBuffer.h"

namespace fuzz {

/// A buffer of the bytes, in a character type that the input chooses (narrow by default), or
/// converted from UTF-8 to wide text.
inline Pyxis::StringBuffer bufferFrom(std::string_view bytes, Input& input) {
    using Pyxis::CharacterType;
    static constexpr CharacterType kTypes[] = {
        CharacterType::Narrow,     CharacterType::Wide,  CharacterType::Wide,
        CharacterType::SingleByte, CharacterType::Plain, static_cast<CharacterType>(77)};
    const std::size_t choice = input.below(std::size(kTypes));
    if (choice == 1) {
        return Pyxis::toWideBuffer(bytes);
    }
    return {static_cast<int>(bytes.size()), reinterpret_cast<const unsigned char*>(bytes.data()),
            kTypes[choice]};
}

/// The characters of a wide buffer, whose only terminator must be at its end.
inline std::u16string wellFormed(const Pyxis::StringBuffer& buffer) {
    require(buffer.type() == Pyxis::CharacterType::Wide, "the text is wide");
    require(buffer.numDataBytes() >= 2 && buffer.numDataBytes() % 2 == 0, "whole characters");
    std::u16string text(static_cast<std::size_t>(buffer.numDataBytes()) / 2, u'\0');
    std::memcpy(text.data(), buffer.data(), 2 * text.size());
    require(text.find(u'\0') == text.size() - 1, "one terminator, at the end");
    text.pop_back();
    return text;
}

}  // namespace fuzz
