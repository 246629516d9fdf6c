#include <gmock/gmock.h>

#include "tests/tool/raster/RasterExports.h"
#include "tool/scene/InputText.h"

namespace kestms {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// As in Landsat products: the centres of coarse pixels are those of fine ones.
const fakes::Raster kFine{.width = 40,
                          .height = 40,
                          .type = GDT_UInt16,
                          .transform = {{500000 - 7.5, 15, 0, 4600000 - 7.5, 0, -15}}};
const fakes::Raster kCoarse{.width = 20, .height = 20, .type = GDT_UInt16};

/// Of a field with one bright pixel. Cubic convolution darkens those around it.
constexpr double kField = 1000;
constexpr double kMark = 6000;

std::string marked(const std::string& path, int column, int row) {
    return fakes::changeRaster(path, [column, row](GDALDataset& file) {
        GDALRasterBand& band = *file.GetRasterBand(1);
        band.Fill(kField);
        double mark = kMark;
        EXPECT_EQ(
            band.RasterIO(GF_Write, column, row, 1, 1, &mark, 1, 1, GDT_Float64, 0, 0, nullptr),
            CE_None);
    });
}

/// The centre of the brightness beyond that of the field, in the world.
std::pair<double, double> placeOfMark(const json& info, int band) {
    const std::string raster = info["description"];
    const std::size_t width = info["size"][0];
    const std::vector<double> pixels = gdalPixels(raster, band);
    double weight = 0;
    double x = 0;
    double y = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        weight += pixels[i] - kField;
        x += (pixels[i] - kField) * (static_cast<double>(i % width) + 0.5);
        y += (pixels[i] - kField) * (static_cast<double>(i / width) + 0.5);
    }
    const auto& grid = info["geoTransform"];
    return {grid[0].get<double>() + x / weight * grid[1].get<double>(),
            grid[3].get<double>() + y / weight * grid[5].get<double>()};
}

TEST_F(RasterExport, NothingMovesOnTheSharedGrid) {
    fakes::Raster moved = kFine;
    (*moved.transform)[0] += 4.5;
    const Strings files = {marked(write("pan_01.tif", kFine), 17, 12),
                           marked(write("red_02.tif", kCoarse), 8, 6),
                           marked(write("nir_03.tif", moved), 20, 20)};
    std::vector<std::pair<double, double>> own;
    for (const std::string& file : files) {
        own.push_back(placeOfMark(gdalInfo(file), 1));
    }
    for (const char* how : {"nearest", "bilinear", "cubic", "average"}) {
        for (const char* command : {"vrt", "export"}) {
            const json info = infoOf({command, "--resampling", how}, files);
            EXPECT_THAT(said_, HasSubstr("one grid of 15 m: 1 band resampled (" + std::string(how) +
                                         "), 1 band moved by parts of a pixel"));
            for (int band = 1; band <= 3; ++band) {
                const auto [x, y] = placeOfMark(info, band);
                const auto [ownX, ownY] = own[static_cast<std::size_t>(band) - 1];
                const double most = band == 1 || how != std::string("nearest") ? 0.02 : 7.5001;
                EXPECT_NEAR(x, ownX, most) << command << band << how;
                EXPECT_NEAR(y, ownY, most) << command << band << how;
            }
        }
    }
    // Nor do the bands that have the size asked for, whichever is the finest.
    EXPECT_EQ(infoOf({"export", "--resolution", "30"}, files)["geoTransform"][0], 500000);
    EXPECT_THAT(said_, HasSubstr("one grid of 30 m: 2 bands resampled (nearest)\n"));
    // The corners of the bands in the virtual raster.
    const std::string text = fakes::readFile(directory_ / "out.vrt");
    for (const char* place :
         {"<DstRect xOff=\"0\" yOff=\"0\" xSize=\"40\" ySize=\"40\"",
          "<DstRect xOff=\"0.5\" yOff=\"-0.5\" xSize=\"40\" ySize=\"40\"", "<DstRect xOff=\"0.3"}) {
        EXPECT_THAT(text, HasSubstr(place));
    }
}

/// A set may have slightly rotated bands, a raster may not.
TEST_F(RasterExport, BandsAcrossTheGridAreRefused) {
    fakes::Raster raster{.height = 12};
    const Strings files = {write("a.tif", raster), directory_ / "b.tif"};
    for (const auto& [slope, code] : {std::pair(1.2, 0), std::pair(1.4, 1)}) {
        raster.transform = {500000, 30, 0, 4600000, slope, -30};
        write("b.tif", raster);
        const Outcome outcome =
            runTool(joined({"vrt", "-o", directory_ / "out.vrt", "--overwrite"}, files));
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.err.find("does not lie on the grid") != std::string::npos, code != 0);
    }
}

TEST_F(RasterExport, ABoxOnARotatedGridIsWhole) {
    const fakes::Raster rotated{
        .width = 40, .height = 40, .transform = {{500000, 26, 15, 4600000, 15, -26}}};
    const Strings files = {write("a_01.tif", rotated), write("a_02.tif", rotated)};
    const std::string box = "500700,4599800,501000,4600100";
    const json info = infoOf({"export", "--bbox", box}, files);
    std::array<double, 6> grid{};
    std::array<double, 6> inverse{};
    std::copy(info["geoTransform"].begin(), info["geoTransform"].end(), grid.begin());
    ASSERT_TRUE(GDALInvGeoTransform(grid.data(), inverse.data()));
    for (const double x : {500700, 501000}) {
        for (const double y : {4599800, 4600100}) {
            const double column = inverse[0] + x * inverse[1] + y * inverse[2];
            const double row = inverse[3] + x * inverse[4] + y * inverse[5];
            EXPECT_TRUE(column >= 0 && column <= info["size"][0]) << x << " " << y;
            EXPECT_TRUE(row >= 0 && row <= info["size"][1]) << x << " " << y;
        }
    }
}

TEST_F(RasterExport, GridsAndPartsAreThoseAskedFor) {
    fakes::Raster fine = kFine;
    fine.transform = {500000, 15, 0, 4600000, 0, -15};
    const Strings files = {write("a_01.tif", fine), write("a_02.tif", kCoarse)};
    struct Case {
        Strings options;
        double size;
        json pixels;
        double left;
    };
    const Case cases[] = {
        {{}, 15, {40, 40}, 500000},
        {{"--resolution", "finest"}, 15, {40, 40}, 500000},
        {{"--resolution", "coarsest"}, 30, {20, 20}, 500000},
        {{"--resolution", "7.5"}, 7.5, {80, 80}, 500000},
        {{"--bbox", "500031,4599900,500100,4599970"}, 15, {5, 5}, 500030},
        {{"--window", "2,3,10,9"}, 15, {10, 9}, 500030},
        {{"--window", "2,3,1000,9"}, 15, {38, 9}, 500030},
        {{"--bbox", "0,0,500031,9e6"}, 15, {3, 40}, 500000},
        {{"--bands", "2"}, 30, {20, 20}, 500000},
    };
    for (const auto& [options, size, pixels, left] : cases) {
        for (const char* command : {"vrt", "export"}) {
            const json info = infoOf(joined({command}, options), files);
            EXPECT_EQ(info["geoTransform"][1], size) << options.size();
            EXPECT_EQ(info["geoTransform"][0], left);
            EXPECT_EQ(info["size"], pixels);
        }
    }
    const Strings wrong[] = {{"--bbox", "1,2,3,4"},
                             {"--bbox", "1,2,3"},
                             {"--bbox", "1,2,3,4,5"},
                             {"--bbox", "1,2,x,4"},
                             {"--resolution", "-3"},
                             {"--resolution", "fine"},
                             {"--resolution", "1e-9"},
                             {"--window", "40,0,5,5"},
                             {"--window", "0,0,0,5"},
                             {"--nodata", "x"},
                             {"--split", "--resolution", "3"},
                             {"--bbox", "500060,0,500030,9e6"},
                             {"--bbox", "nan,0,500060,9e6"},
                             {"--window", "5,5,-2,3"},
                             {"--co", "TILED=YES", "--co", "tiled=NO"},
                             {"--co", "COMPRESS=LZW", "--compress", "NONE"}};
    for (const Strings& options : wrong) {
        const Strings command = joined({"export", "-o", directory_ / "none.tif"}, files);
        EXPECT_EQ(runTool(joined(command, options)).code, 2) << options[1];
    }
    EXPECT_THAT(runTool(joined({"vrt", "-o", "-", "--bbox", "1,2,3,4"}, files)).err,
                testing::HasSubstr("which covers 500000,4599400,500600,4600000 in"));
    // In whole pixels of each file.
    const Strings split = {"vrt", "--split", "--window", "2,5,3,4", "-o", directory_ / "s.vrt"};
    const Strings names = {directory_ / "s_15m.vrt", directory_ / "s_30m.vrt"};
    EXPECT_EQ(linesOf(runTool(joined(split, files)).out), names);
    EXPECT_EQ(gdalInfo(names[0])["geoTransform"], (json{500030, 15, 0, 4599925, 0, -15}));
    EXPECT_EQ(gdalInfo(names[1])["geoTransform"], (json{500030, 30, 0, 4599940, 0, -30}));
    EXPECT_EQ(gdalInfo(names[1])["size"], (json{2, 3}));
}

}  // namespace
}  // namespace kestms
