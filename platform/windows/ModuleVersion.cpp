#include <windows.h>

#include <array>
#include <vector>

#include "platform/Platform.h"
#include "platform/windows/WideText.h"

namespace kest::platform {

ModuleVersion moduleVersion(const char16_t* moduleFileName) {
    HMODULE module = GetModuleHandleW(wide(moduleFileName).c_str());
    if (module == nullptr) {
        return {};  // a null handle would mean the host's program
    }
    std::array<wchar_t, MAX_PATH> path{};
    const DWORD length = GetModuleFileNameW(module, path.data(), MAX_PATH);
    if (length == 0 || length == MAX_PATH) {
        return {};
    }
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.data(), &ignored);
    std::vector<char> block(size);
    void* record = nullptr;
    UINT recordSize = 0;
    if (size == 0 || GetFileVersionInfoW(path.data(), 0, size, block.data()) == 0 ||
        VerQueryValueW(block.data(), L"\\", &record, &recordSize) == 0 ||
        recordSize < sizeof(VS_FIXEDFILEINFO)) {
        return {};
    }
    const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(record);
    return {HIWORD(version.dwFileVersionMS), LOWORD(version.dwFileVersionMS),
            HIWORD(version.dwFileVersionLS)};
}

}  // namespace kest::platform
