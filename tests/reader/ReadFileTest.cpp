#include "reader/KestMultispectralReadFile.h"

#include <gmock/gmock.h>

#include <limits>

#include "properties/KestMultispectralBandNameProperty.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"
#include "tests/fakes/Sets.h"

namespace {

using fakes::bandFrame;
using fakes::FrameFacts;
using fakes::setOf;
using Pyxis::toUtf8;
using testing::ElementsAre;
using testing::IsEmpty;
using BandName = KestMultispectralBandNameProperty;
using Frame = std::unique_ptr<Pyxis::ReadImageFileFrameInterface>;
using Properties = std::unique_ptr<Pyxis::FormatCodecPropertySetIterator>;

/// One band a line: component, bucket, place in the bucket, number.
std::vector<std::string> bandsOf(const KestMultispectralReadFile& file) {
    std::vector<std::string> lines;
    for (int i = 0; i < file.getNumFrames(); ++i) {
        const kest::BandRecord& band = file.band(i);
        lines.push_back(std::to_string(band.componentIndex) + " " +
                        std::to_string(band.bucketIndex) + " " +
                        std::to_string(band.indexInBucket) + " " + std::to_string(band.bandNumber));
    }
    return lines;
}

/// A FAST frame, named by that band file.
FrameFacts fastFrame(std::string_view bandFile) {
    FrameFacts frame = bandFrame();
    frame.properties.push_back(fakes::property<fakes::FastBandFile>(bandFile));
    return frame;
}

class ReadFileTest : public testing::Test {
  protected:
    KestMultispectralReadFile open(const Pyxis::FileSpecifier& set,
                                   Pyxis::FindFileInterface* finder = nullptr) {
        return {nullptr, &set, finder};
    }

    /// Adds files of one frame, and returns their set.
    Pyxis::FileSpecifier add(const std::vector<std::pair<std::string, FrameFacts>>& files) {
        kest::ComponentListBuilder list;
        for (const auto& [path, frame] : files) {
            codec_.add(path, frame);
            list.append(Pyxis::fileSpecifier(path), 0);
        }
        return list.specifier();
    }

    fakes::TextsFrom texts_{fakes::stringModule("numbers")};
    fakes::World world_;
    fakes::Codec codec_{world_};
};

TEST_F(ReadFileTest, BandsAndBucketsAreSortedAndStayTogether) {
    const KestMultispectralReadFile file =
        open(add({{"/L71195025_02520010730_B80.TIF", bandFrame(0.5)},
                  {"/L71195025_02520010730_B30.TIF", bandFrame(1.0)},
                  {"/L71195025_02520010730_B61.TIF", bandFrame(2.0)},
                  {"/L71195025_02520010730_B10.TIF", bandFrame(1.0)}}));
    EXPECT_EQ(file.setKind(), 5);
    EXPECT_THAT(bandsOf(file), ElementsAre("3 0 1 0", "1 0 0 2", "2 1 0 6", "0 2 0 8"));
    EXPECT_EQ(file.bucket(0).bandCount, 2);
    EXPECT_EQ(file.getNumBuckets(99), 3);
    EXPECT_EQ(file.bucket(file.getBandBucketIndex(3)).bucketVector.x, 0.5);
    Pyxis::StringBuffer name;
    file.getBandBucketName(3, name);
    EXPECT_EQ(toUtf8(name), "<18302>");
    file.getReferenceName(name);
    EXPECT_EQ(toUtf8(name), "L71195025_02520010730");
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(ReadFileTest, BandsShareTheFirstBucketWithinTheToleranceOfTheirPixelSize) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double x, y;
        int bucket;
    } rows[] = {{1.0, 2.0, 0},          {1.0 + 0.9e-5, 2.0 - 0.9e-5, 0}, {1.0 + 1.1e-5, 2.0, 1},
                {1.0, 2.0 - 1.1e-5, 2}, {1.0 + 0.5e-5, 2.0, 0},          {kNone, 2.0, 3},
                {kNone, 2.0, 4}};
    std::vector<std::pair<std::string, FrameFacts>> files;
    for (const auto& row : rows) {
        const fakes::GeoFacts facts{.pixelX = row.x, .pixelY = row.y};
        FrameFacts frame;
        frame.properties.push_back(fakes::property<fakes::Geo>(facts));
        files.emplace_back("/band" + std::to_string(10 + files.size()), frame);
    }
    const KestMultispectralReadFile file = open(add(files));
    ASSERT_EQ(file.getNumFrames(), 7);
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(file.getBandBucketIndex(i), rows[i].bucket) << i;
    }
}

TEST_F(ReadFileTest, BandsOfOneNumberKeepTheirOrder) {
    std::vector<std::pair<std::string, FrameFacts>> files;
    for (int i = 0; i < 60; ++i) {
        files.emplace_back(
            "/L7" + std::to_string(1000000 + i) + "_12345678901_" + (i % 2 == 0 ? "MTL" : "B40"),
            bandFrame(1.0 + i));
    }
    const KestMultispectralReadFile file = open(add(files));
    ASSERT_EQ(file.getNumFrames(), 60);
    for (int i = 0; i < 60; ++i) {
        EXPECT_EQ(file.band(i).componentIndex, i < 30 ? 2 * i + 1 : 2 * (i - 30));
        EXPECT_EQ(file.band(i).bucketIndex, i);
    }
}

TEST_F(ReadFileTest, BandsAreNamedByTheirOrdinalWhileTheFrameIsOpen) {
    fakes::NitfCodec nitf(world_);
    nitf.add("/n",
             fakes::FileFacts{false,
                              {fakes::describedFrame("property 10", "R"),
                               fakes::describedFrame("property 10", "LU", 2.0), bandFrame(3.0)}});
    const KestMultispectralReadFile file = open(fakes::framesOf("/n", {0, 1, 2}));
    EXPECT_THAT(bandsOf(file), ElementsAre("2 0 0 0", "0 1 0 2", "1 2 0 2"));
    EXPECT_EQ(file.bucket(2).bucketNumber, 2);
    EXPECT_THAT(std::vector(world_.events.begin(), world_.events.begin() + 3),
                ElementsAre("open /n", "delete properties", "open /n"));
}

TEST_F(ReadFileTest, ComponentsAfterAGapTakeTheCodecOfTheirPlace) {
    fakes::NitfCodec other(world_);
    add({{"/a01.tif", bandFrame()}, {"/c03.tif", bandFrame()}, {"/d04.tif", bandFrame()}});
    other.add("/d04.tif", bandFrame());
    KestMultispectralReadFile file =
        open(setOf({"/a01.tif", "/unreadable", "/c03.tif", "/d04.tif"}));
    ASSERT_EQ(file.getNumFiles(), 3);
    EXPECT_TRUE(file.getFile(1).isEqual(setOf({"/c03.tif"})));
    EXPECT_TRUE(file.getFileSpecifier().isEqual(setOf({"/a01.tif", "/c03.tif", "/d04.tif"})));
    EXPECT_THAT(bandsOf(file), ElementsAre("0 0 0 1", "2 0 1 4"));
    EXPECT_EQ(file.band(1).codec, &codec_);
    for (const int outside : {-1, 3}) {
        EXPECT_TRUE(file.getFile(outside).isEmpty());
        EXPECT_EQ(file.openFrame(outside), nullptr);
    }
    // Unreadable components at the front leave the last codecs of the list unused.
    EXPECT_EQ(open(setOf({"/unreadable", "/a01.tif"})).getNumFrames(), 0);
}

TEST_F(ReadFileTest, SetsWithoutUsableComponentsHaveNoFrames) {
    FrameFacts noGeo;
    noGeo.properties.push_back(fakes::property<fakes::PlainProperty>("other"));
    const KestMultispectralReadFile file = open(add({{"/noGeo", noGeo}}));
    EXPECT_EQ(file.getNumFiles(), 1);
    EXPECT_EQ(file.getNumFrames(), 0);
    for (const Pyxis::FileSpecifier& empty :
         {Pyxis::FileSpecifier(), Pyxis::fileSpecifier("/noGeo"), setOf({"/unreadable"})}) {
        const KestMultispectralReadFile none = open(empty);
        EXPECT_EQ(none.getNumFiles() + none.getNumFrames() + none.setKind(), 0);
        EXPECT_TRUE(none.getFileSpecifier().isEmpty());
        Pyxis::StringBuffer name;
        none.getReferenceName(name);
        EXPECT_TRUE(name.isZero());
    }
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(ReadFileTest, FastBandsAreNamedByTheirBandFileAndOpenedByTheirHeader) {
    fakes::FastCodec fast(world_);
    const std::string header = "/L71195025_02520010730_HRF.FST";
    fast.add(header, fakes::FileFacts{false,
                                      {fastFrame("L71195025_02520010730_B10.FST"), bandFrame(),
                                       fastFrame("L71195025_02520010730_B20.FST")}});
    KestMultispectralReadFile file = open(fakes::framesOf(header, {2, 1, 0}));
    EXPECT_THAT(bandsOf(file), ElementsAre("2 0 1 0", "0 0 0 1"));
    EXPECT_EQ(file.bucket(0).bucketNumber, 0);  // The header's own name is not that of a band.
    Pyxis::FileSpecifier component;
    int number = -1;
    file.getBandComponent(1, component, number);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(toUtf8(component.string()), header);
}

TEST_F(ReadFileTest, OnlyFastComponentsAreSearchedPastTheirGeoCorrelation) {
    int opened = 0;
    world_.fail = [&opened](std::string_view call) {
        opened += call == "openProperty";
        return call == "openProperty" && opened == 1;
    };
    FrameFacts frame = bandFrame();
    frame.properties.insert(frame.properties.begin(),
                            fakes::property<fakes::PlainProperty>("cannot be handed out"));
    frame.properties.push_back(fakes::property<fakes::FastBandFile>("other_77.tif"));
    EXPECT_THAT(bandsOf(open(add({{"/a01.tif", frame}}))), ElementsAre("0 0 0 1"));
    EXPECT_EQ(opened, 2);
}

TEST_F(ReadFileTest, MetadataTextFileNeedsAProductSetAndAFinderThatFindsIt) {
    fakes::Finder finder(world_, "/found.txt");
    const auto product =
        add({{"/po_12_red_0000000.tif", bandFrame()}, {"/po_12_pan_0000000.tif", bandFrame()}});
    EXPECT_EQ(open(product).getNumFiles(), 2);
    EXPECT_EQ(open(add({{"/po_12_pan_0000000.ntf", bandFrame()}}), &finder).getNumFiles(), 1);
    KestMultispectralReadFile file = open(product, &finder);
    EXPECT_THAT(world_.events,
                testing::Contains("find po_12_metadata.txt by /po_12_red_0000000.tif"));
    ASSERT_EQ(file.getNumFiles(), 3);
    EXPECT_EQ(toUtf8(file.getFile(2).string()), "/found.txt");
    EXPECT_THAT(bandsOf(file), ElementsAre("1 0 1 0", "0 0 0 3"));
}

// A host should delete property sets first, then frames, then the image, but need not.
TEST_F(ReadFileTest, FramesAndPropertySetsStandOnTheirOwn) {
    FrameFacts facts = bandFrame();
    facts.properties.push_back(fakes::property<fakes::PlainProperty>("<18109>"));
    auto file = std::make_unique<KestMultispectralReadFile>(
        open(add({{"/a01.tif", facts}, {"/b02.tif", facts}})));
    Frame first(file->openFrame(0));
    Frame second(file->openFrame(1));
    Properties one(second->getProperties());
    world_.events.clear();
    first.reset();
    EXPECT_THAT(world_.events, ElementsAre("delete frame", "delete image"));
    file.reset();
    const Properties other(second->getProperties());
    one.reset();
    second.reset();
    EXPECT_THAT(fakes::namesIn(*other),
                ElementsAre("", "<18109>", "<18107>", "<18109>", "<18116>", "<18111>"));
    std::string band;
    for (other->start(); !other->endOfList(); other->step()) {
        const auto* name = dynamic_cast<BandName*>(other->openProperty());
        band += name == nullptr ? "-" : std::to_string(name->getBandIndex());
    }
    EXPECT_EQ(band, "---1--");
    EXPECT_EQ(world_.alive, 0);
}

TEST_F(ReadFileTest, WrongBandIndexEndsTheProgram) {
    const KestMultispectralReadFile file = open(Pyxis::FileSpecifier());
    EXPECT_DEATH(file.getBandBucketIndex(0), "");
    EXPECT_DEATH(file.bucket(-1), "");
}

}  // namespace
