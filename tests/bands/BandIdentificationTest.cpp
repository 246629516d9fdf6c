#include "bands/BandIdentification.h"

#include <gtest/gtest.h>

#include <sstream>

#include "bands/IntegerPattern.h"
#include "bands/NamingScheme.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"

namespace {

const std::string kNothing = "left over 6 1 -7, left over -7";
const std::string kUnknown = "<18115> 0 0 9999, <18115> 9999";
const std::string kGeneric = "<18106> 3 0 0 3, <18105> 2 2";

/// Name, type, assignment and number of band ordinal 3, name and number of bucket ordinal 2; the
/// left-over values show what nobody wrote.
std::string identify(int scheme, const Pyxis::FileSpecifier& file, int frame) {
    const Pyxis::StringBuffer leftOver = Pyxis::toWideBuffer("left over");
    kest::BandTypeInfo info{kest::BandType::MidInfrared, kest::BandAssignment::RedChannel, -7,
                            leftOver};
    Pyxis::StringBuffer bucketName = leftOver;
    int bucketNumber = -7;
    kest::getBandTypeInfo(scheme, 3, file, frame, info);
    kest::getBucketInfo(scheme, 2, file, frame, 1.0, 2.0, bucketName, bucketNumber);
    std::ostringstream answer;
    answer << Pyxis::toUtf8(info.bandName) << ' ' << static_cast<int>(info.bandType) << ' '
           << static_cast<int>(info.bandAssignment) << ' ' << info.bandNumber << ", "
           << Pyxis::toUtf8(bucketName) << ' ' << bucketNumber;
    return answer.str();
}

/// Checks the results for the frames of a file, from 0 on.
void check(int scheme, const std::string& path, const std::vector<std::string>& answers) {
    for (int frame = 0; const std::string& answer : answers) {
        EXPECT_EQ(identify(scheme, Pyxis::fileSpecifier(path), frame++), answer) << path;
    }
}

class BandIdentificationTest : public testing::Test {
  protected:
    /// A file of one frame for each value; the TIFF codecs read property 9, NITF's 10.
    template <typename Codec>
    static void add(Codec& codec, const std::string& path, const std::string& property,
                    const std::vector<std::string>& values) {
        fakes::FileFacts file;
        for (const std::string& value : values) {
            file.frames.push_back(fakes::describedFrame(property, value));
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
        std::string path, answer;
    } cases[] = {{0, "/a.tif", kNothing},
                 {9, "/a.tif", kNothing},
                 {1, "/a.tif", kGeneric},
                 {2, "/scene_07.tif", "B07 0 0 7, <18105> 2 2"},
                 {2, "/scene-12", "B12 0 0 12, <18105> 2 2"},
                 {2, "/scene-8", "B-8 0 0 -8, <18105> 2 2"},
                 {2, "/scene8x", "B8x 0 0 8, <18105> 2 2"},
                 {2, "/5", "B5 0 0 5, <18105> 2 2"},
                 {2, "/.tif", "B 0 0 0, <18105> 2 2"},
                 {3, "/po_1_red_0.tif", "<18210> 4 1 3, <18200> 1"},
                 {3, "/po_1_Grn_0.tif", "<18211> 3 2 2, <18200> 1"},
                 {4, "/po_1_BLU_0.ntf", "<18212> 2 3 1, <18200> 1"},
                 {4, "/po__nir_.ntf", "<18213> 5 0 4, <18200> 1"},
                 {3, "/po_1_pan_0.tif", "<18214> 10 0 0, <18201> 0"},
                 {3, "/po_1_xyz_0.tif", kUnknown},
                 {3, "/po", kUnknown},
                 {5, scene + "b10.tif", "<18310> 2 3 0, <18300> 0"},
                 {5, scene + "b20.tif", "<18311> 3 2 1, <18300> 0"},
                 {5, scene + "b30.tif", "<18312> 4 1 2, <18300> 0"},
                 {5, scene + "b40.tif", "<18313> 5 0 3, <18300> 0"},
                 {5, scene + "b50.tif", "<18314> 6 0 4, <18300> 0"},
                 {5, scene + "B61.tif", "<18315> 8 0 6, <18301> 1"},
                 {6, scene + "B62.fst", "<18316> 9 0 7, <18301> 1"},
                 {6, scene + "b70.fst", "<18317> 6 0 5, <18300> 0"},
                 {6, scene + "b80.fst", "<18318> 10 0 8, <18302> 2"},
                 {6, scene + "hrf.fst", kUnknown},
                 {5, "/short.tif", kUnknown}};
    for (const auto& test : cases) {
        check(test.scheme, test.path, {test.answer});
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
    const int scheme = kest::SchemeQuickBird;
    const std::string beyond = "<18115> 0 0 9999, ";
    check(scheme, "/1234",
          {"<18321> 2 3 0, <18324> 1", "<18320> 3 2 1, <18324> 1", "<18319> 4 1 2, <18324> 1",
           "<18322> 5 0 3, <18324> 1", beyond + "<18324> 1"});
    check(scheme, "/321",
          {"<18319> 4 1 2, <18325> 1", "<18320> 3 2 1, <18325> 1", "<18321> 2 3 0, <18325> 1",
           beyond + "<18325> 1"});
    check(scheme, "/432",
          {"<18322> 5 1 3, <18326> 1", "<18319> 4 2 2, <18326> 1", "<18320> 3 3 1, <18326> 1"});
    check(scheme, "/1", {"<18323> 10 0 0, <18327> 0", beyond + "<18327> 0"});
    check(scheme, "/tiff", {"<18319> 4 1 2, <18325> 1"});
    for (const char* other : {"/12345", "/21", "/cut", "/none", "/nitf", "/unknown"}) {
        check(scheme, other, {kGeneric});
    }
    EXPECT_EQ(identify(scheme, Pyxis::fileSpecifier("/1"), -1), beyond + "<18327> 0");
    EXPECT_STREQ(kest::getQuickBirdBandList(Pyxis::fileSpecifier("/321")).get(), "321 ");
}

TEST_F(BandIdentificationTest, GoesByTheNitfBandLetter) {
    add(nitf_, "/letters", "property 10", {"R", "g", "B", "N", "m", "LU", ""});
    nitf_.add("/none", fakes::bandFrame());
    tiff_.add("/tiff", fakes::bandFrame());
    check(kest::SchemeNitf, "/letters",
          {"<18210> 4 1 2, <18200> 1", "<18211> 3 2 1, <18200> 1", "<18212> 2 3 0, <18200> 1",
           "<18213> 5 0 3, <18200> 1", "<18214> 10 0 0, <18201> 0", kGeneric, kGeneric});
    for (const char* other : {"/none", "/tiff", "/unknown"}) {
        check(kest::SchemeNitf, other, {kNothing});
    }
}

TEST_F(BandIdentificationTest, TakesOneComponentOfACompoundSpecifier) {
    kest::ComponentListBuilder builder;
    for (const char* code : {"pan", "red", "grn", "blu", "nir"}) {
        builder.append(Pyxis::fileSpecifier("/po_1_" + std::string(code) + "_0"), 0);
    }
    // The band is component 3, from 0; the bucket follows the first.
    const std::string wanted = "<18212> 2 3 1, <18201> 0";
    EXPECT_EQ(identify(kest::SchemePoProduct, builder.specifier(), 0), wanted);
}

TEST(BandDetailsTest, StandBesideTheBandsRow) {
    const struct {
        int scheme;
        std::string path, commonName;
        double centre, width;
    } cases[] = {{kest::SchemeLandsat7, "L71026029_02920000609_B10", "blue", 0.485, 0.07},
                 {kest::SchemeLandsat7, "L71026029_02920000609_B50", "swir16", 1.65, 0.2},
                 {kest::SchemeLandsat7Fast, "L71026029_02920000609_B70", "swir22", 2.22, 0.26},
                 {kest::SchemeLandsat7, "L71026029_02920000609_B62", "lwir", 11.45, 2.1},
                 {kest::SchemeLandsat7, "L71026029_02920000609_HRF", "", 0, 0},
                 {kest::SchemePoProduct, "po_1_nir_0", "nir", 0, 0},
                 {kest::SchemePoProductNitf, "po_1_pan_0", "pan", 0, 0},
                 {kest::SchemeNumbered, "scene_04", "", 0, 0}};
    for (const auto& test : cases) {
        kest::BandTypeInfo info;
        kest::BandDetails details;
        kest::identifyBand({test.scheme, nullptr}, 1, Pyxis::fileSpecifier(test.path), 0, info,
                           details);
        EXPECT_EQ(details.commonName, test.commonName) << test.path;
        EXPECT_EQ(details.spectrum.has_value(), test.width > 0) << test.path;
        EXPECT_NEAR(details.spectrum.value_or(kest::Spectrum()).centre, test.centre, 1e-9);
        EXPECT_NEAR(details.spectrum.value_or(kest::Spectrum()).width, test.width, 1e-9);
    }
}

TEST(IntegerPatternTest, NeverTrustsAPattern) {
    const std::u16string longText(300, u'x');
    const std::u16string cutText(kest::kMaxNameLength, u'x');
    const struct {
        std::u16string pattern;
        int value;
        std::u16string text;
    } cases[] = {{u"Band %d", 3, u"Band 3"},
                 {u"", 3, u""},
                 {u"%i|%u", -1, u"-1|4294967295"},
                 {u"%05d|%-4d|%4d", -42, u"-0042|-42 | -42"},
                 {u"%+d|% d|%+ d", 7, u"+7| 7|+7"},
                 {u"100%% %d%%", 5, u"100% 5%"},
                 {u"%.2d|%04ld|%#x|%X|%hd|%o", 10, u"10|0010|0xa|A|10|12"},
                 {u"%ddx|%.3i|%.", 1, u"1dx|001|%."},
                 {u"%n%s%c %l %*d %5 %", 1, u"%n%s%c %l %*d %5 %"},
                 {longText, 1, cutText},
                 {longText + u"%d", 1, cutText},
                 {u"%99999999999999999999d", 1, std::u16string(255, u' ')},
                 {u"%.300d", 1, std::u16string(255, u'0')}};
    for (const auto& test : cases) {
        EXPECT_EQ(kest::formatInteger(test.pattern, test.value), test.text);
    }
}
