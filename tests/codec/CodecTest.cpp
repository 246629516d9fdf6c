#include "codec/KestMultispectralCodec.h"

#include <gmock/gmock.h>

#include <array>

#include "codec/KestMultispectralFormatCodecApiVersion.h"
#include "sets/SetJudge.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"
#include "tests/fakes/Sets.h"

namespace {

using fakes::bandFrame;
using fakes::setOf;
using Pyxis::toUtf8;
using Image = std::unique_ptr<Pyxis::ReadImageFileInterface>;
using Frame = std::unique_ptr<Pyxis::ReadImageFileFrameInterface>;

TEST(CodecTest, TellsWhatItIs) {
    const KestMultispectralCodec codec;
    unsigned int major = 99;
    unsigned int minor = 99;
    unsigned int build = 99;
    codec.getLibVersionInfo(major, minor, build);
    EXPECT_NE(build, 99U);
    codec.getApiVersionInfo(major, minor);
    EXPECT_TRUE(major == 6 && minor == 0);
    EXPECT_EQ(KestMultispectralCodecApiVersion()->majorVersion(), 6);
    EXPECT_EQ(KestMultispectralCodecApiVersion()->minorVersion(), 0);
    EXPECT_THAT((std::array{static_cast<int>(codec.codecCapability()),
                            static_cast<int>(codec.getFormatDecodabilityType()),
                            static_cast<int>(codec.getFormatOrganization()),
                            static_cast<int>(codec.getFormatFrameType())}),
                testing::Each(1));
    for (int feature = -1; feature < 8; ++feature) {
        EXPECT_EQ(codec.isFormatFeature(static_cast<Pyxis::FormatFeature>(feature)), feature == 4);
    }
    EXPECT_FALSE(codec.isValidFileName(setOf({"/a", "/b"})) || codec.isEncodableImage({}, {}));
    EXPECT_EQ(codec.writeImage(), nullptr);
    Pyxis::StringBuffer text = Pyxis::toWideBuffer("extension");
    codec.getExtensionText(0, text);
    EXPECT_EQ(codec.getNumExtensions() + text.numDataBytes(), 0);
}

TEST(CodecTest, TextsComeFromTheModuleThatTheHostNames) {
    KestMultispectralCodec codec;
    const auto texts = [&codec] {
        Pyxis::StringBuffer format;
        Pyxis::StringBuffer description;
        Pyxis::StringBuffer copyright;
        codec.getFormatName(format);
        codec.getDescriptionText(description);
        codec.getCopyrightText(copyright);
        return toUtf8(format) + toUtf8(description) + toUtf8(copyright);
    };
    EXPECT_EQ(texts(), "");
    codec.setResourceFileName(Pyxis::fileSpecifier(fakes::stringModule("numbers")));
    EXPECT_EQ(texts(), "<18100><18101><18102>");
    codec.setResourceFileName(Pyxis::FileSpecifier());
    EXPECT_EQ(texts(), "");
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
    const struct {
        Pyxis::FileSpecifier set;
        int decodability;
        bool purifies;
        Pyxis::FileSpecifier purified;
    } rows[] = {
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
    for (const auto& row : rows) {
        SCOPED_TRACE(toUtf8(row.set.string()));
        EXPECT_EQ(static_cast<int>(codec_.isDecodableFile(row.set, nullptr)), row.decodability);
        Pyxis::FileSpecifier set = row.set;
        EXPECT_EQ(codec_.purifyFileSet(set), row.purifies);
        EXPECT_TRUE(set.isEqual(row.purifies ? row.purified : row.set));
        EXPECT_EQ(world_.alive, 0);
    }
}

// The codec stops when its answer is settled; judging the other components does not change it.
TEST_F(CodecSetTest, OneWalkSettlesTheAnswerAndJudgesTheRest) {
    using kest::Verdict;
    host_.add("/shut.tif", fakes::FileFacts{true, {}});
    const struct {
        std::vector<std::string> paths;
        std::vector<std::string> opened;  ///< until the answer is settled
        std::vector<Verdict> verdicts;
    } rows[] = {
        {{"/a01.tif", "/x", "/b02.tif"},
         {"open /a01.tif", "open /b02.tif"},
         {Verdict::Accepted, Verdict::Unreadable, Verdict::Accepted}},
        {{"/a01.tif", "/other.tif", "/b02.tif"},
         {"open /a01.tif", "open /other.tif"},
         {Verdict::Accepted, Verdict::LayoutDiffers, Verdict::Accepted}},
        {{"/shut.tif", "/a01.tif", "/b02.tif"},
         {"open /shut.tif"},
         {Verdict::CannotOpen, Verdict::Accepted, Verdict::Accepted}},
        {{"/a01.tif"}, {}, {Verdict::Accepted}},
    };
    for (const auto& row : rows) {
        const Pyxis::FileSpecifier set = setOf(row.paths);
        world_.events.clear();
        const auto answer = codec_.isDecodableFile(set, nullptr);
        std::erase_if(world_.events, [](const auto& event) { return event.find("open") != 0; });
        EXPECT_EQ(world_.events, row.opened);
        const kest::ComponentList list(set);
        kest::SetJudge judge = codec_.judge(list);
        std::vector<Verdict> verdicts;
        while (const auto judged = judge.next()) {
            verdicts.push_back(judged->verdict);
        }
        EXPECT_EQ(verdicts, row.verdicts);
        EXPECT_EQ(judge.answer(), answer);
    }
}

TEST(CodecThatThrowsTest, DoesNotReadTheComponent) {
    fakes::World broken, world;
    broken.fail = [](std::string_view) { return fakes::Fault::Throw; };
    fakes::Codec throwing(broken);  // is asked first
    for (const char* path : {"/x", "/a01.tif", "/b02.tif", "/y"}) {
        throwing.add(path, bandFrame());
    }
    fakes::Codec host(world);
    host.add("/a01.tif", bandFrame());
    host.add("/b02.tif", bandFrame());
    const KestMultispectralCodec codec;
    Pyxis::FileSpecifier set = setOf({"/x", "/a01.tif", "/b02.tif", "/y"});
    EXPECT_EQ(codec.isDecodableFile(set, nullptr), Pyxis::FormatDecodability::Decodable);
    EXPECT_TRUE(codec.purifyFileSet(set));
    EXPECT_TRUE(set.isEqual(setOf({"/a01.tif", "/b02.tif"})));
    const Image image(codec.openImage(&set));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getNumFrames(), 2);
}

TEST_F(CodecSetTest, OpensAndClonesSetsOfItsOwn) {
    const Pyxis::FileSpecifier set = setOf({"/b02.tif", "/a01.tif", "/other.tif"});
    Image image(codec_.openImage(&set));
    const Image copy(codec_.cloneOpenImage(image.get()));
    image.reset();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getCodec(), &codec_);
    ASSERT_EQ(copy->getNumFrames(), 3);
    EXPECT_EQ(copy->openFrame(3), nullptr);
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(Frame(copy->openFrame(index))->getFrameIndex(), index);
    }
    const Pyxis::FileSpecifier plain = Pyxis::fileSpecifier("/a01.tif");
    EXPECT_EQ(codec_.cloneOpenImage(Image(host_.openImage(&plain)).get()), nullptr);
    EXPECT_EQ(codec_.cloneOpenImage(nullptr), nullptr);
    EXPECT_EQ(codec_.openImage(nullptr), nullptr);
}

}  // namespace
