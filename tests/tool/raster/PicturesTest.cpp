#include <cmath>

#include "tests/tool/Process.h"

namespace kestms {
namespace {

using nlohmann::json;

class Pictures : public InDirectory {
  protected:
    /// The path of a picture that the tool made of a set, its longer side so many pixels.
    std::string picture(const std::string& name, int size, const Strings& setAndOptions) const {
        const Strings command = {"quicklook",   "-o",     directory_ / name,
                                 "--overwrite", "--size", std::to_string(size)};
        const Outcome outcome = runKestms(joined(command, setAndOptions));
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        return directory_ / name;
    }
};

TEST_F(Pictures, AreOfTheBandsAndFormatAskedFor) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "32"}).code, 0);
    const std::string set = directory_ / "quickbird-1234/set.xml";
    const auto infoOf = [&](const std::string& name, const Strings& options) {
        return gdalInfo(picture(name, 32, joined({set}, options)));
    };
    const json natural = infoOf("n.png", {});
    const json same = infoOf("s.png", {"--rgb", "red,green,blue"});
    const json infrared = infoOf("i.png", {"--bands", "nir,red,green"});
    const auto sum = [](const json& info, std::size_t band) {
        return info["bands"][band]["checksum"];
    };
    for (std::size_t band = 0; band < 3; ++band) {
        EXPECT_EQ(sum(natural, band), sum(same, band));
    }
    EXPECT_EQ(sum(infrared, 1), sum(natural, 0));
    EXPECT_EQ(sum(infrared, 2), sum(natural, 1));
    const json grey = infoOf("g.png", {"--bands", "nir"});
    EXPECT_EQ(sum(grey, 2), sum(infrared, 0));
    EXPECT_EQ(infoOf("w.png", {"--window", "3,4,8,16"})["size"], (json{16, 32}));
    EXPECT_EQ(infoOf("p.jpg", {})["driverShortName"], "JPEG");
    EXPECT_EQ(infoOf("p.webp", {})["driverShortName"], "WEBP");
    for (const Strings& wrong : {Strings{"--rgb", "red,nir"},
                                 {"--bands", "red,nir"},
                                 {"--rgb", "red,nir,green", "--bands", "red"}}) {
        const Strings command = {"quicklook", set, "-o", directory_ / "x.png"};
        EXPECT_EQ(runTool(joined(command, wrong)).code, 2);
    }
    // Of a set that knows no channels, those of its components: here bands 3, 2 and 1.
    const std::string coloured = directory_ / "coloured.vrt";
    EXPECT_EQ(runTool({"vrt", set, "-o", coloured}).code, 0);
    EXPECT_EQ(sum(gdalInfo(picture("c.png", 32, {"--allow-vrt", coloured})), 0), sum(natural, 0));
}

/// Where the bands shown are coarser than others, a window is the same part as in an export.
TEST_F(Pictures, AWindowCountsPixelsOfTheFinestGrid) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "64"}).code, 0);
    const std::string set = directory_ / "landsat7/set.xml";
    const auto bandsOf = [&](const Strings& options) {
        return gdalInfo(picture("p.png", 8, joined({set}, options)))["bands"];
    };
    const nlohmann::json all = runTool({"info", set, "--json"}).json()["bands"];
    const int fine = all.back()["size"][0];
    const int coarse = all.front()["size"][0];
    const int start = fine * 3 / 4;
    const auto text = [](int first, int size) {
        return std::to_string(first) + ",0," + std::to_string(size) + "," + std::to_string(size);
    };
    EXPECT_EQ(bandsOf({"--window", text(start, 8)}),
              bandsOf({"--bands", "red,green,blue", "--window",
                       text(start * coarse / fine, 8 * coarse / fine)}));
}

TEST_F(Pictures, HaveNorthAtTheTop) {
    const auto pixelsOf = [&](const fakes::Raster& raster) {
        const Strings files = {write("a_01.tif", raster), write("a_02.tif", raster)};
        return gdalPixels(picture("p.png", 4, files), 1);
    };
    const fakes::Raster raster{.width = 3, .height = 4};
    fakes::Raster turned = raster;
    turned.transform = {500000, -30, 0, 4600000, 0, 30};
    const std::vector<double> pixels = pixelsOf(turned);
    EXPECT_EQ(pixelsOf(raster), std::vector<double>(pixels.rbegin(), pixels.rend()));
}

/// Each of 251 values once: those at 2 and 98 % are 5 and 245.
TEST_F(Pictures, AreStretched) {
    const fakes::Raster raster{.width = 251, .height = 1};
    const Strings files = {write("a_01.tif", raster), write("a_02.tif", raster)};
    const auto expectLimits = [&](const Strings& bands, double dark, double bright,
                                  std::size_t first) {
        const std::vector<double> values = gdalPixels(files[0], 1);
        const std::vector<double> shown =
            gdalPixels(picture("q.png", 251, joined(files, bands)), 1);
        for (std::size_t i = first; i < values.size(); ++i) {
            const double part = (values[i] - dark) / (bright - dark);
            EXPECT_EQ(shown[i], std::round(255 * std::clamp(part, 0.0, 1.0)));
        }
    };
    expectLimits({"--bands", "B01"}, 5, 245, 0);
    // In colours zero is a border, and so is what lies beside it.
    expectLimits({"--rgb", "B01,B02,B01"}, 6, 245, 0);
    // Not by what lies beside pixels without data, here every fourth of the first sixty.
    fakes::changeRaster(files[0], [](GDALDataset& file) {
        GDALRasterBand& band = *file.GetRasterBand(1);
        for (int i = 0; i < 251; ++i) {
            auto value = static_cast<std::uint8_t>(i < 60 ? i % 4 == 1 : i);
            ASSERT_EQ(band.RasterIO(GF_Write, i, 0, 1, 1, &value, 1, 1, GDT_Byte, 0, 0, nullptr),
                      CE_None);
        }
        band.SetNoDataValue(0);
    });
    expectLimits({"--bands", "B01"}, 65, 246, 60);
}

}  // namespace
}  // namespace kestms
