#include "codec/KestMultispectralCodec.h"

#include <gmock/gmock.h>

#include "codec/KestMultispectralFormatCodecApiVersion.h"
#include "fakes/Fakes.h"
#include "fakes/Resources.h"
#include "fakes/Sets.h"

namespace {

using fakes::bandFrame;
using fakes::setOf;
using Pyxis::toUtf8;
using Image = std::unique_ptr<Pyxis::ReadImageFileInterface>;

TEST(CodecTest, TellsWhatItIs) {
    const KestMultispectralCodec codec;
    unsigned int major = 99;
    unsigned int minor = 99;
    unsigned int build = 99;
    codec.getApiVersionInfo(major, minor);
    EXPECT_EQ(major, 6U);
    EXPECT_EQ(minor, 0U);
    EXPECT_EQ(KestMultispectralCodecApiVersion()->majorVersion(), 6);
    EXPECT_EQ(KestMultispectralCodecApiVersion()->minorVersion(), 0);
    codec.getLibVersionInfo(major, minor, build);
    EXPECT_NE(build, 99U);
    EXPECT_EQ(static_cast<int>(codec.codecCapability()), 1);
    EXPECT_EQ(static_cast<int>(codec.getFormatDecodabilityType()), 1);
    EXPECT_EQ(static_cast<int>(codec.getFormatOrganization()), 1);
    EXPECT_EQ(static_cast<int>(codec.getFormatFrameType()), 1);
    for (int feature = -1; feature < 8; ++feature) {
        EXPECT_EQ(codec.isFormatFeature(static_cast<Pyxis::FormatFeature>(feature)), feature == 4);
    }
    EXPECT_FALSE(codec.isValidFileName(setOf({"/a", "/b"})));
    EXPECT_FALSE(codec.isEncodableImage({}, {}));
    EXPECT_EQ(codec.writeImage(), nullptr);
    EXPECT_EQ(codec.getNumExtensions(), 0);
    Pyxis::StringBuffer text = Pyxis::toWideBuffer("extension");
    codec.getExtensionText(0, text);
    EXPECT_EQ(text.numDataBytes(), 0);
}

TEST(CodecTest, TextsComeFromTheModuleThatTheHostNames) {
    const auto codec = std::make_unique<KestMultispectralCodec>();
    const auto texts = [&codec] {
        std::vector<std::string> all;
        Pyxis::StringBuffer text;
        codec->getFormatName(text);
        all.push_back(toUtf8(text));
        codec->getDescriptionText(text);
        all.push_back(toUtf8(text));
        codec->getCopyrightText(text);
        all.push_back(toUtf8(text));
        EXPECT_TRUE(codec->getMultispectralPropertyName(
            KestMultispectralCodec::MultispectralPropertyId::BandName, text));
        all.push_back(toUtf8(text));
        EXPECT_EQ(codec->isSupportedProperty({}, &text), true);
        return all;
    };
    const std::vector<std::string> none(4);
    EXPECT_EQ(texts(), none);
    codec->setResourceFileName(Pyxis::fileSpecifier(fakes::stringModule("en")));
    const auto english = texts();
    EXPECT_THAT(english, testing::Each(testing::Not("")));
    codec->setResourceFileName(Pyxis::fileSpecifier(fakes::stringModule("ja")));
    EXPECT_NE(texts(), english);
    codec->setResourceFileName(Pyxis::FileSpecifier());
    EXPECT_EQ(texts(), none);
    Pyxis::StringBuffer otherCase = Pyxis::toWideBuffer("BAND NAME");
    codec->setResourceFileName(Pyxis::fileSpecifier(fakes::stringModule("en")));
    EXPECT_FALSE(codec->isSupportedProperty({}, &otherCase));
    codec->setResourceFileName(Pyxis::FileSpecifier());
}

class CodecSetTest : public testing::Test {
  protected:
    CodecSetTest() {
        for (const char* path : {"/a01.tif", "/b02.tif", "/c03.tif"}) {
            host_.add(path, bandFrame());
        }
        fakes::FrameFacts other = bandFrame();
        other.bits = 16;
        host_.add("/other.tif", other);
    }

    fakes::World world_;
    fakes::Codec host_{world_};
    KestMultispectralCodec codec_;
};

TEST_F(CodecSetTest, AnswersByTheNumberOfComponentsThatFit) {
    const Pyxis::FileSpecifier noPath(
        Pyxis::toWideBuffer("<storage><image><component><data><file path='/a01.tif'/></data>"
                            "</component><component/><component/></image></storage>"),
        Pyxis::FileSpecifier::Type::Compound);
    struct Row {
        Pyxis::FileSpecifier set;
        int decodability;
        bool purifies;
        Pyxis::FileSpecifier purified;
    };
    const Row rows[] = {
        {Pyxis::fileSpecifier("/a01.tif"), 1, false, {}},
        {{}, 1, false, {}},
        {setOf({"/a01.tif"}), 1, false, {}},
        {{Pyxis::toWideBuffer("no list"), Pyxis::FileSpecifier::Type::Compound}, 1, false, {}},
        {setOf({"/a01.tif", "/b02.tif"}), 0, true, setOf({"/a01.tif", "/b02.tif"})},
        {setOf({"/x", "/a01.tif", "/x", "/b02.tif", "/x"}), 0, true,
         setOf({"/a01.tif", "/b02.tif"})},
        {setOf({"/x", "/a01.tif"}), 3, false, {}},
        {setOf({"/x", "/y"}), 3, false, {}},
        {noPath, 3, false, {}},
        {setOf({"/a01.tif", "/other.tif", "/b02.tif"}), 3, true,
         setOf({"/a01.tif", "/other.tif", "/b02.tif"})},
        {setOf({"/a01.tif", "/b02.tif", "/other.tif", "/x"}), 1, true,
         setOf({"/a01.tif", "/b02.tif", "/other.tif"})},
        // The frame does not exist: neither component can be measured.
        {setOf({"/a01.tif", "/b02.tif"}, 1), 3, true, setOf({"/a01.tif", "/b02.tif"}, 1)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(toUtf8(row.set.string()));
        EXPECT_EQ(static_cast<int>(codec_.isDecodableFile(row.set, nullptr)), row.decodability);
        Pyxis::FileSpecifier set = row.set;
        EXPECT_EQ(codec_.purifyFileSet(set), row.purifies);
        EXPECT_TRUE(set.isEqual(row.purifies ? row.purified : row.set));
        EXPECT_EQ(world_.alive, 0);
    }
}

TEST_F(CodecSetTest, OpensAndClonesSetsOfItsOwn) {
    const Pyxis::FileSpecifier set = setOf({"/a01.tif", "/b02.tif", "/other.tif"});
    const Image image(codec_.openImage(&set));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getNumFrames(), 3);
    const Image copy(codec_.cloneOpenImage(image.get()));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getCodec(), &codec_);
    const Pyxis::FileSpecifier plain = Pyxis::fileSpecifier("/a01.tif");
    const Image other(host_.openImage(&plain));
    EXPECT_EQ(codec_.cloneOpenImage(other.get()), nullptr);
    EXPECT_EQ(codec_.cloneOpenImage(nullptr), nullptr);
    EXPECT_EQ(codec_.openImage(nullptr), nullptr);
}

}  // namespace
