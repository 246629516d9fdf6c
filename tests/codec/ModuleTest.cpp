#include <gtest/gtest.h>

#include "pyxis/FormatCodecApiVersionInterface.h"
#include "tests/fakes/Paths.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace {

/// A symbol of a module, which stays loaded; null when there is none.
void* symbolOf(const char* path, const char* name) {
#if defined(_WIN32)
    return reinterpret_cast<void*>(GetProcAddress(LoadLibraryA(path), name));
#else
    void* module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    return module == nullptr ? nullptr : dlsym(module, name);
#endif
}

}  // namespace

TEST(ModuleTest, EntryGivesTheOneVersionObject) {
    using Entry = Pyxis::FormatCodecApiVersionInterface* (*)();
    const auto entry =
        reinterpret_cast<Entry>(symbolOf(fakes::kModule, "KestMultispectralCodecApiVersion"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry()->majorVersion(), 6);
    EXPECT_EQ(entry()->minorVersion(), 0);
    EXPECT_EQ(entry(), entry());
}
