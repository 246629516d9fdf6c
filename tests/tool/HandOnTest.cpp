#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <utility>

#include "tests/tool/RunTool.h"
#include "tool/GeoTiffWriter.h"
#include "tool/InputText.h"
#include "tool/Interrupt.h"
#include "tool/OutputLayout.h"
#include "tool/Progress.h"
#include "tool/Spectrum.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

GDALDatasetUniquePtr openRaster(const std::string& name) {
    return GDALDatasetUniquePtr(GDALDataset::Open(name.c_str(), GDAL_OF_RASTER));
}

std::vector<double> pixelsOf(GDALDataset& dataset, int band) {
    const int width = dataset.GetRasterXSize();
    const int height = dataset.GetRasterYSize();
    std::vector<double> pixels(static_cast<std::size_t>(width * height), -1);
    EXPECT_EQ(dataset.GetRasterBand(band)->RasterIO(GF_Read, 0, 0, width, height, pixels.data(),
                                                    width, height, GDT_Float64, 0, 0, nullptr),
              CE_None);
    return pixels;
}

/// Two image segments in one file.
std::vector<std::string> writeSegments(const std::string& path) {
    fakes::Raster raster;
    raster.driver = "NITF";
    raster.options = {"NUMI=2", "IREPBAND=R", "ICORDS=N"};
    fakes::writeRaster(path, raster);
    raster.options = {"APPEND_SUBDATASET=YES", "IREPBAND=G", "ICORDS=N"};
    fakes::writeRaster(path, raster);
    return {path};
}

/// The colour that other programs shall see.
const char* colourOf(const nlohmann::json& band) {
    const std::map<std::string, const char*> colours = {
        {"red", "Red"}, {"green", "Green"}, {"blue", "Blue"}};
    const auto colour = colours.find(band["displayChannel"]);
    return colour != colours.end()          ? colour->second
           : band["type"] == "panchromatic" ? "Gray"
                                            : "Undefined";
}

/// The dataset that holds a band, and its number there.
std::pair<std::string, int> sourceOf(const nlohmann::json& band) {
    const std::string file = band["file"];
    const int frame = band["fileFrame"];
    return fs::path(file).filename() == "segments.ntf"
               ? std::pair("NITF_IM:" + std::to_string(frame) + ":" + file, 1)
               : std::pair(file, frame + 1);
}

/// The written band is its component's, and says what it is. This GDAL's COG driver leaves out
/// metadata domains.
void expectSame(GDALDataset& written, int band, const nlohmann::json& facts, bool withDomains) {
    const auto [name, sourceBand] = sourceOf(facts);
    const auto source = openRaster(name);
    ASSERT_TRUE(source && band <= written.GetRasterCount()) << name;
    GDALRasterBand& shown = *written.GetRasterBand(band);
    EXPECT_EQ(shown.GetDescription(), facts["name"].get<std::string>());
    const std::string colour = GDALGetColorInterpretationName(shown.GetColorInterpretation());
    // A GeoTIFF tells no grey band from one of no colour.
    const bool isExact =
        facts["displayChannel"] != "none" || EQUAL(written.GetDriver()->GetDescription(), "VRT");
    EXPECT_TRUE(isExact ? colour == colourOf(facts) : colour == "Gray" || colour == "Undefined")
        << name << " " << colour;
    const char* wavelength = shown.GetMetadataItem("wavelength");
    EXPECT_EQ(wavelength != nullptr, name.find("/landsat7") != std::string::npos);
    EXPECT_STREQ(shown.GetMetadataItem("CENTRAL_WAVELENGTH_UM", "IMAGERY"),
                 withDomains ? wavelength : nullptr);
    EXPECT_EQ(shown.GetRasterDataType(), source->GetRasterBand(sourceBand)->GetRasterDataType());
    EXPECT_EQ(pixelsOf(written, band), pixelsOf(*source, sourceBand)) << name;
    std::array<double, 6> own{};
    std::array<double, 6> sources{};
    written.GetGeoTransform(own.data());
    source->GetGeoTransform(sources.data());
    for (std::size_t i = 0; i < own.size(); ++i) {
        EXPECT_NEAR(own[i], sources[i], 1e-6);
    }
    EXPECT_STREQ(written.GetSpatialRef()->GetName(), "WGS 84 / UTM zone 32N");
}

TEST(HandOn, BandsOfEverySampleKeepTheirPixelsAndSayWhatTheyAre) {
    const fakes::TempDirectory directory;
    ASSERT_EQ(runTool({"samples", directory.path(), "--size", "8"}).code, 0);
    std::vector<std::string> sets = writeSegments(directory / "segments.ntf");
    for (const auto& entry : fs::directory_iterator(directory.path())) {
        if (entry.is_directory()) {
            sets.push_back(entry.path() / "set.xml");
        }
    }
    for (const std::string& set : sets) {
        const auto info = runTool({"info", "--json", set}).json();
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"vrt", set, "-o", directory / "out.vrt"},
              {"export", set, "-o", directory / "out.tif"},
              {"export", "--cog", set, "-o", directory / "out.tif"}}) {
            const Outcome outcome = runTool(command);
            ASSERT_EQ(outcome.err, "") << set;
            const std::vector<std::string> names = linesOf(outcome.out);
            ASSERT_EQ(names.size(), info["buckets"].size());
            std::map<int, int> bandsIn;
            for (const auto& band : info["bands"]) {
                const int bucket = band["bucket"];
                const auto written = openRaster(names.at(static_cast<std::size_t>(bucket)));
                ASSERT_TRUE(written) << outcome.out;
                expectSame(*written, ++bandsIn[bucket], band, command[1] != "--cog");
            }
        }
    }
}

BandView bandAt(double x, double y, double pixel, int width, int height, int bucket,
                double slant = 0) {
    BandView band;
    band.width = width;
    band.height = height;
    band.bucket = bucket;
    Georeference& place = band.georeference.emplace();
    place.pixelWidth = place.pixelHeight = pixel;
    place.upperLeft = {x, y};
    place.upperRight = {x + pixel * width, y + slant};
    place.lowerLeft = {x + slant, y - pixel * height};
    return band;
}

std::string textOf(const std::vector<OutputRaster>& rasters) {
    std::string text;
    for (const OutputRaster& raster : rasters) {
        text += CPLSPrintf("%s %dx%d at %g %g:", raster.path.c_str(), raster.size.width,
                           raster.size.height, raster.geoTransform[0], raster.geoTransform[3]);
        for (const PlacedBand& band : raster.bands) {
            const PixelWindow& window = band.window;
            text += CPLSPrintf(" %d,%d+%dx%d", window.x, window.y, window.width, window.height);
        }
        text += "; ";
    }
    return text;
}

TEST(OutputLayout, CoversAllBandsWithoutMovingTheirPixels) {
    struct Case {
        std::vector<BandView> bands;
        Grids grids;
        const char* expected;
    };
    const BandView base = bandAt(0, 300, 30, 10, 10, 0);
    const Case cases[] = {
        {{base, bandAt(30, 330, 30, 10, 10, 0)},
         Grids::OnePerBucket,
         "d/o.tif 11x11 at 0 330: 0,1+10x10 1,0+10x10; "},
        // Less than half a pixel off: the same pixels, on the first band's grid.
        {{base, bandAt(14, 290, 30, 10, 9, 0)},
         Grids::OnePerBucket,
         "d/o.tif 10x10 at 0 300: 0,0+10x10 0,0+10x9; "},
        {{base, bandAt(-45, 300, 15, 20, 20, 1)},
         Grids::OnePerBucket,
         "d/o_0.tif 10x10 at 0 300: 0,0+10x10; d/o_1.tif 20x20 at -45 300: 0,0+20x20; "},
        {{base, bandAt(-45, 300, 15, 20, 20, 1)},
         Grids::OneForAll,
         "d/o.tif 23x20 at -45 300: 3,0+20x20 0,0+20x20; "},
    };
    for (const Case& one : cases) {
        SetView set;
        set.bands = one.bands;
        set.buckets.resize(static_cast<std::size_t>(set.bands.back().bucket) + 1);
        EXPECT_EQ(textOf(layOut(set, "d/o.tif", one.grids)), one.expected);
    }
    for (const BandView& astray :
         {bandAt(0, 300, 30, 10, 10, 0, 16), bandAt(1e12, 300, 30, 10, 10, 0),
          bandAt(NAN, 300, 30, 10, 10, 0), BandView()}) {
        SetView set;
        set.bands = {base, astray};
        set.buckets.resize(1);
        EXPECT_THROW(layOut(set, "o.tif", Grids::OnePerBucket), Failure);
    }
}

class HandOnGrids : public testing::Test {
  protected:
    std::string write(const std::string& name, const fakes::Raster& raster, int noData) {
        const std::string path = fakes::writeRaster(directory_ / name, raster);
        const GDALDatasetUniquePtr file(
            GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
        file->GetRasterBand(1)->SetNoDataValue(noData);
        return path;
    }
    std::vector<std::string> left() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory_.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    fakes::TempDirectory directory_;
};

TEST_F(HandOnGrids, OneGridRepeatsPixelsAndFillsWhatIsNotCovered) {
    fakes::Raster wide;
    wide.width = 2500;  // more than is read at once
    wide.height = 4;
    wide.type = GDT_Int16;
    fakes::Raster fine = wide;
    fine.type = GDT_UInt16;
    fine.width = 4950;
    fine.height = 8;
    fine.transform = {{500000 + 15 * 40, 15, 0, 4600000, 0, -15}};
    const std::vector<std::string> files = {write("a_01.tif", wide, -7),
                                            write("a_02.tif", fine, 9)};
    const Outcome outcome =
        runTool({"export", "--one-grid", files[0], files[1], "-o", directory_ / "out.tif"});
    EXPECT_THAT(outcome.err, HasSubstr("out.tif: without a no-data value"));
    ASSERT_EQ(runTool({"vrt", "--one-grid", files[0], files[1], "-o", directory_ / "out.vrt"}).code,
              0);
    const auto exported = openRaster(directory_ / "out.tif");
    const auto shown = openRaster(directory_ / "out.vrt");
    EXPECT_EQ(exported->GetRasterBand(1)->GetRasterDataType(), GDT_Int32);
    EXPECT_FALSE(exported->GetRasterBand(2)->GetMetadataItem("wavelength"));
    for (int band = 1; band <= 2; ++band) {
        EXPECT_EQ(pixelsOf(*exported, band), pixelsOf(*shown, band));
    }
    EXPECT_EQ(shown->GetRasterBand(1)->GetNoDataValue(), -7);
    const auto coarse = pixelsOf(*exported, 1);
    const auto second = pixelsOf(*exported, 2);
    const auto at = [](int x, int y) { return static_cast<std::size_t>(y * 5000 + x); };
    EXPECT_EQ(coarse[at(4999, 5)], fakes::sampleAt(1, 2499, 2, true));
    EXPECT_EQ(coarse[at(2048, 7)], fakes::sampleAt(1, 1024, 3, true));
    EXPECT_EQ(second[at(39, 0)], 9);
    EXPECT_EQ(second[at(40, 3)], fakes::sampleAt(1, 0, 3, false));
    EXPECT_EQ(second[at(4990, 0)], 9);
}

TEST_F(HandOnGrids, ARasterMovesWithItsComponents) {
    fs::create_directories(directory_ / "old/scene");
    const auto file = fakes::writeRaster(directory_ / "old/scene/a&b_01.tif");
    const auto other = fakes::writeRaster(directory_ / "old/scene/a&b_02.tif");
    fs::create_directories(directory_ / "far/from/here");
    fs::create_directory_symlink(directory_ / "far/from/here", directory_ / "old/link");
    ASSERT_EQ(runTool({"vrt", file, other, "-o", directory_ / "old/link/out.vrt"}).code, 0);
    EXPECT_TRUE(openRaster(directory_ / "old/link/out.vrt"));
    ASSERT_EQ(runTool({"vrt", file, other, "-o", directory_ / "old/out.vrt"}).code, 0);
    const std::string before = directory_ / "old/out.vrt";
    const auto pixels = pixelsOf(*openRaster(before), 2);
    fs::rename(directory_ / "old", directory_ / "new");
    EXPECT_EQ(pixelsOf(*openRaster(directory_ / "new/out.vrt"), 2), pixels);
}

TEST_F(HandOnGrids, LeavesNothingBehindWhenItFails) {
    const auto files = writeLandsat(directory_);
    const auto before = left();
    const std::pair<std::string, const char*> cases[] = {{directory_.path(), "is a directory"},
                                                         {directory_ / "none/o", "No such file"}};
    for (const auto& [output, reason] : cases) {
        for (const char* command : {"vrt", "export"}) {
            const Outcome outcome = runTool({command, files[0], files[1], "-o", output});
            EXPECT_EQ(outcome.code, static_cast<int>(ExitCode::CannotWrite));
            EXPECT_THAT(outcome.err, HasSubstr(reason));
            EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
        }
    }
    EXPECT_EQ(runTool({"export", "--compress", "jpeg", files[0], files[1], "-o", "x"}).code,
              static_cast<int>(ExitCode::Usage));
    EXPECT_EQ(left(), before);
}

TEST_F(HandOnGrids, AnOutputNeverReplacesAnInput) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const std::string fast = directory_ / "landsat7-fast/";
    const std::string product = directory_ / "po-product/";
    fakes::writeFile(directory_ / "list", fast + "L71026029_02920000609_HRF.FST\n");
    const std::pair<std::string, std::string> cases[] = {
        {fast + "set.xml", fast + "set.xml"},
        {fast + "set.xml", fast + "L71026029_02920000609_HRF.FST"},
        {fast + "set.xml", fast + "L71026029_02920000609_B10.FST"},
        {"@" + (directory_ / "list"), directory_ / "list"},
        {product, product + "po_1234567_metadata.txt"},
    };
    for (const auto& [input, output] : cases) {
        const std::string before = fakes::readFile(output);
        for (const auto& command : {std::vector<std::string>{"vrt", "--one-grid"},
                                    {"export", "--one-grid"},
                                    {"quicklook"}}) {
            std::vector<std::string> arguments = command;
            arguments.insert(arguments.end(), {input, "-o", output});
            EXPECT_EQ(runTool(arguments).code, 2) << output;
        }
        EXPECT_EQ(fakes::readFile(output), before);
    }
}

TEST_F(HandOnGrids, InterruptedWritingStopsAndCleansUp) {
    const auto files = writeLandsat(directory_);
    const auto before = left();
    std::istringstream in;
    std::ostringstream out;
    Context context(in, out, out);
    context.language = "en";
    const OpenedSet set = openSet(context, files);
    const auto rasters = layOut(set.view(), directory_ / "out.tif", Grids::OneForAll);
    std::vector<BandFacts> facts;
    for (const BandView& band : set.view().bands) {
        facts.push_back(factsOf(set, band));
    }
    for (const double stopAt : {0.0, 0.9}) {
        OutputFile file(rasters[0].path);
        const GeoTiffOptions options{"LZW", true};
        EXPECT_THROW(writeGeoTiff(set, rasters[0], facts, options, file,
                                  [stopAt](double part) {
                                      if (part >= stopAt) {
                                          throw Failure(ExitCode::Interrupted, "interrupted");
                                      }
                                  }),
                     Failure);
    }
    EXPECT_EQ(left(), before);
}

TEST(ProgressBar, ShowsOnATerminalOnlyAndEndsWithTheUsersPatience) {
    std::ostringstream shown;
    std::ostringstream hidden;
    const InterruptGuard guard;
    {
        ProgressBar bar(shown, true);
        ProgressBar silent(hidden, isTerminal(hidden));
        bar.show(0.5);
        bar.show(0.501);
        silent.show(0.5);
        static_cast<void>(std::raise(SIGINT));
        EXPECT_THROW(bar.show(0.6), Failure);
    }
    EXPECT_THAT(shown.str(), StartsWith("\r[####################....................]  50 %\r"));
    EXPECT_THAT(hidden.str(), IsEmpty());
}

TEST(Spectrum, IsToldForKnownSensorsOnly) {
    EXPECT_DOUBLE_EQ(spectralRangeOf(5, 8)->centre, 0.71);
    EXPECT_DOUBLE_EQ(spectralRangeOf(6, 5)->width, 0.26);
    EXPECT_FALSE(spectralRangeOf(5, 9999));
    EXPECT_FALSE(spectralRangeOf(3, 1));
}

}  // namespace
}  // namespace kestms
