#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "Opened.h"
#include "host/codecs/Readability.h"

namespace {

using namespace Pyxis;

class TiffCodec : public testing::Test {
  protected:
    fakes::TempDirectory directory;
    StandardCodecs codecs;
};

TEST_F(TiffCodec, FramesShowLayoutAndPixelsOfTheirBands) {
    struct Case {
        fakes::Raster raster;
        std::int32_t model, bits, format;
    };
    const Case cases[] = {
        {{.bands = 3}, 0, 8, 1},
        {{.palette = true}, 1, 8, 1},
        {{.type = GDT_UInt16, .options = {"TILED=YES", "BIGTIFF=YES"}}, 0, 16, 1},
        {{.bands = 2, .type = GDT_Int16, .options = {"COMPRESS=DEFLATE", "ENDIANNESS=BIG"}},
         0,
         16,
         2},
        {{.type = GDT_Byte, .options = {"PIXELTYPE=SIGNEDBYTE"}}, 0, 8, 2},
        {{.type = GDT_CFloat32}, 0, 64, 3},
        {{.type = GDT_Float32}, 0, 32, 4},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(GDALGetDataTypeName(c.raster.type));
        const std::string path = fakes::writeRaster(directory / "raster.tif", c.raster);
        const Opened all(path);
        ASSERT_NE(all.image, nullptr) << whyNotReadable(fileSpecifier(path));
        EXPECT_NE(dynamic_cast<const TiffFormatCodec*>(all.codec), nullptr);
        ASSERT_EQ(all.image->getNumFrames(), c.raster.bands);
        EXPECT_EQ(all.image->openFrame(c.raster.bands), nullptr);
        EXPECT_EQ(all.image->openFrame(-1), nullptr);
        for (int i = 0; i < c.raster.bands; ++i) {
            const Opened opened(path, i);
            EXPECT_EQ(opened.frame->getFrameIndex(), i);
            EXPECT_EQ(opened.frame->frameOp4(), c.model);
            EXPECT_EQ(opened.frame->frameOp5(), 1);
            EXPECT_EQ(opened.frame->frameOp6(), c.bits);
            EXPECT_EQ(opened.frame->frameOp7(), c.format);
            EXPECT_EQ(opened.pixels(), gdalPixels(path, i + 1));
        }
    }
}

struct Corners {
    Point2d upperLeft, upperRight, lowerLeft, lowerRight;
};

void expectAt(const Point2d& found, double x, double y, const char* what) {
    EXPECT_NEAR(found.x, x, 1e-6) << what;
    EXPECT_NEAR(found.y, y, 1e-6) << what;
}

/// The corners as users without GeoTIFF's own work them out.
Corners cornersByFormula(const FormatCodecGeoCorrelation& geo) {
    Point3d o;
    Vector2d a, b;
    double r = 0;
    std::int32_t width = 0, height = 0;
    geo.getOrigin(o);
    geo.getUnitScale(a);
    geo.getPixelSize(b);
    geo.getRotation(r);
    geo.getImageSize(width, height);
    const auto map = [&](double u, double v) {
        return Point2d{o.x + a.x * b.x * (std::cos(r) * u - std::sin(r) * v),
                       o.y + a.y * b.y * (std::sin(r) * u + std::cos(r) * v)};
    };
    return {map(0, height), map(width, height), map(0, 0), map(width, 0)};
}

TEST_F(TiffCodec, CornersComeFromTheGeotransform) {
    struct Case {
        const char* name;
        std::array<double, 6> transform;
        double pixelX, pixelY;
        bool formulaHolds;  // a shear cannot be said by origin, size and rotation
    };
    const Case cases[] = {
        {"upright", {500000, 30, 0, 4600000, 0, -20}, 30, 20, true},
        {"rotated", {100, 3, 4, 200, 4, -3}, 5, 5, true},
        {"mirrored", {100, 3, 0, 200, 0, 3}, 3, 3, true},
        {"mirrored and rotated", {100, 3, -4, 200, 4, 3}, 5, 5, true},
        {"upside down", {100, -3, 0, 200, 0, 3}, 3, 3, true},
        {"sheared", {100, 3, 1, 200, 0, -2}, 3, std::sqrt(5.0), false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Opened opened(
            fakes::writeRaster(directory / "raster.tif", {.transform = c.transform}));
        const auto* geo = opened.property<GeoTiffCorrelation>();
        ASSERT_NE(geo, nullptr);
        EXPECT_EQ(geo->getIdentifier(),
                  FormatCodecPropertyInterface::PropertyIdentifier::GeoCorrelation);
        EXPECT_FALSE(geo->getName().isZero() || geo->getDescription().isZero());
        Vector2d size;
        geo->getPixelSize(size);
        EXPECT_DOUBLE_EQ(size.x, c.pixelX);
        EXPECT_DOUBLE_EQ(size.y, c.pixelY);
        const auto expectCorners = [&](const Corners& found) {
            const auto& t = c.transform;  // the raster has 12 columns and 8 lines
            expectAt(found.upperLeft, t[0], t[3], "upper left");
            expectAt(found.upperRight, t[0] + 12 * t[1], t[3] + 12 * t[4], "upper right");
            expectAt(found.lowerLeft, t[0] + 8 * t[2], t[3] + 8 * t[5], "lower left");
            expectAt(found.lowerRight, t[0] + 12 * t[1] + 8 * t[2], t[3] + 12 * t[4] + 8 * t[5],
                     "lower right");
        };
        expectCorners(
            {geo->getUpperLeft(), geo->getUpperRight(), geo->getLowerLeft(), geo->getLowerRight()});
        if (c.formulaHolds) {
            expectCorners(cornersByFormula(*geo));
        }
    }
}

}  // namespace
