#include <algorithm>
#include <cstring>

#include "platform/Platform.h"

namespace kest::platform {

PathName splitPathName(std::u16string_view path) {
    const std::u16string_view file = path.substr(path.rfind(u'/') + 1);
    const std::size_t dot = std::min(file.rfind(u'.'), file.size());
    return {std::u16string(file.substr(0, std::min(dot, kMaxNamePart))),
            std::u16string(file.substr(dot, kMaxNamePart))};
}

// Shared objects have no version resource: the build defines the numbers.
ModuleVersion moduleVersion(const char16_t* /*moduleFileName*/) {
    return {KEST_VERSION_MAJOR, KEST_VERSION_MINOR, KEST_VERSION_BUILD};
}

int compareMultibyte(const unsigned char* left, const unsigned char* right) {
    return std::strcmp(reinterpret_cast<const char*>(left), reinterpret_cast<const char*>(right));
}

}  // namespace kest::platform
