#include <gdal_priv.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <map>
#include <utility>

#include "tests/tool/Process.h"
#include "tool/raster/GeoTiffWriter.h"
#include "tool/raster/HandOn.h"
#include "tool/scene/InputText.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/Progress.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
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
std::string writeSegments(const std::string& path) {
    for (const char* what : {"NUMI=2", "APPEND_SUBDATASET=YES"}) {
        fakes::writeRaster(path, {.driver = "NITF", .options = {what, "IREPBAND=R", "ICORDS=N"}});
    }
    return path;
}

/// The colour that other programs shall see; a GeoTIFF tells no grey band from one of no colour.
void expectColour(GDALRasterBand& shown, const nlohmann::json& facts, bool tellsGrey) {
    const char* colour = GDALGetColorInterpretationName(shown.GetColorInterpretation());
    const std::string channel = facts["displayChannel"];
    const bool isGrey = tellsGrey ? facts["type"] == "panchromatic" : EQUAL(colour, "Gray");
    EXPECT_STRCASEEQ(colour, channel != "none" ? channel.c_str() : isGrey ? "Gray" : "Undefined");
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
    expectColour(shown, facts, EQUAL(written.GetDriver()->GetDescription(), "VRT"));
    const char* wavelength = shown.GetMetadataItem("wavelength");
    EXPECT_EQ(wavelength != nullptr, name.find("/landsat7") != std::string::npos);
    EXPECT_STREQ(shown.GetMetadataItem("CENTRAL_WAVELENGTH_UM", "IMAGERY"),
                 withDomains ? wavelength : nullptr);
    if (facts["name"] == "Short-wave infrared 2 (band 7)") {
        EXPECT_STREQ(wavelength, "2.22");
        EXPECT_STREQ(shown.GetMetadataItem("fwhm"), "0.26");
    }
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
    ASSERT_EQ(runKestms({"samples", directory.path(), "--size", "8"}).code, 0);
    Strings sets = {writeSegments(directory / "segments.ntf")};
    for (const auto& entry : fs::directory_iterator(directory.path())) {
        if (entry.is_directory()) {
            sets.push_back(entry.path() / "set.xml");
        }
    }
    for (const std::string& set : sets) {
        const auto info = runTool({"info", "--json", set}).json();
        for (const Strings& command :
             {Strings{"vrt", set, "-o", directory / "out.vrt", "--overwrite"},
              {"export", set, "-o", directory / "out.tif", "--overwrite"},
              {"export", "--cog", set, "-o", directory / "out.tif", "--overwrite"}}) {
            const Outcome outcome = runKestms(command);
            ASSERT_EQ(outcome.err, "") << set;
            const Strings names = linesOf(outcome.out);
            ASSERT_EQ(names.size(), info["buckets"].size());
            EXPECT_EQ(fs::path(names[0]).stem(), names.size() > 1 ? "out_0" : "out");
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

class HandOnGrids : public InDirectory {
  protected:
    std::string writeWithNoData(const std::string& name, const fakes::Raster& raster, int noData) {
        const std::string path = write(name, raster);
        const GDALDatasetUniquePtr file(GDALDataset::Open(path.c_str(), GDAL_OF_UPDATE));
        file->GetRasterBand(1)->SetNoDataValue(noData);
        return path;
    }
};

TEST_F(HandOnGrids, OneGridRepeatsPixelsAndFillsWhatIsNotCovered) {
    const fakes::Raster wide{.width = 2500, .height = 80, .type = GDT_Int16};  // read in parts
    // Begins further to the right, though not by whole pixels, and further down.
    const fakes::Raster fine{.width = 4950,
                             .height = 160,
                             .type = GDT_UInt16,
                             .transform = {{500000 + 15 * 40 + 7, 15, 0, 4599970, 0, -15}}};
    const Strings files = {writeWithNoData("a_01.tif", wide, -7),
                           writeWithNoData("a_02.tif", fine, 9)};
    const Outcome outcome =
        runTool(joined({"export", "--one-grid", "-o", directory_ / "out.tif"}, files));
    EXPECT_THAT(outcome.err, HasSubstr("out.tif: without a no-data value"));
    ASSERT_EQ(runTool(joined({"vrt", "--one-grid", "-o", directory_ / "out.vrt"}, files)).code, 0);
    const auto exported = openRaster(directory_ / "out.tif");
    const auto shown = openRaster(directory_ / "out.vrt");
    EXPECT_EQ(exported->GetRasterBand(1)->GetRasterDataType(), GDT_Int32);
    for (int band = 1; band <= 2; ++band) {
        EXPECT_EQ(pixelsOf(*exported, band), pixelsOf(*shown, band));
    }
    EXPECT_EQ(shown->GetRasterBand(1)->GetNoDataValue(), -7);
    std::array<double, 6> place{};
    exported->GetGeoTransform(place.data());
    EXPECT_THAT(place, ElementsAre(500007, 15, 0, 4600000, 0, -15));
    ASSERT_EQ(exported->GetRasterYSize(), 162);
    const auto coarse = pixelsOf(*exported, 1);
    const auto second = pixelsOf(*exported, 2);
    const auto at = [](int x, int y) { return static_cast<std::size_t>(y * 5000 + x); };
    EXPECT_EQ(coarse[at(4999, 5)], fakes::sampleAt(1, 2499, 2, true));
    EXPECT_EQ(coarse[at(2048, 7)], fakes::sampleAt(1, 1024, 3, true));
    EXPECT_EQ(coarse[at(0, 160)], -7);
    EXPECT_EQ(second[at(40, 1)], 9);
    EXPECT_EQ(second[at(39, 2)], 9);
    EXPECT_EQ(second[at(40, 5)], fakes::sampleAt(1, 0, 3, false));
    EXPECT_EQ(second[at(4990, 2)], 9);
}

/// A set may hold bands that are turned a little, a raster may not.
TEST_F(HandOnGrids, BandsAcrossTheGridAreRefused) {
    fakes::Raster raster{.height = 12};
    const Strings files = {write("a.tif", raster), directory_ / "b.tif"};
    for (const auto& [slope, code] : {std::pair(1.2, 0), std::pair(1.4, 1)}) {
        raster.transform = {500000, 30, 0, 4600000, slope, -30};
        write("b.tif", raster);
        const Outcome outcome =
            runTool(joined({"vrt", "--one-grid", "-o", directory_ / "out.vrt"}, files));
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.err.find("does not lie on the grid") != std::string::npos, code != 0);
    }
}

TEST_F(HandOnGrids, ARasterMovesWithItsComponents) {
    fs::create_directories(directory_ / "old/scene");
    const Strings files = {write("old/scene/a&b_01.tif"), write("old/scene/a&b_02.tif")};
    fs::create_directories(directory_ / "far/from/here");
    fs::create_directory_symlink(directory_ / "far/from/here", directory_ / "old/link");
    for (const std::string& output :
         {directory_ / "old/link/out.vrt", directory_ / "old/out.vrt"}) {
        ASSERT_EQ(runTool(joined({"vrt", "-o", output}, files)).code, 0);
        EXPECT_TRUE(openRaster(output));
    }
    const auto pixels = pixelsOf(*openRaster(files[1]), 1);
    fs::rename(directory_ / "old", directory_ / "new");
    EXPECT_EQ(pixelsOf(*openRaster(directory_ / "new/out.vrt"), 2), pixels);
}

const Strings kCommands[] = {
    {"list"}, {"vrt", "--one-grid"}, {"export", "--one-grid"}, {"quicklook"}};

TEST_F(HandOnGrids, LeavesNothingBehindWhenItFails) {
    const Strings files = writeLandsat(directory_);
    ASSERT_EQ(mkfifo((directory_ / "pipe").c_str(), 0600), 0);
    const auto before = fakes::namesIn(directory_);
    const std::pair<std::string, const char*> cases[] = {
        {directory_.path(), "s a directory\n"},
        {directory_ / "slash/", "s a directory\n"},
        {directory_ / "none/out", "No such file"},
        {directory_ / "pipe", "not a regular file"},
    };
    for (const auto& [output, reason] : cases) {
        for (const Strings& command : kCommands) {
            const Outcome outcome = runTool(joined(command, joined(files, {"-o", output})));
            EXPECT_EQ(outcome.code, static_cast<int>(ExitCode::CannotWrite))
                << command[0] << output;
            EXPECT_THAT(outcome.err, HasSubstr(reason));
            EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
        }
    }
    EXPECT_EQ(fakes::namesIn(directory_), before);
    EXPECT_TRUE(fs::is_fifo(directory_ / "pipe"));
}

/// Whatever was named, listed or found in a named folder, taken or not, and what belongs to it.
TEST_F(HandOnGrids, AnOutputNeverReplacesAnInput) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const std::string fast = directory_ / "landsat7-fast/";
    const std::string product = directory_ / "po-product/";
    const std::string own = directory_ / "own/";
    fs::create_directory(own);
    const Strings pair = {write("own/v1.tif"), write("own/v2.tif")};
    fakes::writeFile(own + "damaged.tif", fakes::readFile(pair[0]).substr(0, 300));
    for (const char* name : {"v1.tfw", "v1.tifw", "v2.wld", "v1.tif.aux.xml", "v2.tif.ovr",
                             "v1.TIF.msk", "v1.aux", "MTL.txt", "v1.xml", "old.vrt"}) {
        fakes::writeFile(own + name, "<text/>");
    }
    const std::string list = directory_ / "list";
    fakes::writeFile(list, pair[0] + "\n" + pair[1] + "\n" + own + "damaged.tif\n");
    const std::string document = directory_ / "damaged.xml";
    fakes::writeFile(document, runTool({"list", pair[0], pair[1], own + "damaged.tif"}).out);
    std::vector<std::pair<Strings, std::string>> cases = {
        {{fast + "set.xml"}, fast + "set.xml"},
        {{fast + "set.xml"}, fast + "L71026029_02920000609_HRF.FST"},
        {{fast + "set.xml"}, fast + "L71026029_02920000609_B10.FST"},
        {{"@" + list}, list},
        {{product}, product + "po_1234567_metadata.txt"},
        {{own}, own + "damaged.tif"},
        {{document}, own + "damaged.tif"},
        {{"@" + list}, own + "damaged.tif"},
        {pair, pair[1]},
    };
    for (const auto& name : {"v1.tfw", "v1.tifw", "v2.wld", "v1.tif.aux.xml", "v2.tif.ovr",
                             "v1.TIF.msk", "v1.aux", "MTL.txt", "v1.xml"}) {
        cases.emplace_back(pair, own + name);
    }
    for (const auto& [inputs, output] : cases) {
        const std::string before = fakes::readFile(output);
        for (const Strings& command : kCommands) {
            const Outcome outcome =
                runTool(joined(joined(command, inputs), {"--overwrite", "-o", output}));
            EXPECT_EQ(outcome.code, 2) << command[0] << " " << output << outcome.err;
        }
        EXPECT_EQ(fakes::readFile(output), before);
    }
    for (const Strings& command : kCommands) {
        const std::string output = own + "old.vrt";
        EXPECT_EQ(runTool(joined(joined(command, pair), {"-o", output})).code, 2);
        EXPECT_EQ(runTool(joined(joined(command, pair), {"-o", output, "--overwrite"})).code, 0);
    }
}

TEST_F(HandOnGrids, InterruptedWritingStopsAndCleansUp) {
    const auto files = writeLandsat(directory_);
    const auto before = fakes::namesIn(directory_);
    std::istringstream in;
    std::ostringstream out;
    Context context(in, out, out);
    context.language = "en";
    for (const double stopAt : {0.0, 0.9}) {
        const auto stop = [stopAt](double part) {
            if (part >= stopAt) {
                throw Failure(ExitCode::Interrupted, "interrupted");
            }
        };
        const auto write = [&](const auto& set, const auto& raster, const auto& file,
                               const auto& /*progress*/) {
            writeGeoTiff(set, raster, {"LZW", true}, file, stop);
        };
        EXPECT_THROW(handOn(context, {files, directory_ / "out.tif", true, true}, write), Failure);
    }
    EXPECT_EQ(fakes::namesIn(directory_), before);
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
    EXPECT_EQ(hidden.str(), "");
}

}  // namespace
}  // namespace kestms
