#include "bands/NamingScheme.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/fakes/Codecs.h"
#include "tests/fakes/Sets.h"

namespace {

using fakes::describedFrame;
using fakes::setOf;

/// Reads band-list TIFF files of both kinds ("/qb.tif", "/list.tif"), other TIFF files, and NITF.
class NamingSchemeTest : public testing::Test {
  protected:
    NamingSchemeTest() {
        const std::string list = fakes::kBandListHeader + "  (1, 2)";
        quickBird_.add("/qb.tif", fakes::bandFrame());
        tiff_.add("/list.tif", describedFrame("property 9", list));
        tiff_.add("/bare.tif", describedFrame("property 9", fakes::kBandListHeader));
        tiff_.add("/short.tif", describedFrame("property 9", "{\n"));
        tiff_.add("/other.tif", describedFrame("property 8", list));
        fakes::FrameFacts plain;
        plain.properties = {fakes::property<fakes::PlainProperty>("property 9")};
        tiff_.add("/plain.tif", plain);
        nitf_.add("/a.ntf", fakes::bandFrame());
        nitf_.add("/po_1_red_00.ntf", fakes::bandFrame());
    }

    fakes::World world_;
    fakes::QBTiffCodec quickBird_{world_};
    fakes::TiffCodec tiff_{world_};
    fakes::NitfCodec nitf_{world_};
};

}  // namespace

TEST_F(NamingSchemeTest, DecidesForTheWholeSet) {
    const std::string scene = "/l71026029_02920000609_";
    const std::pair<std::vector<std::string>, int> cases[] = {
        {{}, kest::SchemeNone},
        {{"/scene"}, kest::SchemeNumbered},
        {{"/scene_a", "/scene_b"}, kest::SchemeGeneric},
        {{"/scene_01.tif", "/scene_02.tif"}, kest::SchemeNumbered},
        {{"/b101", "/b201"}, kest::SchemeGeneric},
        {{"/x", "/y01", "/z02"}, kest::SchemeNumbered},
        {{"/a00", "/a99", "/1", "/b99"}, kest::SchemeGeneric},
        {{scene + "b10.TIF", scene + "B61.tif", scene + "b80"}, kest::SchemeLandsat7},
        {{scene + "hrf.fst", scene + "HTM.FST"}, kest::SchemeLandsat7Fast},
        {{scene + "b10.tif", scene + "b20.fst"}, kest::SchemeNumbered},
        {{scene + "hrf.fst", scene + "b20.tif", scene + "htm.fst"}, kest::SchemeGeneric},
        {{"/po_1_red_00.tif", "/PO_1_GRN_00.tif"}, kest::SchemePoProduct},
        {{"/po_1_red_00.ntf", "/po_1_blu_00.NTF"}, kest::SchemePoProductNitf},
        {{"/po_1_red_00.ntf", "/po_1_blu_00.tif"}, kest::SchemeGeneric},
        {{"/qb.tif", "/list.tif", "/bare.tif"}, kest::SchemeQuickBird},
        {{"/qb.tif", "/other.tif"}, kest::SchemeGeneric},
        {{"/qb.tif", "/short.tif"}, kest::SchemeGeneric},
        {{"/qb.tif", "/plain.tif"}, kest::SchemeGeneric},
        {{"/a.ntf", "/qb.tif"}, kest::SchemeGeneric},
        {{"/a.ntf", "/a.ntf"}, kest::SchemeNitf}};
    for (const auto& [paths, scheme] : cases) {
        SCOPED_TRACE(testing::PrintToString(paths));
        bool asked = false;
        world_.fail = [&asked](std::string_view) {
            asked = true;
            return false;
        };
        EXPECT_EQ(kest::getNamingScheme(setOf(paths)), scheme);
        // Codecs are asked only when names are not enough.
        EXPECT_TRUE(!asked || scheme == kest::SchemeGeneric || scheme == kest::SchemeQuickBird ||
                    scheme == kest::SchemeNitf);
    }
}

TEST_F(NamingSchemeTest, KnowsProductNames) {
    const auto expect = [](const std::string& paths, bool isPo, bool isLandsat) {
        std::istringstream words(paths);
        for (std::string path; words >> path;) {
            EXPECT_EQ(kest::isPoProductName(Pyxis::fileSpecifier(path)), isPo) << path;
            EXPECT_EQ(kest::isLandsat7Name(Pyxis::fileSpecifier(path)), isLandsat) << path;
        }
    };
    expect("/d/po_123456_red_0000000.tif PO_7_PAN_ po__nir_1", true, false);
    expect("po_1_red_" + std::string(300, '7') + "x", true, false);  // cut to 255 characters
    expect("L71026029_02920000609_B10.TIF l71026029_02920000609_mtl", false, true);
    expect(
        "po_123456_red_0000000x po_123456_swir_01 po_123456_red po_123456 po_1x_red_1 po "
        "pa_1_red_1 L7102602_02920000609_B10 L710260290_02920000609_B10 "
        "L71026029_0292000060_B10 L71026029_02920000609_B60 L71026029_02920000609_B100 "
        "L71026029_02920000609_ L71026029-02920000609_B10 L5102602902920000609_B10 .tif",
        false, false);
}
