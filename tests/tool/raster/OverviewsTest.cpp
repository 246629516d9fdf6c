#include "tests/tool/raster/RasterExports.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// Overviews of other values than the pixels show who reads them.
class Overviews : public RasterExport {
  protected:
    std::string write(const std::string& name, const Strings& options) const {
        const std::string path =
            RasterExport::write(name, {.width = 1200, .height = 1200, .type = GDT_UInt16});
        runProgram(joined({"gdaladdo", "-q"}, joined(options, {path, "4"})));
        return fakes::changeRaster(path, [](GDALDataset& file) {
            EXPECT_EQ(file.GetRasterBand(1)->GetOverview(0)->Fill(4000), CE_None);
        });
    }
};

TEST_F(Overviews, AreReadFromComponentsAndMadeAnewForCopies) {
    const Strings files = {write("a_01.tif", {}), write("a_02.tif", {"-ro"})};
    fakes::changeRaster(files[0], [](GDALDataset& file) {
        CPLStringList items;
        for (const char* name :
             {"LINE_OFF", "SAMP_OFF", "LAT_OFF", "LONG_OFF", "HEIGHT_OFF", "LINE_SCALE",
              "SAMP_SCALE", "LAT_SCALE", "LONG_SCALE", "HEIGHT_SCALE"}) {
            items.SetNameValue(name, "1");
        }
        for (const char* name :
             {"LINE_NUM_COEFF", "LINE_DEN_COEFF", "SAMP_NUM_COEFF", "SAMP_DEN_COEFF"}) {
            items.SetNameValue(name, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20");
        }
        file.SetMetadata(items.List(), "RPC");
    });
    ASSERT_TRUE(gdalInfo(files[0])["metadata"].contains("RPC"));
    ASSERT_TRUE(fs::exists(files[1] + ".ovr"));
    for (const auto& [command, count, sample] :
         {std::tuple<Strings, std::size_t, bool>({"vrt"}, 1, true),
          {{"export"}, 0, false},
          {{"export", "--cog"}, 2, false}}) {
        const json info = infoOf(command, files);
        EXPECT_FALSE(info["metadata"].contains("RPC"));
        for (int band = 1; band <= 2; ++band) {
            EXPECT_EQ(info["bands"][static_cast<std::size_t>(band) - 1]
                          .value("overviews", json::array())
                          .size(),
                      count);
            EXPECT_EQ(
                gdalPixels(info["description"], band, {"-outsize", "300", "300"}).at(7) == 4000,
                sample)
                << band;
        }
    }
}

/// Those in the file: a file beside it may be of any format, a virtual raster of other files too.
TEST_F(Overviews, AreWhatAPictureShows) {
    const Strings files = {write("a_01.tif", {}), write("a_02.tif", {"-ro"})};
    for (const auto& [band, size, isOverview] :
         {std::tuple("B01", "300", true), {"B01", "1200", false}, {"B02", "300", false}}) {
        const std::string picture = directory_ / "q.png";
        ASSERT_EQ(runKestms(joined({"quicklook", "-o", picture, "--overwrite", "--size", size,
                                    "--bands", band},
                                   files))
                      .code,
                  0);
        // All of one value is mid-grey.
        const std::vector<double> shown = gdalPixels(picture, 1);
        EXPECT_EQ(std::count(shown.begin(), shown.end(), 128) == std::ssize(shown), isOverview)
            << band << size;
    }
}

}  // namespace
}  // namespace kestms
