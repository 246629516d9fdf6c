#include "bands/BandIdentification.h"

#include <gtest/gtest.h>

#include "bands/IntegerPattern.h"
#include "bands/NamingScheme.h"
#include "codec/strings/BufferText.h"
#include "fakes/Fakes.h"
#include "fakes/Resources.h"

namespace {

using enum kest::BandType;
using enum kest::BandAssignment;

/// What both questions answer of one band; the left-over values show what nobody wrote.
struct Answer {
    std::string name = "left over";
    kest::BandType type = MidInfrared;
    kest::BandAssignment assignment = RedChannel;
    int number = -7;
    std::string bucketName = "left over";
    int bucketNumber = -7;

    bool operator==(const Answer&) const = default;
    friend void PrintTo(const Answer& answer, std::ostream* out) {
        *out << answer.name << ' ' << static_cast<int>(answer.type) << ' '
             << static_cast<int>(answer.assignment) << ' ' << answer.number << ", "
             << answer.bucketName << ' ' << answer.bucketNumber;
    }
};

const Answer kNothing;
const Answer kUnknown{"<18115>", Unknown, NotAssigned, 9999, "<18115>", 9999};
/// Band ordinal 3, bucket ordinal 2.
const Answer kGeneric{"<18106> 3", Unknown, NotAssigned, 3, "<18105> 2", 2};

Answer identify(int scheme, const Pyxis::FileSpecifier& file, int frame) {
    Answer answer;
    kest::BandTypeInfo info{answer.type, answer.assignment, answer.number,
                            Pyxis::toWideBuffer(answer.name)};
    Pyxis::StringBuffer bucketName = Pyxis::toWideBuffer(answer.bucketName);
    kest::getBandTypeInfo(scheme, 3, file, frame, info);
    kest::getBucketInfo(scheme, 2, file, frame, 1.0, 2.0, bucketName, answer.bucketNumber);
    return {Pyxis::toUtf8(info.bandName), info.bandType,      info.bandAssignment, info.bandNumber,
            Pyxis::toUtf8(bucketName),    answer.bucketNumber};
}

class BandIdentificationTest : public testing::Test {
  protected:
    /// A file of one frame for each value; the TIFF codecs read property 9, NITF's 10.
    template <typename Codec>
    static void add(Codec& codec, const std::string& path, const std::string& property,
                    const std::vector<std::string>& values) {
        fakes::FileFacts file;
        for (const std::string& value : values) {
            fakes::FrameFacts frame = fakes::bandFrame();
            frame.properties.push_back(fakes::property<fakes::StringProperty>(property, value));
            file.frames.push_back(frame);
        }
        codec.add(path, file);
    }
    void addBandList(const std::string& path, const std::string& list) {
        add(quickBird_, path, "property 9", {fakes::kBandListHeader + list});
    }

    fakes::World world_;
    fakes::QBTiffCodec quickBird_{world_};
    fakes::TiffCodec tiff_{world_};
    fakes::NitfCodec nitf_{world_};
    fakes::TextsFrom texts_{fakes::stringModule("numbers")};
};

}  // namespace

TEST_F(BandIdentificationTest, GoesByTheFileName) {
    const std::string scene = "/l71026029_02920000609_";
    const struct {
        int scheme;
        std::string path;
        Answer answer;
    } cases[] = {
        {0, "/a.tif", kNothing},
        {9, "/a.tif", kNothing},
        {1, "/a.tif", kGeneric},
        {2, "/scene_07.tif", {"B07", Unknown, NotAssigned, 7, "<18105> 2", 2}},
        {2, "/scene-12", {"B12", Unknown, NotAssigned, 12, "<18105> 2", 2}},
        {2, "/scene-8", {"B-8", Unknown, NotAssigned, -8, "<18105> 2", 2}},
        {2, "/scene8x", {"B8x", Unknown, NotAssigned, 8, "<18105> 2", 2}},
        {2, "/5", {"B5", Unknown, NotAssigned, 5, "<18105> 2", 2}},
        {2, "/.tif", {"B", Unknown, NotAssigned, 0, "<18105> 2", 2}},
        {3, "/po_1_red_0.tif", {"<18210>", Red, RedChannel, 3, "<18200>", 1}},
        {3, "/po_1_Grn_0.tif", {"<18211>", Green, GreenChannel, 2, "<18200>", 1}},
        {4, "/po_1_BLU_0.ntf", {"<18212>", Blue, BlueChannel, 1, "<18200>", 1}},
        {4, "/po__nir_.ntf", {"<18213>", NearInfrared, NotAssigned, 4, "<18200>", 1}},
        {3, "/po_1_pan_0.tif", {"<18214>", Panchromatic, NotAssigned, 0, "<18201>", 0}},
        {3, "/po_1_xyz_0.tif", kUnknown},
        {3, "/po", kUnknown},
        {5, scene + "b10.tif", {"<18310>", Blue, BlueChannel, 0, "<18300>", 0}},
        {5, scene + "b20.tif", {"<18311>", Green, GreenChannel, 1, "<18300>", 0}},
        {5, scene + "b30.tif", {"<18312>", Red, RedChannel, 2, "<18300>", 0}},
        {5, scene + "b40.tif", {"<18313>", NearInfrared, NotAssigned, 3, "<18300>", 0}},
        {5, scene + "b50.tif", {"<18314>", MidInfrared, NotAssigned, 4, "<18300>", 0}},
        {5, scene + "B61.tif", {"<18315>", ThermalLowGain, NotAssigned, 6, "<18301>", 1}},
        {6, scene + "B62.fst", {"<18316>", ThermalHighGain, NotAssigned, 7, "<18301>", 1}},
        {6, scene + "b70.fst", {"<18317>", MidInfrared, NotAssigned, 5, "<18300>", 0}},
        {6, scene + "b80.fst", {"<18318>", Panchromatic, NotAssigned, 8, "<18302>", 2}},
        {6, scene + "hrf.fst", kUnknown},
        {5, "/short.tif", kUnknown},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(identify(test.scheme, Pyxis::fileSpecifier(test.path), 0), test.answer)
            << test.scheme << ' ' << test.path;
    }
}

TEST_F(BandIdentificationTest, GoesByTheQuickBirdBandList) {
    addBandList("/1234", "  (1,\n  2,\n  3,\n  4)");
    addBandList("/321", "(3, 2, 1)");
    addBandList("/432", "(4, 3, 2)");
    addBandList("/1", "1");
    addBandList("/12345", "(1, 2, 3, 4, 5)");
    addBandList("/21", "(2, 1)");
    addBandList("/cut", std::string("4\0 32", 5));
    tiff_.add("/none", fakes::bandFrame());
    add(tiff_, "/tiff", "property 9", {fakes::kBandListHeader + "321"});
    add(nitf_, "/nitf", "property 9", {fakes::kBandListHeader + "321"});
    const struct {
        std::string path;
        int frame;
        Answer answer;
    } cases[] = {
        {"/1234", 0, {"<18321>", Blue, BlueChannel, 0, "<18324>", 1}},
        {"/1234", 1, {"<18320>", Green, GreenChannel, 1, "<18324>", 1}},
        {"/1234", 2, {"<18319>", Red, RedChannel, 2, "<18324>", 1}},
        {"/1234", 3, {"<18322>", NearInfrared, NotAssigned, 3, "<18324>", 1}},
        {"/1234", 4, {"<18115>", Unknown, NotAssigned, 9999, "<18324>", 1}},
        {"/1234", -1, {"<18115>", Unknown, NotAssigned, 9999, "<18324>", 1}},
        {"/321", 0, {"<18319>", Red, RedChannel, 2, "<18325>", 1}},
        {"/321", 1, {"<18320>", Green, GreenChannel, 1, "<18325>", 1}},
        {"/321", 2, {"<18321>", Blue, BlueChannel, 0, "<18325>", 1}},
        {"/321", 3, {"<18115>", Unknown, NotAssigned, 9999, "<18325>", 1}},
        {"/432", 0, {"<18322>", NearInfrared, RedChannel, 3, "<18326>", 1}},
        {"/432", 1, {"<18319>", Red, GreenChannel, 2, "<18326>", 1}},
        {"/432", 2, {"<18320>", Green, BlueChannel, 1, "<18326>", 1}},
        {"/1", 0, {"<18323>", Panchromatic, NotAssigned, 0, "<18327>", 0}},
        {"/1", 2, {"<18115>", Unknown, NotAssigned, 9999, "<18327>", 0}},
        {"/tiff", 0, {"<18319>", Red, RedChannel, 2, "<18325>", 1}},
        {"/12345", 0, kGeneric},
        {"/21", 0, kGeneric},
        {"/cut", 0, kGeneric},
        {"/none", 0, kGeneric},
        {"/nitf", 0, kGeneric},
        {"/unknown", 0, kGeneric},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(identify(kest::SchemeQuickBird, Pyxis::fileSpecifier(test.path), test.frame),
                  test.answer)
            << test.path << ' ' << test.frame;
    }
    EXPECT_STREQ(kest::getQuickBirdBandList(Pyxis::fileSpecifier("/321")).get(), "321 ");
    world_.fail = [](std::string_view call) { return call == "getPropertyName"; };
    EXPECT_FALSE(kest::getQuickBirdBandList(Pyxis::fileSpecifier("/321")));
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(BandIdentificationTest, GoesByTheNitfBandLetter) {
    add(nitf_, "/letters", "property 10", {"R", "g", "B", "N", "m", "LU", ""});
    nitf_.add("/none", fakes::bandFrame());
    tiff_.add("/tiff", fakes::bandFrame());
    const struct {
        std::string path;
        int frame;
        Answer answer;
    } cases[] = {
        {"/letters", 0, {"<18210>", Red, RedChannel, 2, "<18200>", 1}},
        {"/letters", 1, {"<18211>", Green, GreenChannel, 1, "<18200>", 1}},
        {"/letters", 2, {"<18212>", Blue, BlueChannel, 0, "<18200>", 1}},
        {"/letters", 3, {"<18213>", NearInfrared, NotAssigned, 3, "<18200>", 1}},
        {"/letters", 4, {"<18214>", Panchromatic, NotAssigned, 0, "<18201>", 0}},
        {"/letters", 5, kGeneric},
        {"/letters", 6, kGeneric},
        {"/none", 0, kNothing},
        {"/tiff", 0, kNothing},
        {"/unknown", 0, kNothing},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(identify(kest::SchemeNitf, Pyxis::fileSpecifier(test.path), test.frame),
                  test.answer)
            << test.path << ' ' << test.frame;
    }
    world_.fail = [](std::string_view call) { return call == "getPropertyName"; };
    EXPECT_EQ(identify(kest::SchemeNitf, Pyxis::fileSpecifier("/letters"), 0), kGeneric);
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(BandIdentificationTest, TakesOneComponentOfACompoundSpecifier) {
    kest::ComponentListBuilder builder;
    for (const char* code : {"pan", "red", "grn", "blu", "nir"}) {
        builder.append(Pyxis::fileSpecifier("/po_1_" + std::string(code) + "_0"), 0);
    }
    // The band is number 3 counting from 0; the bucket goes by the first.
    const Answer wanted{"<18212>", Blue, BlueChannel, 1, "<18201>", 0};
    EXPECT_EQ(identify(kest::SchemePoProduct, builder.specifier(), 0), wanted);
}

TEST(IntegerPatternTest, NeverTrustsAPattern) {
    const std::u16string longText(300, u'x');
    const std::u16string cutText(kest::kMaxNameLength, u'x');
    const struct {
        std::u16string pattern;
        int value;
        std::u16string text;
    } cases[] = {
        {u"Band %d", 3, u"Band 3"},
        {u"", 3, u""},
        {u"%i|%u", -1, u"-1|4294967295"},
        {u"%05d|%-4d|%4d", -42, u"-0042|-42 | -42"},
        {u"%+d|% d|%+ d", 7, u"+7| 7|+7"},
        {u"100%% %d%%", 5, u"100% 5%"},
        {u"%n%s%x %ld %", 1, u"%n%s%x %ld %"},
        {u"%*d %.2d %5", 1, u"%*d %.2d %5"},
        {longText, 1, cutText},
        {longText + u"%d", 1, cutText},
        {u"%99999999999999999999d", 1, std::u16string(254, u' ') + u"1"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(kest::formatInteger(test.pattern, test.value), test.text);
    }
}
