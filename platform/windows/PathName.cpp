#include <algorithm>
#include <cstdlib>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {

PathName splitPathName(std::u16string_view path) {
    const std::wstring whole = wide(path);
    // _wsplitpath_s fails when a buffer is too small, so each could hold the whole path; the parts
    // are cut afterwards.
    const std::size_t capacity = whole.size() + 1;
    std::wstring name(capacity, L'\0');
    std::wstring extension(capacity, L'\0');
    _wsplitpath_s(whole.c_str(), nullptr, 0, nullptr, 0, name.data(), capacity, extension.data(),
                  capacity);
    const auto part = [](const std::wstring& buffer) {
        const auto begin = buffer.begin();
        const std::size_t length = std::min(buffer.find(L'\0'), kMaxNamePart);
        return std::u16string(begin, begin + static_cast<std::ptrdiff_t>(length));
    };
    return {part(name), part(extension)};
}

}  // namespace kest::platform
