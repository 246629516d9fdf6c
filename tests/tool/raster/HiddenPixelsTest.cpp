#include <gmock/gmock.h>

#include <cstdint>

#include "tests/tool/raster/RasterExports.h"

// Pixels without data: by value, by mask, and outside of a band.

namespace kestms {
namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(RasterExport, PixelsWithoutDataStaySo) {
    const fakes::Raster raster{.type = GDT_Int16};
    // Samples (7x + 13y + 31) % 251 - 120: -82 is at 1, 0 and -69 at 1, 1.
    const Strings files = {withNoData(write("a_01.tif", raster), -82),
                           withNoData(write("a_02.tif", raster), -69)};
    const json masked = infoOf({"export"}, files);
    EXPECT_THAT(said_, HasSubstr("different no-data values: one mask shows where all"));
    EXPECT_EQ(masked["bands"][0]["mask"]["flags"], json{"PER_DATASET"});
    const std::vector<double> mask = maskOf(directory_ / "out.tif", 12 * 8);
    EXPECT_EQ(mask.at(1), 0);
    EXPECT_EQ(std::count(mask.begin(), mask.end(), 0), 2);
    for (const char* command : {"vrt", "export"}) {
        const json one = infoOf({command, "--nodata", "1234"}, files);
        const std::string output = one["description"];
        EXPECT_EQ(one["bands"][1]["noDataValue"], 1234);
        EXPECT_EQ(gdalPixels(output, 1).at(1), 1234);
        EXPECT_EQ(gdalPixels(output, 2).at(1), -82);
        EXPECT_EQ(gdalPixels(output, 2).at(13), 1234);
        EXPECT_EQ(said_, "");
        // -62 and -49, which are 20 more than what each band has for nothing, stand there once.
        infoOf({command, "--nodata", "-62"}, files);
        EXPECT_THAT(said_, HasSubstr("pixels with data that have the value -62 lose it: 1 in B01, "
                                     "1 in B02"));
        infoOf({command, "--nodata", "-69", "--window", "0,0,1,5"}, files);
        EXPECT_EQ(said_, "");
    }
    EXPECT_EQ(
        runTool({"vrt", files[0], files[1], "--nodata", "0.5", "-o", directory_ / "x.vrt"}).code,
        2);
}

TEST_F(RasterExport, ANoDataValueThatSamplesCannotHaveIsLeftOut) {
    const auto valued = [this](const fakes::Raster& raster, const std::string& value) {
        const std::string path = withNoData(write("a_01.tif", raster), 100);
        std::string bytes = fakes::readFile(path);
        // GDAL would clamp the value.
        bytes.replace(bytes.rfind("100"), value.size(), value);
        fakes::writeFile(path, bytes);
        return Strings{path, write("a_02.tif", raster)};
    };
    const fakes::Raster bytes;
    const fakes::Raster words{.type = GDT_UInt16};
    const fakes::Raster shorts{.type = GDT_Int16};
    for (const auto& [raster, value] :
         {std::pair(bytes, "-99"), {bytes, "nan"}, {words, "0.5"}, {shorts, "9e9"}}) {
        const Strings files = valued(raster, value);
        for (const char* command : {"vrt", "export"}) {
            const json written = infoOf({command}, files);
            EXPECT_THAT(said_, HasSubstr("is left out, since its samples cannot have it")) << value;
            EXPECT_FALSE(written["bands"][0].contains("noDataValue")) << value;
            EXPECT_EQ(written["bands"][0]["checksum"], gdalInfo(files[0])["bands"][0]["checksum"]);
            EXPECT_EQ(infoOf({command, "--nodata", "7"}, files)["bands"][0]["noDataValue"], 7);
        }
        EXPECT_EQ(
            runTool({"quicklook", files[0], files[1], "-o", directory_ / "q.png", "--overwrite"})
                .code,
            0);
    }
}

/// Hides the pixels that one more mask hides.
void hide(std::vector<double>& all, const std::vector<double>& mask) {
    std::transform(all.begin(), all.end(), mask.begin(), all.begin(),
                   [](double a, double b) { return std::min(a, b); });
}

/// Several windows, the last ones cut off by the edges.
TEST_F(RasterExport, LargeRastersAreCopiedInParts) {
    const fakes::Raster raster{.width = 300, .height = 1300, .type = GDT_UInt16};
    Strings files;
    std::vector<double> hidden(300 * 1300, 255);
    for (int i = 0; i < 3; ++i) {
        files.push_back(withNoData(write("a_0" + std::to_string(i + 1) + ".tif", raster), i));
        hide(hidden, maskOf(files.back(), hidden.size()));
    }
    for (const Strings& how : {Strings{}, {"--co", "INTERLEAVE=PIXEL"}, {"--cog"}}) {
        const json made = infoOf(joined({"export"}, how), files);
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(made["bands"][i]["checksum"], gdalInfo(files[i])["bands"][0]["checksum"]);
        }
        EXPECT_EQ(maskOf(directory_ / "out.tif", hidden.size()), hidden);
    }
}

TEST_F(RasterExport, MasksAndWhatIsNotCoveredAreKept) {
    const fakes::Raster wide{.width = 40};
    fakes::Raster moved = wide;
    moved.transform = {500030, 30, 0, 4600000, 0, -30};
    const Strings files = {write("a_01.tif", wide), write("a_02.tif", moved),
                           write("a_03.tif", wide)};
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    fakes::changeRaster(files[2], [](GDALDataset& file) {
        file.CreateMaskBand(GMF_PER_DATASET);
        file.GetRasterBand(1)->GetMaskBand()->Fill(255);
        std::uint8_t hidden = 0;
        EXPECT_EQ(file.GetRasterBand(1)->GetMaskBand()->RasterIO(GF_Write, 5, 5, 1, 1, &hidden, 1,
                                                                 1, GDT_Byte, 0, 0, nullptr),
                  CE_None);
    });
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
    fakes::writeFile(files[0] + ".msk", "whatever");
    ASSERT_EQ(infoOf({"vrt"}, files)["size"], (json{41, 8}));
    EXPECT_THAT(said_, HasSubstr("a_01.tif.msk: masks of their own files are not carried"));
    const Strings picture = {"quicklook", files[0], files[1], "-o", directory_ / "q.png"};
    EXPECT_THAT(runTool(picture).err, HasSubstr("a_01.tif.msk: masks of their own files"));
    infoOf({"export"}, files);
    EXPECT_THAT(said_, HasSubstr("the bands have masks: one mask"));
    std::vector<double> all(41 * 8, 255);
    for (int band = 1; band <= 3; ++band) {
        const std::vector<double> mask =
            maskOf(directory_ / "out.vrt", all.size(), "mask," + std::to_string(band));
        EXPECT_EQ(mask[0] == 0, band == 2);
        EXPECT_EQ(mask[5 * 41 + 5] == 0, band == 3);
        EXPECT_EQ(mask[40] == 0, band != 2);
        hide(all, mask);
    }
    EXPECT_EQ(maskOf(directory_ / "out.tif", all.size()), all);
    // Only one of four pixels is hidden, that under the centre.
    infoOf({"vrt", "--resolution", "60", "--resampling", "average"}, {files[0], files[2]});
    EXPECT_GT(maskOf(directory_ / "out.vrt", 20 * 4, "mask,2")[2 * 20 + 2], 0);
    const std::string alpha = fakes::changeRaster(
        write("b.tif", {.bands = 2}),
        [](GDALDataset& file) { file.GetRasterBand(2)->SetColorInterpretation(GCI_AlphaBand); });
    infoOf({"vrt", "--bands", "#0"}, {alpha});
    const std::vector<double> opaque = gdalPixels(alpha, 2);
    EXPECT_EQ(maskOf(directory_ / "out.vrt", opaque.size(), "mask,1"), opaque);
}

}  // namespace
}  // namespace kestms
