#include <mbstring.h>

#include "platform/Platform.h"

namespace kest::platform {

int compareMultibyte(const unsigned char* left, const unsigned char* right) {
    return _mbscmp(left, right);
}

}  // namespace kest::platform
