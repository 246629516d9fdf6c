#include <gtest/gtest.h>

#include "fakes/LoadedModule.h"
#include "pyxis/FormatCodecApiVersionInterface.h"

TEST(ModuleTest, EntryGivesTheOneVersionObject) {
    const fakes::LoadedModule module(KEST_MODULE);
    ASSERT_TRUE(module.isLoaded());
    using Entry = Pyxis::FormatCodecApiVersionInterface* (*)();
    const auto entry = reinterpret_cast<Entry>(module.symbol("KestMultispectralCodecApiVersion"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry()->majorVersion(), 6);
    EXPECT_EQ(entry()->minorVersion(), 0);
    EXPECT_EQ(entry(), entry());
}
