#pragma once

#include <string>
#include <string_view>

namespace kest::platform {

/// The text in the system's character type, which is as wide.
inline std::wstring wide(std::u16string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace kest::platform
