#include <gmock/gmock.h>

#include <map>

#include "tests/tool/raster/RasterExports.h"
#include "tool/scene/InputText.h"

namespace kestms {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;

std::string writeSegments(const std::string& path) {
    for (const char* what : {"NUMI=2", "APPEND_SUBDATASET=YES"}) {
        fakes::writeRaster(path, {.driver = "NITF", .options = {what, "IREPBAND=R", "ICORDS=N"}});
    }
    return path;
}

/// The raster that holds a band, and its place there.
std::pair<std::string, std::size_t> sourceOf(const json& band) {
    const std::string file = band["file"];
    const std::size_t frame = band["fileFrame"];
    return fs::path(file).filename() == "segments.ntf"
               ? std::pair("NITF_IM:" + std::to_string(frame) + ":" + file, std::size_t{0})
               : std::pair(file, frame);
}

/// The written band is its component's, with its description. A GeoTIFF does not distinguish a grey
/// band from one without colour, and this GDAL's COG driver leaves out metadata domains.
void expectSame(const json& written, const json& band, const json& source, const std::string& how) {
    EXPECT_EQ(written["checksum"], source["checksum"]) << band["file"] << how;
    EXPECT_EQ(written["type"], source["type"]);
    EXPECT_EQ(written["description"], band["name"]);
    const std::string channel = band["displayChannel"];
    std::string colour = written["colorInterpretation"];
    std::transform(colour.begin(), colour.end(), colour.begin(), ::tolower);
    if (channel != "none" || how == "vrt") {
        EXPECT_EQ(colour, channel != "none"                ? channel
                          : band["type"] == "panchromatic" ? "gray"
                                                           : "undefined");
    }
    const json own = written["metadata"].value("", json::object());
    EXPECT_EQ(own.contains("wavelength"),
              testing::Matches(testing::ContainsRegex("/(landsat|sentinel)"))(
                  band["file"].get<std::string>()));
    if (band["name"] == "Short-wave infrared 2 (band 7)") {
        EXPECT_EQ(own["wavelength"], "2.22");
        EXPECT_EQ(own["fwhm"], "0.26");
        EXPECT_EQ(written["metadata"].contains("IMAGERY"), how != "cog");
    }
}

Strings namesIn(const json& info) {
    return valuesOf(info["bands"], "description");
}

TEST_F(RasterExport, BandsOfEverySampleKeepTheirPixelsAndSayWhatTheyAre) {
    ASSERT_EQ(runKestms({"samples", directory_.path(), "--size", "8"}).code, 0);
    Strings sets = {writeSegments(directory_ / "segments.ntf")};
    for (const auto& entry : fs::directory_iterator(directory_.path())) {
        if (entry.is_directory()) {
            sets.push_back(entry.path() / "set.xml");
        }
    }
    std::map<std::string, json> rasters;
    const auto infoOf = [&rasters](const std::string& name) -> const json& {
        const auto found = rasters.find(name);
        return found != rasters.end() ? found->second : rasters[name] = gdalInfo(name);
    };
    for (const std::string& set : sets) {
        const auto info = runTool({"info", "--json", set}).json();
        for (const auto& [how, command] : {std::pair<std::string, Strings>("vrt", {"vrt"}),
                                           {"tif", {"export"}},
                                           {"cog", {"export", "--cog"}}}) {
            if (how == "cog" && set.find("/landsat7/") == std::string::npos) {
                continue;  // slow, and each set is exported already
            }
            const std::string output =
                directory_ / ("out." + std::string(how == "vrt" ? how : "tif"));
            const Outcome outcome =
                runKestms(joined(command, {set, "-o", output, "--split", "--overwrite"}));
            ASSERT_EQ(outcome.err, "") << set;
            const Strings names = linesOf(outcome.out);
            ASSERT_GE(names.size(), 1U);
            std::map<std::string, json> written;
            for (const std::string& name : names) {
                const json raster = gdalInfo(name);
                for (const json& band : raster["bands"]) {
                    written[band["description"]] = band;
                }
            }
            for (const auto& band : info["bands"]) {
                const auto [file, index] = sourceOf(band);
                ASSERT_TRUE(written.contains(band["name"])) << set << how << band["name"];
                expectSame(written[band["name"]], band, infoOf(file)["bands"].at(index), how);
            }
        }
    }
}

/// In a process that has registered no more drivers than the inputs need.
TEST_F(RasterExport, ComponentsOfEveryFormatAreHandedOn) {
    struct Format {
        std::string driver;
        std::string ending;
        Strings options = {};
    };
    for (const auto& [driver, ending, options] : {Format{"JP2OpenJPEG", ".jp2"},
                                                  {"HFA", ".img"},
                                                  {"ENVI", ".dat"},
                                                  {"NITF", ".ntf", {"-co", "ICORDS=N"}},
                                                  {"PNG", ".png", {"-co", "WORLDFILE=YES"}},
                                                  {"JPEG", ".jpg", {"-co", "WORLDFILE=YES"}}}) {
        Strings files;
        for (const std::string name : {"x_01", "x_02"}) {
            const std::string tif =
                fakes::writeRaster(directory_ / (name + ".tif"), {.width = 64, .height = 64});
            files.push_back(directory_ / (name + ending));
            const Strings command = {"gdal_translate", "-q", "-of", driver, tif, files.back()};
            runProgram(joined(command, options));
            fs::remove(files.back() + ".aux.xml");  // has the place in another form
        }
        const json own = gdalInfo(files[1]);
        for (const std::string command : {"vrt", "export"}) {
            const json made = infoOf({command}, files);
            ASSERT_EQ(made["bands"].size(), 2U) << driver << " " << command;
            EXPECT_EQ(made["bands"][1]["checksum"], own["bands"][0]["checksum"]) << driver;
            for (std::size_t i = 0; i < 6; ++i) {
                EXPECT_NEAR(made["geoTransform"][i], own["geoTransform"][i], 1e-6) << driver;
            }
        }
        EXPECT_EQ(
            runKestms(joined({"quicklook", "-o", directory_ / (driver + "_q.png")}, files)).code,
            0);
    }
}

/// The band is labelled alike in each command: after its file, its side file, or its name.
TEST_F(RasterExport, ABandOfNoProductIsCalledWhatItsComponentCallsIt) {
    const Strings files = {write("s_named.tif"), write("s_beside.tif"), write("s_counted.tif"),
                           write("s_plain.tif")};
    for (const auto& [file, name] : {std::pair(files[0], "cover < 1"), {files[2], "Layer_1"}}) {
        fakes::changeRaster(file, [called = name](GDALDataset& raster) {
            raster.GetRasterBand(1)->SetDescription(called);
        });
    }
    fakes::writeFile(files[1] + ".aux.xml",
                     "<PAMDataset><PAMRasterBand band=\"1\"><Description>beside"
                     "</Description></PAMRasterBand></PAMDataset>");
    const Strings names = {"cover < 1", "beside", "counted", "plain"};
    EXPECT_EQ(valuesOf(runTool(joined({"info", "--json"}, files)).json()["bands"], "name"), names);
    EXPECT_EQ(namesIn(infoOf({"vrt"}, files)), names);
    EXPECT_EQ(namesIn(infoOf({"export"}, files)), names);
    EXPECT_EQ(namesIn(infoOf({"vrt", "--bands", "beside"}, files)), Strings{"beside"});
}

/// One of a numbered set may have no number.
TEST_F(RasterExport, ABandWithoutANumberIsNotCalledByOne) {
    const Strings files = {write("B02.tif"), write("B03.tif"), write("SCL.tif")};
    EXPECT_EQ(namesIn(infoOf({"vrt"}, files)), (Strings{"SCL", "B02", "B03"}));
    EXPECT_EQ(namesIn(infoOf({"vrt", "--bands", "B?"}, files)), (Strings{"B02", "B03"}));
}

TEST_F(RasterExport, BandsAreChosenNamedAndOrdered) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const Strings set = {directory_ / "landsat7/set.xml"};
    const std::string blue = "Blue (band 1)", red = "Red (band 3)", nir = "Near infrared (band 4)",
                      short1 = "Short-wave infrared 1 (band 5)",
                      short2 = "Short-wave infrared 2 (band 7)",
                      low = "Thermal infrared, low gain (band 6L)",
                      high = "Thermal infrared, high gain (band 6H)";
    const std::pair<Strings, Strings> cases[] = {
        {{"--bands", "nir,red,Blue (band 1)"}, {nir, red, blue}},
        {{"--bands", low, "--bands", "red"}, {low, red}},
        {{"--bands", "3, #0"}, {red, blue}},
        {{"--bands", "B4,6h,b07"}, {nir, high, short2}},
        {{"--bands", "swir,lwir"}, {short1, short2, low, high}},
        {{"--bands", "*_B6?.TIF"}, {low, high}},
        {{"--bands", "6,B62"}, {low, high}},
        {{"--bands", "80,62,1"}, {"Panchromatic (band 8)", high, blue}},
        {{"--bands", "B[45],B?", "--bands", "4"},
         {nir, short1, blue, "Green (band 2)", red, short2, "Panchromatic (band 8)"}},
        {{"--bands", "B61,B[12]0"}, {low, blue, "Green (band 2)"}},
        {{"--bands", "RED,thermal*"}, {red, low, high}},
        {{"--bands", "blue,red,nir", "--order", "display"}, {red, blue, nir}},
        {{"--bands", "red,nir", "--name", "nir=N, i=r", "--name", "4=x"}, {red, "x"}},
    };
    for (const auto& [options, names] : cases) {
        EXPECT_EQ(namesIn(infoOf(joined({"vrt"}, options), set)), names) << options[1];
    }
    infoOf({"vrt", "--bands", "4,nir,red,*"}, set);
    EXPECT_THAT(said_, HasSubstr("--bands: nir is there already, and comes once\n"));
    EXPECT_THAT(said_, Not(HasSubstr("*")));
    EXPECT_EQ(namesIn(infoOf({"export", "--bands", "red,nir", "--name", "nir=a,b=c"}, set)),
              (Strings{red, "a,b=c"}));
    for (const Strings& wrong :
         {Strings{"--bands", "purple"}, {"--bands", "red,"}, {"--name", "red"}}) {
        EXPECT_EQ(runTool(joined({"vrt", set[0], "-o", directory_ / "none.vrt"}, wrong)).code, 2);
    }
}

/// A component with every possible description.
std::string describe(const std::string& path) {
    return fakes::changeRaster(path, [&path](GDALDataset& file) {
        GDALRasterBand& band = *file.GetRasterBand(1);
        band.SetDescription("cover");
        band.SetScale(0.5);
        band.SetOffset(-3.25);
        band.SetUnitType("m");
        band.SetMetadataItem("OWN", "a < b\xFF");
        band.SetMetadataItem("ITEM", "x", "DOMAIN");
        band.SetNoDataValue(7);
        file.SetMetadataItem("SHARED", "same");
        file.SetMetadataItem("ITEM", "z", "FILE");
        file.SetMetadataItem("DIFFERENT", path.c_str());
        const char* const names[] = {"water", "l&nd", nullptr};
        band.SetCategoryNames(const_cast<char**>(names));
    });
}

/// The table of docs/rasters.md, row by row.
TEST_F(RasterExport, NothingOfAComponentIsLost) {
    const Strings files = {describe(write("a.tif")), describe(write("b.tif"))};
    for (const Strings& command : {Strings{"vrt"}, {"export"}, {"export", "--cog"}}) {
        const json info = infoOf(command, files);
        const json& band = info["bands"][1];
        EXPECT_EQ(said_, "");
        EXPECT_EQ(band["description"], "cover");
        EXPECT_EQ(band["scale"], 0.5);
        EXPECT_EQ(band["offset"], -3.25);
        EXPECT_EQ(band["unit"], "m");
        EXPECT_EQ(band["noDataValue"], 7);
        EXPECT_EQ(band["categories"], (json{"water", "l&nd"}));
        EXPECT_EQ(band["metadata"][""]["OWN"], "a < b\xEF\xBF\xBD");
        EXPECT_EQ(band["metadata"].contains("DOMAIN"), command.size() == 1);
        EXPECT_EQ(band["metadata"][""]["DIFFERENT"], files[1]);
        EXPECT_EQ(info["metadata"][""]["SHARED"], "same");
        EXPECT_EQ(info["metadata"].contains("FILE"), command.size() == 1);
        EXPECT_EQ(info["metadata"][""]["AREA_OR_POINT"], "Area");
    }
}

TEST_F(RasterExport, WhatLiesBesideAComponentDescribesIt) {
    const Strings files = {write("a_01.tif"), write("a_02.tif")};
    fakes::writeFile(files[1] + ".aux.xml",
                     "<PAMDataset><Metadata><MDI key=\"FILE\">z</MDI></Metadata>"
                     "<PAMRasterBand band=\"1\"><NoDataValue le_hex_equiv=\"0000000000004F40\">"
                     "61.9</NoDataValue><ColorInterp>Green"
                     "</ColorInterp><Description>beside</Description></PAMRasterBand>"
                     "</PAMDataset>");
    fakes::writeFile(files[0] + ".MSK", "whatever");
    const std::string archive = directory_ / "a.tar";
    runProgram({"tar", "-cf", archive, "-C", directory_.path(), "."});
    for (const Strings& set : {files, {archive}}) {
        SCOPED_TRACE(set[0]);
        EXPECT_EQ(runTool(joined({"info", "--json"}, set)).json()["bands"][1]["noData"], 62);
        for (const char* command : {"vrt", "export"}) {
            const json band = infoOf({command}, set)["bands"][1];
            EXPECT_THAT(said_, HasSubstr("a_01.tif.MSK: masks of their own files"));
            EXPECT_EQ(band["description"], "beside");
            EXPECT_EQ(band["colorInterpretation"], "Green");
            EXPECT_EQ(band["metadata"][""]["FILE"], "z");
            EXPECT_TRUE(command == std::string("vrt")
                            ? band["noDataValue"] == 62
                            : band["mask"]["flags"] == json{"PER_DATASET"});
        }
    }
}

/// Those in the file, and those beside it.
TEST_F(RasterExport, StatisticsAreThoseOfTheBandsPixels) {
    const fakes::Raster fine{
        .width = 24, .height = 16, .transform = {{500000, 15, 0, 4600000, 0, -15}}};
    const Strings files = {write("a_01.tif"), write("a_02.tif"), write("a_03.tif", fine)};
    fakes::changeRaster(
        files[0], [](GDALDataset& file) { file.GetRasterBand(1)->SetStatistics(1, 99, 2, 3); });
    for (const std::string& file : {files[1], files[2]}) {
        runProgram({"gdalinfo", "-stats", file});
        ASSERT_TRUE(fs::exists(file + ".aux.xml"));
    }
    using Has = std::vector<bool>;
    const std::pair<Strings, Has> cases[] = {
        {{"--bands", "1,2"}, {true, true}},
        {{"--bands", "1,2", "--window", "0,0,12,8"}, {true, true}},
        {{"--bands", "1,2", "--window", "0,0,12,7"}, {false, false}},
        {{"--bands", "1,3"}, {false, true}},
        {{"--resolution", "coarsest"}, {true, true, false}},
        {{"--bands", "1,2", "--nodata", "99"}, {false, false}},
    };
    const auto has = [&](const Strings& command) {
        Has found;
        const json info = infoOf(command, files);
        for (const json& band : info["bands"]) {
            found.push_back(band["metadata"].value("", json()).contains("STATISTICS_MAXIMUM"));
        }
        return found;
    };
    const Strings commands[] = {{"vrt"}, {"export"}, {"export", "--cog"}};
    for (const Strings& command : commands) {
        for (const auto& [options, expected] : cases) {
            EXPECT_EQ(has(joined(command, options)), expected) << joined(command, options).back();
        }
        const json kept = infoOf(joined(command, {"--bands", "1"}), files);
        EXPECT_EQ(kept["bands"][0]["metadata"][""]["STATISTICS_MAXIMUM"], "99");
    }
    // A mask for all bands hides pixels that each band counts.
    withNoData(files[0], 99);
    for (const Strings& command : commands) {
        EXPECT_EQ(has(joined(command, {"--bands", "1,2"})), Has(2, command[0] == "vrt"));
    }
}

TEST_F(RasterExport, ColourTablesAreForVirtualRastersOnly) {
    const fakes::Raster raster{.palette = true};
    const Strings files = {write("a.tif", raster), write("b.tif", raster)};
    EXPECT_EQ(infoOf({"vrt"}, files)["bands"][1]["colorTable"]["entries"][1],
              (json{255, 1, 2, 255}));
    EXPECT_FALSE(infoOf({"export"}, files)["bands"][1].contains("colorTable"));
    EXPECT_THAT(said_, HasSubstr("b: without its colour table"));
    infoOf({"vrt", "--resolution", "10", "--resampling", "cubic"}, files);
    EXPECT_THAT(said_, HasSubstr("b.tif: resampled (nearest), since its colours"));
}

TEST_F(RasterExport, CreationOptionsGoBeforeOurs) {
    const Strings files = {write("a_01.tif"), write("a_02.tif")};
    const auto image = [this, &files](const Strings& options) {
        return infoOf(joined({"export"}, options), files)["metadata"]["IMAGE_STRUCTURE"];
    };
    EXPECT_EQ(image({})["COMPRESSION"], "DEFLATE");
    EXPECT_EQ(image({"--co", "COMPRESS=LZW", "--co", "interleave=PIXEL"})["INTERLEAVE"], "PIXEL");
    EXPECT_EQ(image({"--cog", "--co", "COMPRESS=LZW"})["COMPRESSION"], "LZW");
    EXPECT_EQ(image({"--cog"})["LAYOUT"], "COG");
    EXPECT_EQ(said_, "");
    EXPECT_EQ(image({"--co", "NBITS=7"})["COMPRESSION"], "DEFLATE");
    EXPECT_THAT(said_, HasSubstr((directory_ / "out.tif, band 1: One or more pixels clipped")));
    for (const char* wrong :
         {"NONE", "NO_SUCH=1", "TFW=YES", "profile=BASELINE", "compress=WEBP"}) {
        const Strings command = {"export", "--co", wrong, "-o", directory_ / "x.tif"};
        EXPECT_EQ(runTool(joined(command, files)).code, 2) << wrong;
    }
}

TEST_F(RasterExport, APathThatXmlCannotHoldIsRefusedInAVirtualRasterOnly) {
    for (const char* name : {"b\x01_02.tif", "b\xFF_02.tif"}) {
        const Strings files = {write("a_01.tif"), write(name)};
        const Outcome outcome = runKestms(joined({"vrt", "-o", directory_ / "out.vrt"}, files));
        EXPECT_EQ(outcome.code, 4);
        EXPECT_THAT(outcome.err, HasSubstr("_02.tif: a virtual raster cannot hold this name\n"));
        EXPECT_EQ(infoOf({"export"}, files)["bands"].size(), 2U);
    }
    for (const char* name : {" b_02.tif", "\n'b\"_02.tif"}) {
        const Strings files = {write("a_01.tif"), write(name)};
        EXPECT_EQ(infoOf({"vrt"}, files)["bands"][1]["checksum"],
                  gdalInfo(files[1])["bands"][0]["checksum"]);
    }
}

TEST_F(RasterExport, AStyleShowsNaturalColours) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const Strings set = {directory_ / "quickbird-1234/set.xml"};
    infoOf({"vrt"}, set);
    EXPECT_THAT(fakes::readFile(directory_ / "out.qml"),
                HasSubstr("redBand=\"3\" greenBand=\"2\" blueBand=\"1\""));
    infoOf({"vrt", "--order", "display"}, set);
    EXPECT_THAT(fakes::readFile(directory_ / "out.qml"),
                HasSubstr("redBand=\"1\" greenBand=\"2\" blueBand=\"3\""));
    // As their components say, if the set does not know.
    Strings coloured;
    for (const GDALColorInterp colour : {GCI_BlueBand, GCI_GreenBand, GCI_RedBand}) {
        coloured.push_back(fakes::changeRaster(
            write("c" + std::to_string(colour) + ".tif"), [colour](GDALDataset& file) {
                file.GetRasterBand(1)->SetColorInterpretation(colour);
            }));
    }
    infoOf({"vrt"}, coloured);
    EXPECT_THAT(fakes::readFile(directory_ / "out.qml"), HasSubstr("Band=\"1\""));
    for (const Strings& options : {Strings{"--order", "display"}, {"--bands", "red"}}) {
        EXPECT_EQ(infoOf(joined({"vrt"}, options), coloured)["bands"][0]["description"],
                  "c" + std::to_string(GCI_RedBand));
    }
}

/// Files of the same name share a style, as far as QGIS is concerned.
TEST_F(RasterExport, AStyleIsReplacedWithItsFileOnly) {
    ASSERT_EQ(runTool({"samples", directory_.path(), "--size", "8"}).code, 0);
    const Strings set = {directory_ / "quickbird-1234/set.xml"};
    const std::string style = directory_ / "out.qml";
    for (const Strings& without : {Strings{"--no-style"}, {"--bands", "nir"}}) {
        infoOf({"vrt"}, set);
        ASSERT_TRUE(fs::exists(style));
        infoOf(joined({"vrt"}, without), set);
        EXPECT_FALSE(fs::exists(style)) << "that of the raster before";
    }
    infoOf({"export"}, set);
    const std::string text = fakes::readFile(style);
    for (const std::string& there : {text, std::string("mine"), std::string("m\0ne", 4)}) {
        fakes::writeFile(style, there);
        for (const Strings& options : {Strings{"--no-style"}, {"--order", "display"}}) {
            infoOf(joined({"vrt"}, options), set);
            EXPECT_EQ(said_, "kestms: " + style +
                                 ": the style that is there stays, and QGIS shows out.vrt by it\n");
            EXPECT_EQ(fakes::readFile(style), there);
        }
        infoOf({"vrt"}, set);
        EXPECT_EQ(said_.empty(), there == text) << "shows the same bands";
    }
}

TEST_F(RasterExport, ARasterMovesWithItsComponents) {
    const Strings files = {write("old/scene/a&b_01.tif"), write("old/scene/a&b_02.tif")};
    fs::create_directories(directory_ / "far/from/here");
    fs::create_directory_symlink(directory_ / "far/from/here", directory_ / "old/link");
    const auto sum = [](const std::string& raster) {
        return gdalInfo(raster)["bands"].back()["checksum"];
    };
    const json own = sum(files[1]);
    for (const std::string& output :
         {directory_ / "old/link/out.vrt", directory_ / "old/out.vrt"}) {
        ASSERT_EQ(runTool(joined({"vrt", "-o", output}, files)).code, 0);
        EXPECT_EQ(sum(output), own);
    }
    fs::rename(directory_ / "old", directory_ / "new");
    EXPECT_EQ(sum(directory_ / "new/out.vrt"), own);
}

}  // namespace
}  // namespace kestms
