#include <gmock/gmock.h>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

class NitfCodec : public OnFiles {
  protected:
    static std::string letterOf(const std::string& path, int frame) {
        return numberedProperty<NITFFormatCodec>(10, path, frame);
    }
};

fakes::Raster nitf(int bands, std::vector<std::string> options) {
    options.insert(options.end(), {"ICORDS=N", "IREP=MULTI"});
    return {.bands = bands, .driver = "NITF", .options = std::move(options)};
}

TEST_F(NitfCodec, BandsShowPixelsLettersAndPlace) {
    for (const char* version : {"FHDR=NITF02.10", "FHDR=NSIF01.00"}) {
        const std::string path =
            fakes::writeRaster(directory / "bands.ntf", nitf(4, {version, "IREPBAND=R,G,B,N"}));
        for (int i = 0; i < 4; ++i) {
            const Opened opened(path, i);
            ASSERT_NE(opened.frame, nullptr) << whyNotReadable(fileSpecifier(path));
            EXPECT_EQ(opened.pixels(), gdalPixels(path, i + 1));
            EXPECT_EQ(letterOf(path, i), std::string(1, "RGBN"[i]));
            EXPECT_EQ(opened.place(), "500000 4599760, 32632 PROJCRS[");
        }
    }
}

TEST_F(NitfCodec, ImageSegmentsFollowOneAnother) {
    const std::string path =
        fakes::writeRaster(directory / "segments.ntf", nitf(2, {"NUMI=2", "IREPBAND=R,M"}));
    fakes::Raster second = nitf(1, {"APPEND_SUBDATASET=YES", "IREPBAND=N"});
    second.width = 20;
    fakes::writeRaster(path, second);
    const Opened first(path, 1);
    const Opened last(path, 2);
    ASSERT_EQ(first.image->getNumFrames(), 3);
    EXPECT_EQ(letterOf(path, 0) + letterOf(path, 1) + letterOf(path, 2), "RMN");
    EXPECT_EQ(first.pixels(), gdalPixels("NITF_IM:0:" + path, 2));
    EXPECT_EQ(last.pixels(), gdalPixels("NITF_IM:1:" + path, 1));
    for (const Opened* opened : {&first, &last}) {
        std::int32_t width = 0, height = 0;
        opened->property<FormatCodecGeoCorrelation>()->getImageSize(width, height);
        EXPECT_EQ(width, opened == &first ? 12 : 20);
    }
}

TEST_F(NitfCodec, LengthsInHeadersNeedNotBeRight) {
    const struct {
        const char* name;
        const char* compression;
        int fileLength, imageLength;  // excess of the lengths in the header
        std::size_t lost;             // bytes at the end
        bool isWhole;
    } cases[] = {
        {"file", "IC=NC", 3, 0, 0, true},
        {"file and image", "IC=NC", 3, 3, 0, true},
        {"last pixel lost", "IC=NC", 0, 0, 1, false},
        {"and admitted", "IC=NC", -1, 0, 1, false},
        {"packed", "IC=C3", 3, 0, 0, true},
        {"packed, cut", "IC=C3", 0, 0, 3, false},
    };
    const GDALDatasetUniquePtr source(
        GDALDataset::Open(fakes::writeRaster(directory / "source.tif").c_str()));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = directory / "lengths.ntf";
        const char* const options[] = {c.compression, nullptr};
        GDALDatasetUniquePtr(
            GetGDALDriverManager()->GetDriverByName("NITF")->CreateCopy(
                path.c_str(), source.get(), FALSE, const_cast<char**>(options), nullptr, nullptr))
            .reset();
        std::string bytes = fakes::readFile(path);
        const auto change = [&bytes](std::size_t place, std::size_t width, int by) {
            const int number = std::stoi(bytes.substr(place, width)) + by;
            bytes.replace(place, width, CPLSPrintf("%0*d", static_cast<int>(width), number));
        };
        change(342, 12, c.fileLength);
        change(369, 10, c.imageLength);
        fakes::writeFile(path, bytes.substr(0, bytes.size() - c.lost));
        EXPECT_EQ(whyNotReadable(fileSpecifier(path)), c.isWhole ? "" : "the file is cut short");
    }
}

}  // namespace
