#include <gtest/gtest.h>

#include "codec/KestMultispectralCodec.h"
#include "codec/KestMultispectralFormatCodecApiVersion.h"
#include "platform/Platform.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "tests/fakes/Codecs.h"
#include "tests/windows/Modules.h"

namespace {

TEST(ModuleTest, TellsTheVersionInItsResource) {
    const KestMultispectralCodec codec;
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int build = 0;
    codec.getLibVersionInfo(major, minor, build);
    EXPECT_EQ(std::vector({major, minor, build}), std::vector({3U, 2U, 7U}));
    for (const char16_t* without : {u"no such module.dll", u"windows_tests.exe"}) {
        const kest::platform::ModuleVersion none = kest::platform::moduleVersion(without);
        EXPECT_EQ(none.major + none.minor + none.build, 0U);
    }
}

TEST(ModuleTest, IsShippedWithTheFourNumbersOfTheProject) {
    const std::wstring path = programDirectory().parent_path() / L"kestmultispectralcodec54.dll";
    std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_TRUE(
        GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* record = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &record, &size));
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(record);
    std::string version;
    for (const DWORD word : {info.dwFileVersionMS, info.dwFileVersionLS}) {
        version += std::to_string(HIWORD(word)) + "." + std::to_string(LOWORD(word)) + ".";
    }
    EXPECT_EQ(version, KEST_VERSION ".");
}

/// The program acts as the host: each side casts and frees the other's objects, and exceptions of a
/// host codec end in the module.
TEST(ModuleTest, SharesObjectsCastsAndExceptionsWithTheHost) {
    EXPECT_EQ(KestMultispectralCodecApiVersion()->majorVersion(), 6);
    fakes::World world;
    {
        fakes::NitfCodec nitf(world);
        nitf.add("C:\\data\\a.ntf", fakes::bandFrame());
        nitf.add("C:\\data/b.ntf", fakes::bandFrame());
        const KestMultispectralCodec codec;
        const Pyxis::FileSpecifier set(
            Pyxis::toWideBuffer("<s><image><component><data><file path='C:\\data\\a.ntf'/></data>"
                                "</component><component><data><file path='C:\\data/b.ntf'/></data>"
                                "</component></image></s>"),
            Pyxis::FileSpecifier::Type::Compound);
        EXPECT_EQ(codec.isDecodableFile(set, nullptr), Pyxis::FormatDecodability::Decodable);
        const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&set));
        ASSERT_EQ(image->getNumFrames(), 2);
        const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image->openFrame(1));
        const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties(
            frame->getProperties());
        int found = 0;
        for (properties->start(); !properties->endOfList(); properties->step()) {
            const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> copy(
                properties->openProperty()->clone());
            found += dynamic_cast<const KestMultispectralBandNameProperty*>(copy.get()) != nullptr;
            found += dynamic_cast<const KestMultispectralProperty*>(copy.get()) != nullptr;
            properties->closeProperty();
        }
        EXPECT_EQ(found, 1 + 4);
        world.fail = [](std::string_view) { return fakes::Fault::Throw; };
        EXPECT_EQ(image->openFrame(0), nullptr);
    }
    EXPECT_EQ(world.alive, 0);
}

}  // namespace
