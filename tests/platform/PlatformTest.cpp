#include "platform/Platform.h"

#include <gtest/gtest.h>

#include "tests/fakes/Resources.h"

namespace platform = kest::platform;

TEST(PlatformTest, SplitsNameAndExtensionOffAPath) {
    const std::u16string longPart(300, u'x');
    const std::u16string cutPart(platform::kMaxNamePart, u'x');
    const struct {
        std::u16string path, name, extension;
    } cases[] = {{u"", u"", u""},
                 {u"/data/scene_01.tif", u"scene_01", u".tif"},
                 {u"scene.tar.gz", u"scene.tar", u".gz"},
                 {u"/da.ta/scene", u"scene", u""},
                 {u"/data/.tif", u"", u".tif"},
                 {u"/data/", u"", u""},
                 {u"scene.", u"scene", u"."},
                 {u"/" + longPart + u"." + longPart, cutPart, u"." + cutPart.substr(1)}};
    for (const auto& test : cases) {
        const platform::PathName split = platform::splitPathName(test.path);
        EXPECT_EQ(split.name, test.name);
        EXPECT_EQ(split.extension, test.extension);
    }
}

TEST(PlatformTest, ReadsAPlainFileFromItsStartEveryTime) {
    const fakes::TempFile temp("plain", std::string_view("a\0\r\nb", 5));
    const auto file = platform::PlainFile::open(Pyxis::toWideBuffer(temp.path()));
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size(), 5U);
    std::string content(8, '?');
    EXPECT_EQ(file->readFromStart(content.data(), 8), 5U);
    EXPECT_EQ(content, std::string("a\0\r\nb???", 8));
    EXPECT_EQ(file->readFromStart(content.data(), 2), 2U);
    EXPECT_FALSE(platform::PlainFile::open(Pyxis::toWideBuffer("no such file")));
}

TEST(PlatformTest, LoadsAsMuchOfATextAsFits) {
    const auto module =
        platform::StringModule::load(Pyxis::toWideBuffer(fakes::stringModule("en")));
    ASSERT_TRUE(module);
    char16_t buffer[64];
    EXPECT_EQ(module->loadString(18210, buffer, 64), 3);
    EXPECT_EQ(std::u16string(buffer), u"Red");
    EXPECT_EQ(module->loadString(18210, buffer, 3), 2);
    EXPECT_EQ(std::u16string(buffer), u"Re");
    EXPECT_EQ(module->loadString(18210, buffer, 0), 0);
    EXPECT_EQ(module->loadString(1, buffer, 64), 0);
    EXPECT_EQ(buffer[0], u'\0');
}
