#include <gtest/gtest.h>
#include <sys/stat.h>

#include <stdexcept>

#include "codec/KestMultispectralCodec.h"
#include "codec/strings/BufferText.h"
#include "platform/Platform.h"
#include "platform/posix/StringTable.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "tests/fakes/Resources.h"

namespace platform = kest::platform;

TEST(PosixPlatformTest, TextsAreReleasedWithACodecAndComeAgainForTheOthers) {
    const fakes::TempFile file("texts", "18100 one");
    const fakes::TextsFrom texts(file.path());
    const KestMultispectralCodec other;
    {
        const KestMultispectralCodec codec;
        EXPECT_EQ(fakes::text(18100), "one");
        std::ofstream(file.path()) << "18100 two";
        EXPECT_EQ(fakes::text(18100), "one");
    }
    EXPECT_EQ(fakes::text(18100), "two");
}

TEST(PosixPlatformTest, ReadsTextsOfAnyContent) {
    const std::pair<std::string_view, platform::StringTable> cases[] = {
        {"", {}},
        {"# 1 comment\n1 one\n2\ttwo words\n", {{1, u"one"}, {2, u"two words"}}},
        {"\xEF\xBB\xBF"
         "1 one\r\n2  two\r\n3 last",
         {{1, u"one"}, {2, u" two"}, {3, u"last"}}},
        {"1 a\\nb\\tc\\\\n\\x\\", {{1, u"a\nb\tc\\n\\x\\"}}},
        {"1 \n2\n3,x\n 4 x\nx 5\n-6 x\n65536 x\n99999999999 x\n65535 y", {{1, u""}, {65535, u"y"}}},
        {"1 first\n1 second", {{1, u"first"}}},
        {std::string_view("1 a\0b\n\0\n2 c", 11), {{1, u"a"}, {2, u"c"}}},
        {"1 \xC3\xBC\xE8\xB5\xA4\xF0\x9F\x9B\xB0", {{1, u"\u00FC\u8D64\U0001F6F0"}}},
        {"1 \xFF\xC0\x80\xED\xA0\x80\xC3", {{1, std::u16string(7, u'\uFFFD')}}}};
    for (const auto& [file, texts] : cases) {
        EXPECT_EQ(platform::parseStringTable(file), texts) << file;
    }
}

TEST(PosixPlatformTest, OpensFilesWhoseNamesAreAnyBytes) {
    for (const char* name : {"\xC3\xBC", "\xF0\x9F\x9B\xB0", "\xFF\x80\xC3", "\xED\xA0\x80"}) {
        const fakes::TempFile file(name, "text");
        EXPECT_TRUE(platform::PlainFile::open(Pyxis::toWideBuffer(file.path()))) << name;
    }
    EXPECT_FALSE(platform::PlainFile::open({}));
}

TEST(PosixPlatformTest, OpensRegularFilesOfABoundedSizeAndNeverWaits) {
    const fakes::TempFile place("pipe", "");
    std::filesystem::remove(place.path());
    ASSERT_EQ(mkfifo(place.path().c_str(), 0600), 0);
    for (const std::string& path : {place.path(), std::string("/dev/zero"), std::string("/tmp")}) {
        const Pyxis::StringBuffer wide = Pyxis::toWideBuffer(path);
        EXPECT_FALSE(platform::PlainFile::open(wide)) << path;
        EXPECT_FALSE(platform::StringModule::load(wide)) << path;
    }
    const fakes::TempFile regular("huge", "1 one\n");
    EXPECT_TRUE(platform::StringModule::load(Pyxis::toWideBuffer(regular.path())));
    std::filesystem::resize_file(regular.path(), std::uintmax_t{8} << 20U);
    EXPECT_FALSE(platform::StringModule::load(Pyxis::toWideBuffer(regular.path())));
}

TEST(PosixPlatformTest, ReadsFilesThatGrowAndShrinkMeanwhile) {
    const fakes::TempFile temp("changing", "abcdef");
    const auto file = platform::PlainFile::open(Pyxis::toWideBuffer(temp.path()));
    ASSERT_TRUE(file);
    const auto size = static_cast<std::uint32_t>(file->size());
    std::string content(size, '?');
    std::filesystem::resize_file(temp.path(), 1000);
    EXPECT_EQ(file->readFromStart(content.data(), size), size);
    EXPECT_EQ(content, "abcdef");
    std::filesystem::resize_file(temp.path(), 2);
    EXPECT_EQ(file->readFromStart(content.data(), size), 2U);
}

// A buffer counts its bytes with an int, and the size of a file has only 32 bits.
TEST(PosixPlatformTest, TakesTextsThatABufferCanCount) {
    const fakes::TempFile temp("metadata", "abc");
    const std::pair<std::uintmax_t, int> cases[] = {
        {3, 4}, {0x7FFFFFFF, 0}, {0xFFFFFFFF, 0}, {0x100000003, 4}};
    for (const auto& [size, bytes] : cases) {
        std::filesystem::resize_file(temp.path(), size);
        const KestMultispectralMetadataTextFileProperty property(Pyxis::fileSpecifier(temp.path()));
        Pyxis::StringBuffer value;
        property.getValue(value);
        EXPECT_EQ(value.numDataBytes(), bytes) << size;
        EXPECT_EQ(property.isValid(), bytes != 0) << size;
    }
    EXPECT_THROW(kest::narrowBuffer({"", 0x7FFFFFFF}), std::length_error);
    EXPECT_THROW(kest::wideBuffer({u"", 0x3FFFFFFF}), std::length_error);
}

TEST(PosixPlatformTest, CutsTextsTo255Characters) {
    const std::string whole(255, 'x');
    const fakes::TempFile temp("long", "1 " + whole + "\n2 " + whole + "y\n");
    const fakes::TextsFrom texts(temp.path());
    EXPECT_EQ(fakes::text(1), whole);
    EXPECT_EQ(fakes::text(2), whole);
}
