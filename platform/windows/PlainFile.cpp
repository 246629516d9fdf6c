#include <windows.h>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {
namespace {

HANDLE handleOf(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

// INVALID_HANDLE_VALUE is -1, as kNoHandle.
std::optional<PlainFile> PlainFile::open(const Pyxis::StringBuffer& path) {
    PlainFile file(reinterpret_cast<std::intptr_t>(
        CreateFileW(wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_RANDOM_ACCESS, nullptr)));
    if (file.handle_ == kNoHandle || GetFileType(handleOf(file.handle_)) != FILE_TYPE_DISK) {
        return std::nullopt;
    }
    return file;
}

PlainFile::~PlainFile() {
    if (handle_ != kNoHandle) {
        CloseHandle(handleOf(handle_));
    }
}

std::uint64_t PlainFile::size() const {
    return SetFilePointer(handleOf(handle_), 0, nullptr, FILE_END);
}

std::uint32_t PlainFile::readFromStart(void* buffer, std::uint32_t count) const {
    DWORD read = 0;
    if (SetFilePointer(handleOf(handle_), 0, nullptr, FILE_BEGIN) != 0 ||
        ReadFile(handleOf(handle_), buffer, count, &read, nullptr) == 0) {
        return 0;
    }
    return read;
}

}  // namespace kest::platform
