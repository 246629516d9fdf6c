#pragma once

#include <string>
#include <string_view>

#include "pyxis/StringBuffer.h"

namespace kest::platform {

/// The text in the system's character type, which is as wide.
inline std::wstring wide(std::u16string_view text) {
    return {text.begin(), text.end()};
}

/// The same for a buffer of any type.
inline std::wstring wide(const Pyxis::StringBuffer& text) {
    Pyxis::StringBuffer characters;
    Pyxis::StringBuffer::convertString(text, characters, Pyxis::CharacterType::Wide);
    return reinterpret_cast<const wchar_t*>(characters.data());
}

}  // namespace kest::platform
