#include "platform/posix/PathText.h"

#include <cstring>

#include "pyxis/StringBuffer.h"

namespace kest::platform {
namespace {

using Pyxis::CharacterType;
using Pyxis::StringBuffer;

/// The host's conversion, so that a path is the same bytes everywhere.
template <typename To, typename From>
std::basic_string<To> converted(std::basic_string_view<From> text, CharacterType fromType,
                                CharacterType toType) {
    const StringBuffer from(static_cast<int>(text.size() * sizeof(From)),
                            reinterpret_cast<const unsigned char*>(text.data()), fromType);
    StringBuffer to;
    StringBuffer::convertString(from, to, toType);
    std::basic_string<To> result(static_cast<std::size_t>(to.numDataBytes()) / sizeof(To), To());
    std::memcpy(result.data(), to.data(), result.size() * sizeof(To));
    result.pop_back();  // the terminator
    return result;
}

}  // namespace

std::string pathBytes(std::u16string_view path) {
    return converted<char>(path, CharacterType::Wide, CharacterType::Narrow);
}

std::u16string wideFromUtf8(std::string_view text) {
    return converted<char16_t>(text, CharacterType::Narrow, CharacterType::Wide);
}

}  // namespace kest::platform
