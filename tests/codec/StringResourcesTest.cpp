#include "codec/strings/StringResources.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/fakes/Resources.h"

namespace {

/// Records whether it was filled through its virtual operation.
struct FilledBuffer : Pyxis::StringBuffer {
    using StringBuffer::StringBuffer;
    void set(int numBytes, const unsigned char* data, Pyxis::CharacterType type) override {
        StringBuffer::set(numBytes, data, type);
        filled = true;
    }
    bool filled = false;
};

/// Whether the texts can be loaded at all; a failure must leave a wide terminator and no more.
bool loads() {
    FilledBuffer buffer(4, reinterpret_cast<const unsigned char*>("left"),
                        Pyxis::CharacterType::Narrow);
    const bool loaded = kest::loadResourceString(18210, buffer);
    EXPECT_TRUE(buffer.filled);
    if (!loaded) {
        EXPECT_EQ(buffer.numDataBytes(), 2);
        EXPECT_EQ(buffer.type(), Pyxis::StringBuffer::defaultCharacterType());
        EXPECT_TRUE(buffer.isZero());
    }
    return loaded;
}

std::map<unsigned int, std::string> textsOf(std::string_view language) {
    const fakes::TextsFrom module(fakes::stringModule(language));
    std::map<unsigned int, std::string> texts;
    for (unsigned int id = 18000; id < 18500; ++id) {
        if (const std::string text = fakes::text(id); !text.empty()) {
            texts[id] = text;
        }
    }
    return texts;
}

}  // namespace

TEST(StringResourcesTest, GivesEmptyTextsWithoutAModule) {
    EXPECT_FALSE(loads());
    const fakes::TextsFrom texts("/no/such/module");
    EXPECT_FALSE(loads());
}

TEST(StringResourcesTest, LoadsLateAndFollowsTheName) {
    const fakes::TextsFrom english(fakes::stringModule("en"));
    EXPECT_TRUE(loads());
    EXPECT_EQ(fakes::text(18210), "Red");
    Pyxis::StringBuffer unknown = Pyxis::toWideBuffer("left over");
    EXPECT_TRUE(kest::loadResourceString(1, unknown));
    EXPECT_TRUE(unknown.isZero());
    kest::releaseResourceModule();
    EXPECT_EQ(fakes::text(18210), "Red");
    kest::setResourceFileName(Pyxis::fileSpecifier(fakes::stringModule("de")));
    EXPECT_EQ(fakes::text(18210), "Rot");
    kest::setResourceFileName({});
    EXPECT_FALSE(loads());
}

TEST(StringResourcesTest, EveryLanguageIsComplete) {
    const std::map<unsigned int, std::string> wanted = textsOf("numbers");
    ASSERT_EQ(wanted.size(), 45U);
    for (const char* language : {"en", "de", "fr", "es", "ja"}) {
        const std::map<unsigned int, std::string> texts = textsOf(language);
        EXPECT_EQ(texts.size(), wanted.size()) << language;
        for (const auto& [id, text] : texts) {
            EXPECT_EQ(wanted.count(id), 1U) << language << id;
            EXPECT_LT(text.size(), 255U) << language << id;
            const bool pattern = id == 18105 || id == 18106;
            const std::size_t place = text.find('%');
            EXPECT_EQ(place != text.npos, pattern) << language << id;
            EXPECT_TRUE(!pattern ||
                        (text.substr(place, 2) == "%d" && text.find('%', place + 1) == text.npos))
                << language << id;
        }
        const std::set<std::string> names{texts.at(18107), texts.at(18109), texts.at(18111),
                                          texts.at(18113), texts.at(18116)};
        EXPECT_EQ(names.size(), 5U) << language;
    }
}
