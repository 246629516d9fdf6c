#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

class TiffCodec : public OnFiles {};

TEST_F(TiffCodec, FramesShowLayoutAndPixelsOfTheirBands) {
    const struct {
        fakes::Raster raster;
        std::int32_t model = 0, bits = 0, format = 0;
    } cases[] = {
        {{.bands = 3}, 0, 8, 1},
        {{.palette = true}, 1, 8, 1},
        {{.type = GDT_UInt16, .options = {"TILED=YES", "BIGTIFF=YES"}}, 0, 16, 1},
        {{.bands = 2, .type = GDT_Int16, .options = {"ENDIANNESS=BIG"}}, 0, 16, 2},
        {{.type = GDT_Byte, .options = {"PIXELTYPE=SIGNEDBYTE"}}, 0, 8, 2},
        {{.type = GDT_CFloat32}, 0, 64, 3},
        {{.type = GDT_Float32}, 4, 32, 4},
        {{.type = GDT_Float64}, 4, 64, 4},
    };
    for (const auto& c : cases) {
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

/// Upper left, upper right, lower left, lower right.
using Corners = std::array<Point2d, 4>;

/// The corners as computed without GeoTIFF's own.
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

TEST_F(TiffCodec, CornersComeFromTheGeotransformAsInOtherFormats) {
    const struct {
        const char* name;
        const char* driver;
        std::array<double, 6> transform;
        double pixelX, pixelY;
        bool formulaHolds;  // origin, size and rotation cannot express a shear
    } cases[] = {
        {"upright", "GTiff", {500000, 30, 0, 4600000, 0, -20}, 30, 20, true},
        {"rotated", "GTiff", {100, 3, 4, 200, 4, -3}, 5, 5, true},
        {"mirrored", "GTiff", {100, 3, 0, 200, 0, 3}, 3, 3, true},
        {"mirrored and rotated", "GTiff", {100, 3, -4, 200, 4, 3}, 5, 5, true},
        {"upside down", "GTiff", {100, -3, 0, 200, 0, 3}, 3, 3, true},
        {"sheared", "GTiff", {100, 3, 1, 200, 0, -2}, 3, std::sqrt(5.0), false},
        {"rotated", "NITF", {500000, 300, 400, 4600000, 400, -300}, 500, 500, true},
        {"skewed", "NITF", {500000, 240, 100, 4600000, 70, -250}, 250, 269.258, false},
        {"one more", "NITF", {500000, 300, 200, 4600000, 400, -150}, 500, 250, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.driver) + " " + c.name);
        const bool isTiff = c.driver == std::string("GTiff");
        fakes::Raster raster{.transform = c.transform, .driver = c.driver};
        if (!isTiff) {
            raster.options = {"ICORDS=N"};
        }
        const Opened opened(fakes::writeRaster(directory / "raster", raster));
        const auto* geo = opened.property<FormatCodecGeoCorrelation>();
        ASSERT_NE(geo, nullptr);
        EXPECT_EQ(geo->getIdentifier(),
                  FormatCodecPropertyInterface::PropertyIdentifier::GeoCorrelation);
        EXPECT_FALSE(geo->getName().isZero() || geo->getDescription().isZero());
        const double exact = isTiff ? 1e-6 : 0.5;  // NITF writes whole metres
        Vector2d size;
        geo->getPixelSize(size);
        EXPECT_NEAR(size.x, c.pixelX, exact);
        EXPECT_NEAR(size.y, c.pixelY, exact);
        const auto expectCorners = [&](const Corners& found) {
            const auto& t = c.transform;  // the raster has 12 columns and 8 lines
            for (const int i : {0, 1, 2, 3}) {
                const int column = i % 2 == 0 ? 0 : 12;
                const int line = i < 2 ? 0 : 8;
                const Point2d& corner = found.at(static_cast<std::size_t>(i));
                EXPECT_NEAR(corner.x, t[0] + column * t[1] + line * t[2], exact) << i;
                EXPECT_NEAR(corner.y, t[3] + column * t[4] + line * t[5], exact) << i;
            }
        };
        const auto* own = opened.property<GeoTiffCorrelation>();
        ASSERT_EQ(own != nullptr, isTiff || !c.formulaHolds);
        if (own != nullptr) {
            expectCorners({own->getUpperLeft(), own->getUpperRight(), own->getLowerLeft(),
                           own->getLowerRight()});
        }
        if (c.formulaHolds) {
            expectCorners(cornersByFormula(*geo));
        }
    }
}

TEST_F(TiffCodec, PublishesWhatTheFileSaysOfItsPlace) {
    const auto placeOf = [&](const fakes::Raster& raster) {
        return Opened(fakes::writeRaster(directory / "raster.tif", raster)).place();
    };
    EXPECT_EQ(placeOf({}), "500000 4599760, 32632 PROJCRS[");
    EXPECT_EQ(placeOf({.epsg = 4326}), "500000 4599760, 4326 GEOGCRS[");
    EXPECT_EQ(placeOf({.epsg = 0}), "500000 4599760, -1 ");
    EXPECT_EQ(placeOf({.transform = std::nullopt}), "none");

    const std::string beside = fakes::writeRaster(directory / "b.tif", {.transform = std::nullopt});
    fakes::writeFile(directory / "b.TFW", "30\n0\n0\n-30\n1015\n1985\n");
    EXPECT_EQ(Opened(beside).place(), "1000 1760, 32632 PROJCRS[");

    // Ground control points alone.
    const std::string path =
        fakes::writeRaster(directory / "points.tif", {.transform = std::nullopt, .epsg = 0});
    fakes::changeRaster(path, [](GDALDataset& file) {
        char none[] = "";
        const GDAL_GCP points[] = {{none, none, 0, 0, 500000, 4600000, 0},
                                   {none, none, 12, 0, 500360, 4600000, 0},
                                   {none, none, 12, 8, 500360, 4599760, 0}};
        OGRSpatialReference system;
        system.importFromEPSG(32632);
        ASSERT_EQ(file.SetGCPs(3, points, &system), CE_None);
    });
    EXPECT_EQ(Opened(path).place(), "none");
}

TEST(BandList, MakesAQuickBirdFileUnlessItsCodecIsAway) {
    const fakes::TempDirectory directory;
    const auto described = [&](const std::string& text) {
        return fakes::writeRaster(directory / "described.tif", {.description = text});
    };
    const std::string list = "{\n  bandList = \n(3, 2, 1)\n}";
    {
        const StandardCodecs codecs;
        EXPECT_EQ(numberedProperty<QBTiffFormatCodec>(9, described(list)), list);
        for (const char* other :
             {"scene", "{\n  bandList =\n(3, 2, 1)\n}", "a {\n  bandList = \n"}) {
            EXPECT_EQ(numberedProperty<TiffFormatCodec>(9, described(other)), other);
        }
        EXPECT_EQ(numberedProperty<TiffFormatCodec>(9, described("")), "none");
    }
    const StandardCodecs codecs(StandardCodecs::QuickBird::Without);
    EXPECT_EQ(numberedProperty<TiffFormatCodec>(9, described(list)), list);
}

TEST_F(TiffCodec, WindowsAreReadOrRefused) {
    const std::string path = fakes::writeRaster(
        directory / "raster.tif", {.bands = 1, .type = GDT_Int16, .options = {"TILED=YES"}});
    const Opened opened(path);
    alignas(8) std::array<unsigned char, 64> buffer{};
    struct Case {
        const char* name = "";
        PixelRequest request;
        bool readable = false;
    };
    const auto window = [&](int x, int y, int width, int height) {
        PixelRequest request{x, y, width, height, 2, 2};
        request.buffer = buffer.data();
        request.bufferBytes = buffer.size();
        return request;
    };
    const auto with = [&](auto change) {
        PixelRequest request = window(1, 2, 2, 2);
        change(request);
        return request;
    };
    constexpr int kMax = std::numeric_limits<int>::max();
    constexpr std::ptrdiff_t kFar = std::numeric_limits<std::ptrdiff_t>::max();
    const Case cases[] = {
        {"last corner", window(10, 6, 2, 2), true},
        {"past the right", window(11, 6, 2, 2), false},
        {"past the bottom", window(10, 7, 2, 2), false},
        {"negative", window(-1, 0, 2, 2), false},
        {"empty", window(0, 0, 0, 2), false},
        {"overflow", window(1, 1, kMax, kMax), false},
        {"exact room", with([](auto& r) { r.bufferBytes = 8; }), true},
        {"a byte short", with([](auto& r) { r.bufferBytes = 7; }), false},
        {"no buffer", with([](auto& r) { r.buffer = nullptr; }), false},
        {"no buffer lines", with([](auto& r) { r.bufferHeight = 0; }), false},
        {"huge buffer", with([](auto& r) { r.bufferWidth = r.bufferHeight = kMax; }), false},
        {"strides", with([](auto& r) { r.pixelStride = 4, r.lineStride = 58; }), true},
        {"stride past the end", with([](auto& r) { r.pixelStride = 4, r.lineStride = 59; }), false},
        {"overlapping samples", with([](auto& r) { r.pixelStride = 1; }), false},
        {"backward", with([](auto& r) { r.lineStride = -4; }), false},
        {"endless stride", with([](auto& r) { r.pixelStride = kFar; }), false},
        {"endless line", with([](auto& r) { r.lineStride = kFar; }), false},
        {"bytes", with([](auto& r) { r.sampleBits = 8; }), true},
        {"odd size", with([](auto& r) { r.sampleBits = 12; }), false},
    };
    for (const Case& c : cases) {
        PixelRequest request = c.request;
        EXPECT_EQ(opened.frame->frameOp13(0, &request), c.readable) << c.name;
    }
    EXPECT_FALSE(opened.frame->frameOp13(0, nullptr));

    PixelRequest request = with([](auto& r) {
        r.pixelStride = 8, r.lineStride = 16;
        r.sampleFormat = SampleFormat::FloatingPoint, r.sampleBits = 32;
    });
    EXPECT_FALSE(opened.frame->frameOp13(1, &request));
    ASSERT_TRUE(opened.frame->frameOp13(0, &request));
    for (int i = 0; i < 4; ++i) {
        float sample = 0;
        std::memcpy(&sample, &buffer.at(static_cast<std::size_t>(i) * 8), sizeof sample);
        EXPECT_EQ(sample, fakes::sampleAt(1, 1 + i % 2, 2 + i / 2, true));
    }
}

TEST_F(TiffCodec, ShowsReducedLevelsRangeAndColours) {
    const std::string path = fakes::writeRaster(directory / "raster.tif", {.palette = true});
    fakes::changeRaster(path, [](GDALDataset& file) {
        const int half = 2;
        file.GetRasterBand(1)->SetNoDataValue(9);
        ASSERT_EQ(file.BuildOverviews("NEAREST", 1, &half, 0, nullptr, nullptr, nullptr), CE_None);
    });
    const Opened opened(path);
    EXPECT_EQ(opened.frame->frameOp8(), 1);
    EXPECT_TRUE(opened.frame->frameOp1(0) && opened.frame->frameOp1(1));
    EXPECT_FALSE(opened.frame->frameOp1(2) || opened.frame->frameOp1(-1));
    std::array<unsigned char, 24> bytes{};
    PixelRequest request{0, 0, 6, 4, 6, 4};
    request.buffer = bytes.data();
    request.bufferBytes = bytes.size();
    EXPECT_TRUE(opened.frame->frameOp13(1, &request));
    request.width = 7;
    EXPECT_FALSE(opened.frame->frameOp13(1, &request));
    ChannelRange range;
    opened.frame->frameOp11(1, &range);
    EXPECT_EQ(range.maximum, 0);
    opened.frame->frameOp11(0, &range);
    EXPECT_EQ(range.maximum, 255);
    EXPECT_TRUE(range.hasNoData && range.noData == 9);
    const ColourTable* colours = opened.frame->frameOp12();
    ASSERT_NE(colours, nullptr);
    EXPECT_EQ(std::vector(colours->entries + 4, colours->entries + 8),
              (std::vector<std::uint8_t>{255, 1, 2, 255}));
}

}  // namespace
