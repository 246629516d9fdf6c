#include <gtest/gtest.h>

#include "bands/MetadataTextFile.h"
#include "bands/NamingScheme.h"
#include "bands/ReferenceName.h"
#include "tests/fakes/Sets.h"

namespace {

Pyxis::FileSpecifier setStartingWith(const std::string& path) {
    return fakes::setOf({path, "/data/po_9_red_00.tif"});
}

}  // namespace

TEST(NamesTest, ReferenceNameComesFromTheFirstComponent) {
    const struct {
        int scheme;
        std::string path, name;
    } cases[] = {{0, "/img/north.tif", "left over"},
                 {9, "/img/north.tif", "left over"},
                 {1, "/img/North.tif", "North"},
                 {7, "/img/po_1_red_0.tif", "po_1_red_0"},
                 {8, "/img/a.b.ntf", "a.b"},
                 {2, "scene_01", "scene"},
                 {2, "scene_B01", "scene"},
                 {2, "scene_b01", "scene"},
                 {2, "scene01", "scene"},
                 {2, "sceneB01", "sceneB"},
                 {2, "x_01", "x"},
                 {2, "_01", "_"},
                 {2, "_B01", "_B"},
                 {2, "a_B01", "a"},
                 {2, "01", "01"},
                 {2, "1", "1"},
                 {2, "/.tif", ""},
                 {3, "/d/po_123456_red_0000000.tif", "PO_123456"},
                 {4, "po__nir_", "PO_"},
                 {3, "po", "PO"},
                 {5, "l71026029_02920000609_b10.tif", "L71026029_02920000609"},
                 {6, "l7", "L7"}};
    for (const auto& test : cases) {
        Pyxis::StringBuffer name = Pyxis::toWideBuffer("left over");
        kest::getReferenceName(test.scheme, setStartingWith(test.path), name);
        EXPECT_EQ(Pyxis::toUtf8(name), test.name) << test.scheme << ' ' << test.path;
        EXPECT_EQ(name.numDataBytes(), static_cast<int>((test.name.size() + 1) * 2));
        Pyxis::StringBuffer plain = Pyxis::toWideBuffer("left over");
        kest::getReferenceName(test.scheme, Pyxis::fileSpecifier(test.path), plain);
        EXPECT_TRUE(plain == name) << test.path;
    }
}

TEST(NamesTest, MetadataTextFileIsNamedByTheOrderNumber) {
    const std::string longRun(250, '7');
    const struct {
        std::string path, name;
    } cases[] = {{"/data/po_123456_red_0000000.tif", "po_123456_metadata.txt"},
                 {"PO_7_PAN_", "PO_7_metadata.txt"},
                 {"/data/po__red_.tif", "po__metadata.txt"},
                 {"po_" + longRun + "_red_0", "po_" + longRun + "_m"},
                 {"/data/po_123456.tif", "/left/over"},
                 {"po_", "/left/over"},
                 {"po", "/left/over"},
                 {"l71026029_02920000609_b10", "/left/over"},
                 {"", "/left/over"}};
    for (const auto& test : cases) {
        for (const bool plain : {false, true}) {
            Pyxis::FileSpecifier file = Pyxis::fileSpecifier("/left/over");
            kest::getMetadataTextFile(
                plain ? Pyxis::fileSpecifier(test.path) : setStartingWith(test.path), file);
            EXPECT_EQ(Pyxis::toUtf8(file.string()), test.name);
            EXPECT_EQ(file.type(), Pyxis::FileSpecifier::Type::PlainFile);
        }
    }
}
