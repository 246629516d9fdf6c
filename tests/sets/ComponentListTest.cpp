#include "sets/ComponentList.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/Text.h"

namespace {

using Pyxis::CharacterType;
using Pyxis::FileSpecifier;
using Pyxis::StringBuffer;

FileSpecifier compound(std::string_view text, CharacterType type = CharacterType::Narrow) {
    return {StringBuffer(static_cast<int>(text.size()),
                         reinterpret_cast<const unsigned char*>(text.data()), type),
            FileSpecifier::Type::Compound};
}

std::string textOf(const FileSpecifier& spec) {
    return Pyxis::toUtf8(spec.string());
}

/// "path#frame" as a component leaves them, after a "-" when it cannot be read.
std::string component(const FileSpecifier& spec, int index) {
    FileSpecifier file = Pyxis::fileSpecifier("kept");
    int frame = 77;
    const bool read = kest::getComponent(spec, index, file, frame);
    return (read ? "" : "-") + textOf(file) + '#' + std::to_string(frame);
}

TEST(ComponentListTest, AppendsAndReadsBack) {
    FileSpecifier spec;
    kest::ComponentListBuilder builder;
    const std::string_view paths[] = {
        "/a/b.tif", "/\xC3\xA4/\xE6\x97\xA5\xF0\x9F\x9B\xB0 &<\"\n.tif", "/bytes\xFF\x80.tif"};
    for (int frame = 0; const std::string_view path : paths) {
        kest::appendComponent(Pyxis::fileSpecifier(path), frame, spec);
        builder.append(Pyxis::fileSpecifier(path), frame);
        frame += 12;
    }
    EXPECT_EQ(kest::countComponents(spec), 3);
    EXPECT_EQ(component(spec, 0), "/a/b.tif#0");
    EXPECT_EQ(component(spec, 1), std::string(paths[1]) + "#12");
    EXPECT_EQ(component(spec, 2), std::string(paths[2]) + "#24");
    EXPECT_EQ(component(spec, 3), "-kept#77");
    EXPECT_TRUE(builder.specifier().isEqual(spec));
}

TEST(ComponentListTest, WritesOneLineWithoutAnythingElse) {
    FileSpecifier spec(Pyxis::toWideBuffer("<x>"), FileSpecifier::Type::PlainFile);
    kest::appendComponent(Pyxis::fileSpecifier("a.tif"), 12, spec);
    EXPECT_EQ(textOf(spec),
              "<storage version=\"1.00\"><image><component><data><file path=\"a.tif\" "
              "frame=\"12\"></file></data></component></image></storage>");
}

TEST(ComponentListTest, LeavesTextsThatHoldNoListAlone) {
    for (const std::string_view text : {"not XML at all", "<storage></storage>"}) {
        FileSpecifier spec = compound(text);
        kest::appendComponent(Pyxis::fileSpecifier("a.tif"), 0, spec);
        EXPECT_EQ(textOf(spec), text);
        EXPECT_EQ(kest::countComponents(spec), 0);
        EXPECT_EQ(component(spec, 0), "-kept#77");
    }
}

TEST(ComponentListTest, KeepsTheFirstTextBesideAListOnlyWhenAnEntityMadeItLonger) {
    for (const auto& [before, written] :
         {std::pair("x", ""), std::pair("x&amp;y", ""), std::pair("x&lt;y", "x&lt;y")}) {
        FileSpecifier spec = compound("<s>" + std::string(before) + "<image/>z</s>");
        kest::appendComponent(Pyxis::fileSpecifier("a"), 0, spec);
        EXPECT_EQ(textOf(spec), "<s>" + std::string(written) +
                                    "<image><component><data><file path=\"a\" frame=\"0\"></file>"
                                    "</data></component></image>z</s>");
    }
}

TEST(ComponentListTest, AppendsBehindTheTextOfAList) {
    FileSpecifier spec = compound(
        "<a>\n<image>\n  <component/>\n  <note/>\n  <component/>\n  <note/>\n</image>\n</a>");
    kest::appendComponent(Pyxis::fileSpecifier("a.tif"), 0, spec);
    EXPECT_EQ(component(spec, 2), "a.tif#0") << textOf(spec);
}

TEST(ComponentListTest, CountsPlainSpecifiersAsOneComponentThatCannotBeRead) {
    EXPECT_EQ(kest::countComponents(FileSpecifier()), 0);
    EXPECT_EQ(kest::countComponents(Pyxis::fileSpecifier("a.tif")), 1);
    EXPECT_EQ(component(Pyxis::fileSpecifier("a.tif"), 0), "-kept#77");
}

TEST(ComponentListTest, ReadsLeniently) {
    const struct {
        std::string_view inside;  ///< between the tags of the image element
        int index;
        std::string_view component;
    } cases[] = {
        {"<component><data><file path='p'/></data></component>", 0, "p#0"},
        {"<component><data><file path='p' frame='abc'/></data></component>", 0, "p#0"},
        {"<component><data><file path='p' frame=' 7x'/></data></component>", 0, "p#7"},
        {"<component><data><file path='p' frame='-3'/></data></component>", 0, "p#-3"},
        {"<component><data><file path='p' frame='+4'/></data></component>", 0, "p#4"},
        {"<component><data><file path='p' frame='+-5'/></data></component>", 0, "p#0"},
        {"<component><data><file path='p' frame='99999999999'/></data></component>", 0,
         "p#2147483647"},
        // The frame is reset where there is no path, but nothing is where there is no file.
        {"<component><data><file frame='2'/></data></component>", 0, "-kept#0"},
        {"<component><data/></component>", 0, "-kept#77"},
        {"<x/><component/><component><y/><data><z/><file path='p'/></data></component>", 1, "p#0"},
        {"<component><data/><data><file path='p'/></data></component>", 0, "-kept#77"},
        // A negative index asks the first component element itself.
        {"<component path='odd'/>", -1, "odd#0"},
        {"", -1, "-kept#77"},
    };
    for (const auto& each : cases) {
        const std::string text = "<any><image>" + std::string(each.inside) + "</image></any>";
        EXPECT_EQ(component(compound(text), each.index), each.component) << each.inside;
    }
}

TEST(ComponentListTest, ReadsATruncatedListAsFarAsItGoes) {
    const std::string text =
        "<storage><image><component><data><file path='1'/></data></component>"
        "<component><data><file path='2'/></data></compo";
    EXPECT_EQ(kest::countComponents(compound(text)), 2);
    EXPECT_EQ(component(compound(text), 1), "2#0");
    const std::u16string wide = Pyxis::utf8ToWide(text);
    const std::string_view bytes(reinterpret_cast<const char*>(wide.data()), 2 * wide.size() - 1);
    EXPECT_EQ(component(compound(bytes, CharacterType::Wide), 1), "2#0");
}

TEST(ComponentListTest, ReadsUtf16InAnyBuffer) {
    const std::u16string wide = Pyxis::utf8ToWide(
        "\xEF\xBB\xBF<s><image><component><data><file path='\xC3\xA4' "
        "frame='3'/></data></component>"
        "</image></s>");
    std::string bytes(reinterpret_cast<const char*>(wide.data()), 2 * wide.size());
    for (const CharacterType type :
         {CharacterType::Plain, CharacterType::Narrow, CharacterType::Wide}) {
        FileSpecifier spec = compound(bytes, type);
        EXPECT_EQ(component(spec, 0), "\xC3\xA4#3");
        kest::appendComponent(Pyxis::fileSpecifier("b.tif"), 0, spec);
        EXPECT_EQ(component(spec, 0) + component(spec, 1), "\xC3\xA4#3b.tif#0");
    }
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
    EXPECT_EQ(component(compound(bytes), 0), "\xC3\xA4#3");
}

}  // namespace
