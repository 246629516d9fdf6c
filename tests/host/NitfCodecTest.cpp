#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "Opened.h"
#include "host/codecs/Readability.h"

namespace {

using namespace Pyxis;

class NitfCodec : public testing::Test {
  protected:
    /// The band's letter by way of the codec's numbered property.
    static std::string letterOf(const std::string& path, int frame) {
        const auto* codec = dynamic_cast<const NITFFormatCodec*>(codecOf(path));
        StringBuffer name;
        codec->getPropertyName(10, name);
        FileReadDescriptor file(fileSpecifier(path), codec);
        EXPECT_TRUE(file.setFrame(frame));
        const std::unique_ptr<FormatCodecPropertyInterface> found(file.getProperty(name));
        StringBuffer value;
        dynamic_cast<const FormatCodecStringProperty&>(*found).getValue(value);
        return toUtf8(value);
    }

    fakes::TempDirectory directory;
    StandardCodecs codecs;
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
            EXPECT_EQ(opened.property<GeoTiffCorrelation>(), nullptr);
            const auto* geo = opened.property<FormatCodecGeoCorrelation>();
            ASSERT_NE(geo, nullptr);
            int code = 0;
            geo->getCoordinateSystemCode(code);
            EXPECT_EQ(code, 32632);
            Point3d origin;
            geo->getOrigin(origin);
            EXPECT_NEAR(origin.x, 500000, 0.5);
            EXPECT_NEAR(origin.y, 4600000 - 8 * 30, 0.5);
        }
    }
}

TEST_F(NitfCodec, TurnedAndSkewedRastersGiveTheirCorners) {
    fakes::Raster raster = nitf(1, {});
    raster.transform = {{500000, 300, 400, 4600000, 400, -300}};
    const Opened turned(fakes::writeRaster(directory / "turned.ntf", raster));
    EXPECT_EQ(turned.property<GeoTiffCorrelation>(), nullptr);
    EXPECT_NE(turned.property<FormatCodecGeoCorrelation>(), nullptr);
    // Rotation cannot tell these.
    for (const auto& transform : {std::array<double, 6>{500000, 240, 100, 4600000, 70, -250},
                                  {500000, 300, 200, 4600000, 400, -150}}) {
        raster.transform = transform;
        const Opened skewed(fakes::writeRaster(directory / "skewed.ntf", raster));
        const auto* geo = skewed.property<GeoTiffCorrelation>();
        ASSERT_NE(geo, nullptr);
        EXPECT_NEAR(geo->getUpperLeft().x, 500000, 0.5);
        EXPECT_NEAR(geo->getLowerRight().x, 500000 + 12 * transform[1] + 8 * transform[2], 0.5);
        EXPECT_NEAR(geo->getLowerRight().y, 4600000 + 12 * transform[4] + 8 * transform[5], 0.5);
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

}  // namespace
