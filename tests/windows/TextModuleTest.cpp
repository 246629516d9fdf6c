#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "codec/KestMultispectralCodec.h"
#include "platform/Platform.h"
#include "platform/posix/StringTable.h"
#include "tests/windows/Modules.h"

namespace {

namespace fs = std::filesystem;

TEST(TextModuleTest, CutsAt255CharactersAndSwitchesWhileLoaded) {
    KestMultispectralCodec codec;
    Pyxis::StringBuffer text;
    const auto name = [&] {
        codec.getFormatName(text);
        return Pyxis::toUtf8(text);
    };
    const fs::path copy = fs::temp_directory_path() / L"kest \u65e5\u672c.dll";
    fs::copy_file(programDirectory() / "long.dll", copy, fs::copy_options::overwrite_existing);
    EXPECT_EQ(name(), "");
    codec.setResourceFileName(specifierOf(copy));
    EXPECT_EQ(name(), std::string(255, 'a'));
    codec.getDescriptionText(text);
    EXPECT_EQ(Pyxis::toUtf8(text), std::string(255, 'a'));
    codec.getCopyrightText(text);
    EXPECT_EQ(text.numDataBytes(), 2);  // no such text
    codec.setResourceFileName(specifierOf(programDirectory() / "other.dll"));
    EXPECT_EQ(name(), "other \"text\" [1;2]");
    EXPECT_TRUE(fs::remove(copy));  // the first one is no longer in use
    codec.setResourceFileName(specifierOf(copy));
    EXPECT_EQ(name(), "");
}

TEST(TextModuleTest, HoldsEveryTextOfItsLanguage) {
    int languages = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(KEST_RESOURCES)) {
        const fs::path name = entry.path().stem().concat(".dll");
        const std::u16string path = (programDirectory().parent_path() / name).u16string();
        const auto module =
            kest::platform::StringModule::load(Pyxis::toWideBuffer(Pyxis::wideToUtf8(path)));
        ASSERT_TRUE(module) << name;
        std::ostringstream file;
        file << std::ifstream(entry.path()).rdbuf();
        const auto texts = kest::platform::parseStringTable(file.str());  // as the other system
        EXPECT_GE(texts.size(), 30U) << name;
        for (const auto& [id, text] : texts) {
            std::array<char16_t, 256> buffer{};
            EXPECT_EQ(module->loadString(id, buffer.data(), 256), static_cast<int>(text.size()));
            EXPECT_EQ(std::u16string(buffer.data()), text) << name << " " << id;
        }
        ++languages;
    }
    EXPECT_GE(languages, 2);
}

}  // namespace
