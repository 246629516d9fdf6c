#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "tests/tool/raster/RasterExports.h"

namespace kestms {
namespace {

using testing::HasSubstr;

const Strings kAsWritten = {"TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=2", "ZLEVEL=9"};

/// Offset and length of the last tile, as GDAL finds them.
std::pair<std::size_t, std::size_t> lastTile(const std::string& path) {
    const GDALDatasetUniquePtr file(GDALDataset::Open(path.c_str()));
    GDALRasterBand& band = *file->GetRasterBand(1);
    int width = 0;
    int height = 0;
    band.GetBlockSize(&width, &height);
    const std::string place = std::to_string((band.GetXSize() - 1) / width) + "_" +
                              std::to_string((band.GetYSize() - 1) / height);
    const auto number = [&](const std::string& item) {
        const char* text = band.GetMetadataItem((item + place).c_str(), "TIFF");
        return text != nullptr ? std::stoul(text) : 0;
    };
    return {number("BLOCK_OFFSET_"), number("BLOCK_SIZE_")};
}

class TileCopies : public RasterExport {
  protected:
    /// Two components of several tiles, those at the edges not full.
    Strings components(const Strings& options, GDALDataType type = GDT_UInt16) const {
        const fakes::Raster raster{.width = 300, .height = 700, .type = type, .options = options};
        return {write("a_01.tif", raster), write("a_02.tif", raster)};
    }
    std::string output() const { return directory_ / "out.tif"; }
};

TEST_F(TileCopies, TilesAreCopiedAsTheyAreWhereBothFilesStoreThemAlike) {
    const struct {
        Strings source;
        Strings options;
        bool isCopied;
        GDALDataType type = GDT_UInt16;
    } kRows[] = {
        {kAsWritten, {}, true},
        {joined(kAsWritten, {"COPY_SRC_OVERVIEWS=YES", "BIGTIFF=YES"}), {}, true},
        {{"TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=3"}, {}, true, GDT_Float32},
        {{"TILED=YES"}, {"--compress", "none"}, true},
        {{"TILED=YES", "COMPRESS=ZSTD", "PREDICTOR=2"}, {"--compress", "zstd"}, true, GDT_Int16},
        {{"TILED=YES", "COMPRESS=LZW", "PREDICTOR=2"}, {}, false},
        {{"TILED=YES", "COMPRESS=DEFLATE"}, {}, false},
        {joined(kAsWritten, {"ENDIANNESS=BIG"}), {}, false},
        {joined(kAsWritten, {"BLOCKXSIZE=512", "BLOCKYSIZE=512"}), {}, true},
        {joined(kAsWritten, {"BLOCKXSIZE=1024", "BLOCKYSIZE=1024"}), {}, true},
        {joined(kAsWritten, {"BLOCKXSIZE=512"}), {}, false},
        {{"TILED=YES", "COMPRESS=DEFLATE", "NBITS=12"}, {}, false},
        {kAsWritten, {"--nodata", "9"}, true},
        {kAsWritten, {"--co", "PREDICTOR=1"}, false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.source) + testing::PrintToString(row.options));
        const Strings files = components(row.source, row.type);
        const Outcome outcome = runKestms(
            joined(joined({"export", "-o", output(), "--overwrite", "-q"}, row.options), files));
        ASSERT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(gdalPixels(output(), 2), gdalPixels(files[1], 1));
        const auto [offset, length] = lastTile(files[1]);
        const std::string tile = fakes::readFile(files[1]).substr(offset, length);
        EXPECT_EQ(fakes::readFile(output()).find(tile) != std::string::npos, row.isCopied);
    }
}

/// A tile that is written in parts leaves dead bytes.
TEST_F(TileCopies, TilesAreWrittenOnceHoweverHighTheBlocksOfComponentsAre) {
    const std::string output = this->output();
    std::set<std::uintmax_t> sizes;
    for (const char* const rows : {"BLOCKYSIZE=1", "BLOCKYSIZE=600", "BLOCKYSIZE=512"}) {
        const Strings files = components({rows});
        ASSERT_EQ(runKestms(joined({"export", "-o", output, "--overwrite"}, files)).code, 0);
        sizes.insert(std::filesystem::file_size(output));
    }
    EXPECT_THAT(sizes, testing::SizeIs(1));
}

/// Tiles that are missing, and values that change, are no matter of copying.
TEST_F(TileCopies, NoDataStaysNoData) {
    const Strings files = {withNoData(components(kAsWritten)[0], 5), directory_ / "b_02.tif"};
    Strings sparse = {"gdal_create", "-q", "-if", files[0], files[1], "-co", "SPARSE_OK=TRUE"};
    for (const std::string& option : kAsWritten) {
        sparse = joined(sparse, {"-co", option});
    }
    runProgram(sparse);
    ASSERT_EQ(lastTile(files[1]).second, 0U);
    for (const double value : {5.0, 7.0}) {
        const std::string word = std::to_string(static_cast<int>(value));
        ASSERT_EQ(runKestms({"export", "-o", output(), "--overwrite", "--nodata", word, files[0],
                             files[1]})
                      .code,
                  0);
        std::vector<double> expected = gdalPixels(files[0], 1);
        std::replace(expected.begin(), expected.end(), 5.0, value);
        EXPECT_EQ(gdalPixels(output(), 1), expected);
        EXPECT_EQ(gdalPixels(output(), 2), std::vector<double>(expected.size(), value));
    }
}

TEST_F(TileCopies, ATileThatCannotBeUnpackedIsNotHandedOn) {
    const Strings files = components(kAsWritten);
    std::string bytes = fakes::readFile(files[1]);
    const auto [offset, length] = lastTile(files[1]);
    bytes.replace(offset, length, std::string(length, 'x'));
    fakes::writeFile(files[1], bytes);
    const Outcome outcome = runKestms({"export", "-o", output(), files[0], files[1]});
    EXPECT_EQ(outcome.code, 3) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("a_02.tif: its pixels cannot be read"));
    EXPECT_FALSE(std::filesystem::exists(output()));
}

}  // namespace
}  // namespace kestms
