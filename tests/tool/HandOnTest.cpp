#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <map>

#include "tests/tool/RunTool.h"
#include "tool/GeoTiffWriter.h"
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

/// Name, colour and central wavelength of a band, as other programs see them. This GDAL's COG
/// driver leaves out metadata domains.
std::string seenOf(GDALRasterBand& band, bool withDomains) {
    const char* wavelength = band.GetMetadataItem("wavelength");
    const char* again = band.GetMetadataItem("CENTRAL_WAVELENGTH_UM", "IMAGERY");
    EXPECT_STREQ(withDomains ? wavelength : nullptr, again);
    return std::string(band.GetDescription()) + "|" +
           GDALGetColorInterpretationName(band.GetColorInterpretation()) + "|" +
           (wavelength != nullptr ? wavelength : "");
}

struct Seen {
    const char* raster;  ///< "_0" of out_0.vrt
    const char* source;  ///< dataset that holds the band, in the set's directory
    int sourceBand;
    const char* band;
};

struct Handed {
    const char* name;
    std::vector<std::string> (*write)(const fakes::TempDirectory&);
    std::vector<Seen> bands;
};

std::vector<std::string> writeFast(const fakes::TempDirectory& directory) {
    fakes::FastHeader header;
    header.bandFiles = {kLandsat + "B10.FST", kLandsat + "B30.FST"};
    for (int band = 1; const std::string& file : header.bandFiles) {
        fakes::writeFile(directory / file, fakes::fastBand(header, band++));
    }
    const std::string path = directory / (kLandsat + "HRF.FST");
    fakes::writeFile(path, fakes::fastHeaderText(header));
    return {path};
}

/// Two image segments in one file.
std::vector<std::string> writeNitf(const fakes::TempDirectory& directory) {
    fakes::Raster raster;
    raster.driver = "NITF";
    raster.options = {"NUMI=2", "IREPBAND=R", "ICORDS=N"};
    const std::string path = fakes::writeRaster(directory / "scene.ntf", raster);
    raster.options = {"ICORDS=N"};
    const auto second = openRaster(fakes::writeRaster(directory / "second.ntf", raster));
    CPLStringList options;
    options.AddString("APPEND_SUBDATASET=YES");
    options.AddString("IREPBAND=G");
    const GDALDatasetUniquePtr whole(GetGDALDriverManager()->GetDriverByName("NITF")->CreateCopy(
        path.c_str(), second.get(), FALSE, options.List(), nullptr, nullptr));
    return {path};
}

std::vector<std::string> writeQuickBird(const fakes::TempDirectory& directory) {
    fakes::Raster raster;
    raster.type = GDT_UInt16;
    raster.bands = 3;
    raster.description = "{\n  bandList = \n  (4, 3, 2)\n}";
    return {fakes::writeRaster(directory / "colour.tif", raster)};
}

class HandOn : public testing::TestWithParam<Handed> {
  protected:
    fakes::TempDirectory directory_;
};

TEST_P(HandOn, BandsKeepTheirPixelsAndSayWhatTheyAre) {
    const Handed& handed = GetParam();
    const auto files = handed.write(directory_);
    fs::create_directory(directory_ / "out");
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"vrt", "-o", directory_ / "out/scene.vrt"},
          {"export", "-o", directory_ / "out/scene.tif"},
          {"export", "--cog", "-o", directory_ / "out/scene.tif"}}) {
        std::vector<std::string> arguments = command;
        arguments.insert(arguments.end(), files.begin(), files.end());
        const Outcome outcome = runTool(arguments);
        ASSERT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_THAT(outcome.err, IsEmpty());
        const fs::path path = command.back();
        std::map<std::string, int> bandsIn;
        for (const Seen& seen : handed.bands) {
            const std::string name = (path.parent_path() / path.stem()).string() + seen.raster +
                                     path.extension().string();
            EXPECT_THAT(outcome.out, HasSubstr(name + "\n"));
            const auto written = openRaster(name);
            const auto source = openRaster(CPLSPrintf(seen.source, directory_.path().c_str()));
            ASSERT_TRUE(written && source) << name;
            const int band = ++bandsIn[seen.raster];
            ASSERT_LE(band, written->GetRasterCount());
            EXPECT_EQ(seenOf(*written->GetRasterBand(band), command[1] != "--cog"), seen.band);
            EXPECT_EQ(written->GetRasterBand(band)->GetRasterDataType(),
                      source->GetRasterBand(seen.sourceBand)->GetRasterDataType());
            EXPECT_EQ(pixelsOf(*written, band), pixelsOf(*source, seen.sourceBand));
            std::array<double, 6> own{};
            std::array<double, 6> sources{};
            written->GetGeoTransform(own.data());
            source->GetGeoTransform(sources.data());
            for (std::size_t i = 0; i < own.size(); ++i) {
                EXPECT_NEAR(own[i], sources[i], 1e-6);
            }
            EXPECT_TRUE(written->GetSpatialRef()->IsSame(source->GetSpatialRef()));
        }
        for (const auto& [raster, count] : bandsIn) {
            const auto written = openRaster((path.parent_path() / path.stem()).string() + raster +
                                            path.extension().string());
            EXPECT_EQ(written->GetRasterCount(), count);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, HandOn,
    testing::Values(
        Handed{"Landsat",
               writeLandsat,
               {{"_0", "%s/L71195025_02520010730_B10.TIF", 1, "Blue (band 1)|Blue|0.485"},
                {"_0", "%s/L71195025_02520010730_B40.TIF", 1,
                 "Near infrared (band 4)|Undefined|0.835"},
                {"_0", "%s/L71195025_02520010730_B70.TIF", 1,
                 "Short-wave infrared 2 (band 7)|Undefined|2.22"},
                {"_0", "%s/L71195025_02520010730_B61.TIF", 1,
                 "Thermal infrared, low gain (band 6L)|Undefined|11.45"},
                {"_1", "%s/L71195025_02520010730_B80.TIF", 1, "Panchromatic (band 8)|Gray|0.71"}}},
        Handed{"Fast",
               writeFast,
               {{"", "%s/L71195025_02520010730_HRF.FST", 1, "Blue (band 1)|Blue|0.485"},
                {"", "%s/L71195025_02520010730_HRF.FST", 2, "Red (band 3)|Red|0.66"}}},
        Handed{"NitfSegments",
               writeNitf,
               {{"", "NITF_IM:1:%s/scene.ntf", 1, "Green|Green|"},
                {"", "NITF_IM:0:%s/scene.ntf", 1, "Red|Red|"}}},
        Handed{"FalseColour",
               writeQuickBird,
               {{"", "%s/colour.tif", 3, "Green|Blue|"},
                {"", "%s/colour.tif", 2, "Red|Green|"},
                {"", "%s/colour.tif", 1, "Near infrared|Red|"}}}),
    [](const auto& each) { return std::string(each.param.name); });

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
    const std::string input = files[0];
    struct Case {
        const char* command;
        std::string output;
        ExitCode code;
        const char* reason;
    };
    const Case cases[] = {
        {"vrt", directory_.path(), ExitCode::CannotWrite, "is a directory"},
        {"export", directory_.path(), ExitCode::CannotWrite, "is a directory"},
        {"vrt", directory_ / "none/out.vrt", ExitCode::CannotWrite, "No such file"},
        {"export", directory_ / "none/out.tif", ExitCode::CannotWrite, "No such file"},
    };
    for (const Case& one : cases) {
        const Outcome outcome = runTool({one.command, files[0], files[1], "-o", one.output});
        EXPECT_EQ(outcome.code, static_cast<int>(one.code));
        EXPECT_THAT(outcome.err, HasSubstr(one.reason));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
    }
    EXPECT_EQ(runTool({"export", "--one-grid", files[0], files[1], "-o", input}).code,
              static_cast<int>(ExitCode::Usage));
    EXPECT_EQ(runTool({"export", "--compress", "jpeg", files[0], files[1], "-o", "x"}).code,
              static_cast<int>(ExitCode::Usage));
    EXPECT_EQ(left(), before);
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
