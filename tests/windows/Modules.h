#pragma once

#include <windows.h>

#include <array>
#include <filesystem>

#include "host/Text.h"

/// The directory of the test program: its own module and texts are there, the shipped ones above.
inline std::filesystem::path programDirectory() {
    std::array<wchar_t, 1024> path{};
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return std::filesystem::path(path.data()).parent_path();
}

inline Pyxis::FileSpecifier specifierOf(const std::filesystem::path& path) {
    return Pyxis::fileSpecifier(Pyxis::wideToUtf8(path.u16string()));
}
