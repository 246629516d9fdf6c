#include <gdal_priv.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "tests/tool/raster/RasterExports.h"

// Pixels without data: by value, by mask, and outside of a band.

namespace kestms {
namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST_F(RasterExport, PixelsWithoutDataStaySo) {
    const auto withNoData = [this](const std::string& name, double value) {
        const std::string path = write(name, {.type = GDT_Int16});
        change(path, [value](GDALDataset& file) { file.GetRasterBand(1)->SetNoDataValue(value); });
        return path;
    };
    // Samples (7x + 13y + 31) % 251 - 120: -82 is at 1, 0 and -69 at 1, 1.
    const Strings files = {withNoData("a_01.tif", -82), withNoData("a_02.tif", -69)};
    const json masked = infoOf({"export"}, files);
    EXPECT_THAT(said_, HasSubstr("different no-data values: one mask shows where all"));
    EXPECT_EQ(masked["bands"][0]["mask"]["flags"], json{"PER_DATASET"});
    const std::vector<double> mask = gdalPixels(directory_ / "out.tif", 1, {"-b", "mask"});
    EXPECT_EQ(mask.at(12 * 8 + 1), 0);
    EXPECT_EQ(std::count(mask.begin() + 12 * 8, mask.end(), 0), 2);
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
    const auto withNoData = [this](const fakes::Raster& raster, const std::string& value) {
        const std::string path = write("a_01.tif", raster);
        change(path, [](GDALDataset& file) { file.GetRasterBand(1)->SetNoDataValue(100); });
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
        const Strings files = withNoData(raster, value);
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

/// Several windows, the last ones cut off by the edges.
TEST_F(RasterExport, LargeRastersAreCopiedInParts) {
    const fakes::Raster raster{.width = 300, .height = 1300, .type = GDT_UInt16};
    const Strings files = {write("a_01.tif", raster), write("a_02.tif", raster),
                           write("a_03.tif", raster)};
    for (std::size_t i = 0; i < files.size(); ++i) {
        change(files[i], [i](GDALDataset& file) {
            file.GetRasterBand(1)->SetNoDataValue(static_cast<double>(i));
        });
    }
    std::vector<double> hidden(300 * 1300, 255);
    for (const std::string& file : files) {
        const std::vector<double> own = gdalPixels(file, 1, {"-b", "mask"});
        std::transform(hidden.begin(), hidden.end(), own.end() - 300 * 1300, hidden.begin(),
                       [](double a, double b) { return std::min(a, b); });
    }
    for (const Strings& how : {Strings{}, {"--co", "INTERLEAVE=PIXEL"}, {"--cog"}}) {
        const json made = infoOf(joined({"export"}, how), files);
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(made["bands"][i]["checksum"], gdalInfo(files[i])["bands"][0]["checksum"]);
        }
        const std::vector<double> mask =
            gdalPixels(directory_ / "out.tif", 1, {"-b", "mask", "-co", "INTERLEAVE=BSQ"});
        EXPECT_EQ(std::vector<double>(mask.end() - 300 * 1300, mask.end()), hidden);
    }
}

TEST_F(RasterExport, MasksAndWhatIsNotCoveredAreKept) {
    const fakes::Raster wide{.width = 40};
    fakes::Raster moved = wide;
    moved.transform = {500030, 30, 0, 4600000, 0, -30};
    const Strings files = {write("a_01.tif", wide), write("a_02.tif", moved),
                           write("a_03.tif", wide)};
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    change(files[2], [](GDALDataset& file) {
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
    infoOf({"export"}, files);
    EXPECT_THAT(said_, HasSubstr("the bands have masks: one mask"));
    std::vector<double> all(41 * 8, 255);
    for (int band = 1; band <= 3; ++band) {
        const std::vector<double> own =
            gdalPixels(directory_ / "out.vrt", band, {"-b", "mask," + std::to_string(band)});
        const std::vector<double> mask(own.end() - 41 * 8, own.end());
        EXPECT_EQ(mask[0] == 0, band == 2);
        EXPECT_EQ(mask[5 * 41 + 5] == 0, band == 3);
        EXPECT_EQ(mask[40] == 0, band != 2);
        std::transform(all.begin(), all.end(), mask.begin(), all.begin(),
                       [](double a, double b) { return std::min(a, b); });
    }
    const std::vector<double> written = gdalPixels(directory_ / "out.tif", 1, {"-b", "mask"});
    EXPECT_EQ(std::vector<double>(written.end() - 41 * 8, written.end()), all);
}

}  // namespace
}  // namespace kestms
