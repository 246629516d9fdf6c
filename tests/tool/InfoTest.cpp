#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "bands/NamingScheme.h"
#include "tests/tool/RunTool.h"
#include "tool/Resources.h"
#include "tool/Words.h"

namespace kestms {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

std::vector<std::string> infoOf(const std::vector<std::string>& files,
                                const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"info"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    arguments.insert(arguments.end(), options.begin(), options.end());
    return arguments;
}

class Info : public testing::Test {
  protected:
    std::string write(const std::string& name, const fakes::Raster& raster = {}) {
        return fakes::writeRaster(directory_ / name, raster);
    }

    fakes::TempDirectory directory_;
};

TEST_F(Info, DescribesALandsatScene) {
    const auto files = writeLandsat(directory_);
    const json set = runTool(infoOf(files, {"--json"})).json();
    EXPECT_EQ(set["referenceName"], kLandsat.substr(0, 21));
    EXPECT_EQ(set["namingScheme"], json({{"number", 5}, {"name", "landsat-7"}}));
    EXPECT_THAT(set["size"], ElementsAre(24, 16));
    EXPECT_THAT(set["files"], ElementsAreArray(files));
    EXPECT_TRUE(set["metadataTextFile"].is_null());
    ASSERT_EQ(set["bands"].size(), files.size());
    const json& band = set["bands"][4];
    const json expected = {
        {"frame", 4},
        {"number", 8},
        {"name", "Panchromatic (band 8)"},
        {"type", "panchromatic"},
        {"displayChannel", "none"},
        {"commonName", "pan"},
        {"bucket", 1},
        {"indexInBucket", 0},
        {"file", files[0]},
        {"fileFrame", 0},
        {"size", {24, 16}},
        {"bitsPerPixel", 8},
        {"pixelModel", "single channel"},
        {"sampleFormat", "unsigned integer"},
        {"pixelSize", {15, 15}},
        {"rotation", 0},
        {"coordinateSystem", band["coordinateSystem"]},
        {"corners",
         {{"upperLeft", {500000, 4600000}},
          {"upperRight", {500360, 4600000}},
          {"lowerLeft", {500000, 4599760}},
          {"lowerRight", {500360, 4599760}}}},
    };
    EXPECT_EQ(band, expected) << json::diff(expected, band);
    EXPECT_EQ(set["bands"][0]["indexInBucket"], 3);
    EXPECT_EQ(band["coordinateSystem"]["epsg"], 32632);
    EXPECT_EQ(band["coordinateSystem"]["name"], "EPSG:32632");
    const json buckets = {{{"index", 0},
                           {"number", 0},
                           {"name", "Reflective bands"},
                           {"bandCount", 4},
                           {"pixelSize", {30, 30}}},
                          {{"index", 1},
                           {"number", 2},
                           {"name", "Panchromatic band"},
                           {"bandCount", 1},
                           {"pixelSize", {15, 15}}}};
    EXPECT_EQ(set["buckets"], buckets);
}

TEST_F(Info, WritesTheSameAsText) {
    const std::string text = runTool(infoOf(writeLandsat(directory_), {})).out;
    const std::string lines[] = {
        "Reference name:      " + kLandsat.substr(0, 21) + "\n",
        "Naming scheme:       5 landsat-7 (\"L7\" names)\n",
        "Size:                24 x 16 pixels on the finest grid\n",
        "Coordinate system:   EPSG:32632\n",
        "\nFiles: 5\n  " + directory_.path(),
        "\n     1       2  Panchromatic band      1  15 x 15\n",
        "\n    0       0  Blue (band 1)                         blue              blue          0  "
        "30 x "
        "30     " +
            directory_.path(),
    };
    for (const std::string& line : lines) {
        EXPECT_THAT(text, HasSubstr(line));
    }
}

TEST_F(Info, SpeaksTheChosenLanguage) {
    const auto files = writeLandsat(directory_);
    EXPECT_THAT(runTool(infoOf(files, {"--language", "ja"})).out, HasSubstr("青"));
    std::istringstream in;
    for (const auto& [variable, value, blue] : {std::tuple{"LANG", "de_DE.UTF-8", "Blau"},
                                                {"LC_ALL", "fr", "Bleu"},
                                                {"LC_ALL", "xx_YY", "Blue"},
                                                {"LC_ALL", "C", "Blue"}}) {
        for (const char* each : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            unsetenv(each);
        }
        setenv(variable, value, 1);
        std::ostringstream out;
        std::ostringstream err;
        const char* argv[] = {"kestms", "info", files[0].c_str(), files[4].c_str()};
        EXPECT_EQ(run(4, argv, in, out, err), 0);
        EXPECT_THAT(out.str(), HasSubstr(blue)) << value;
    }
    EXPECT_THAT(availableLanguages(), ElementsAre("de", "en", "es", "fr", "ja"));
}

TEST_F(Info, ShowsPropertiesInOrder) {
    write("po_7_red_01.tif");
    fakes::Raster described;
    described.description = "scene\nof two lines";
    write("po_7_nir_01.tif", described);
    fakes::writeFile(directory_ / "po_7_metadata.txt", "first line\r\nsecond \x1b line\n");
    const json set = runTool({"info", directory_.path(), "--json", "--properties"}).json();
    EXPECT_EQ(set["metadataTextFile"],
              json({{"file", directory_ / "po_7_metadata.txt"}, {"readable", true}}));
    std::vector<std::string> names;
    for (const json& property : set["bands"][1]["properties"]) {
        names.push_back(property["name"]);
    }
    EXPECT_THAT(names, ElementsAre(testing::_, testing::_, "Metadata text file", "Reference name",
                                   "Band name", "Band type", "Band group"));
    const json& red = set["bands"][0]["properties"];
    const std::size_t last = red.size() - 1;
    EXPECT_EQ(red[last]["value"], "Multispectral, number 0 of 1");
    EXPECT_EQ(red[last - 1]["value"], "red, display channel red");
    EXPECT_EQ(red[last - 2]["value"],
              "Red, number 1 in its bucket, " + (directory_ / "po_7_red_01.tif") + ", frame 0");
    EXPECT_EQ(red[last - 3]["value"], "PO_7");
    EXPECT_EQ(red[last - 4]["value"], "first line\r\nsecond \x1b line\n");
    const std::string text = runTool({"info", directory_.path(), "--properties"}).out;
    EXPECT_THAT(text,
                HasSubstr("\n  Metadata text file:\n    first line\n    second \\x1b line\n"));
    EXPECT_THAT(text, HasSubstr("EPSG:32632, lower left (500000, 4599760), pixels of 30 x 30\n"));
    EXPECT_THAT(text, HasSubstr("Metadata text file:  " + (directory_ / "po_7_metadata.txt\n")));
}

TEST_F(Info, ExplainsTheNamingScheme) {
    const std::string red = write("po_7_red_01.tif");
    const std::string nir = write("po_7_nir_02.tif");
    const std::string green = write("po_7_grn_01.tif");
    const std::string landsat = write(kLandsat + "B10.TIF");
    const std::string a = write("a.tif");
    const std::string b = write("b.tif");
    const std::string redNitf =
        write("po_7_red_01.ntf", {.driver = "NITF", .options = {"ICORDS=N"}});
    const std::string quickBird = write("q.tif", {.description = "{\n  bandList = \n1\n}"});
    auto product = fakes::fastProduct({"B80.FST"});
    product.y = 4600000;
    const std::string header = directory_ / (kLandsat + "HPN.FST");
    fakes::writeFile(directory_ / "B80.FST", fakes::fastBand(product, 1));
    fakes::writeFile(header, kestms::samples::fastHeaderText(product));
    struct Case {
        std::vector<std::string> files;
        const char* scheme;
        std::vector<std::string> obstacles;
    };
    const Case cases[] = {
        {{red, nir}, "po-product", {}},
        {{red, green, landsat},
         "generic",
         {landsat + " shows \"L7\" names, " + red + " shows \"po_\" product names",
          red + " and " + green + " share the band number 1"}},
        {{a, nir, b},
         "generic",
         {nir + " shows \"po_\" product names, " + a + " shows no naming convention",
          a + " and " + b + " both end in no band number"}},
        {{landsat, header},
         "numbered",
         {header + " shows \"L7\" names, FAST headers, " + landsat + " shows \"L7\" names"}},
        {{red, redNitf},
         "generic",
         {redNitf + " shows \"po_\" product names, NITF files, " + red +
              " shows \"po_\" product names",
          red + " and " + redNitf + " share the band number 1"}},
        {{quickBird, a},
         "generic",
         {a + " shows no naming convention, " + quickBird +
              " shows TIFF files with a QuickBird band list",
          quickBird + " and " + a + " both end in no band number"}},
    };
    for (const Case& each : cases) {
        const json set = runTool(infoOf(each.files, {"--json", "--explain"})).json();
        EXPECT_EQ(set["namingScheme"]["name"], each.scheme);
        EXPECT_THAT(set["explanation"]["obstacles"], ElementsAreArray(each.obstacles));
        EXPECT_EQ(set["explanation"]["components"].size(), each.files.size());
        const std::string text = runTool(infoOf(each.files, {"--explain"})).out;
        for (const std::string& obstacle : each.obstacles) {
            EXPECT_THAT(text, HasSubstr("  " + obstacle + ".\n"));
        }
    }
    EXPECT_EQ(
        runTool({"check", a, nir, directory_ / "none", "--json", "--explain"})
            .json()["explanation"]["components"]
            .dump(),
        json({{{"file", a}, {"fileFrame", 0}, {"kind", "generic"}, {"trailingNumber", nullptr}},
              {{"file", nir}, {"fileFrame", 0}, {"kind", "po-product"}, {"trailingNumber", 2}}})
            .dump());
}

TEST_F(Info, LeavesOutWhatCannotBeReadAndKeepsTheRest) {
    fakes::writeFile(directory_ / "bad.tif", "II");
    const Outcome outcome =
        runTool({"info", write("a01.tif"), directory_ / "bad.tif", write("a02.tif"), "--json"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err.find("kestms: " + (directory_ / "bad.tif") + ": left out: "), 0U);
    EXPECT_EQ(outcome.json()["bands"].size(), 2U);
    EXPECT_EQ(outcome.json()["files"].size(), 2U);
}

TEST(Words, NameBandsInTheCommonVocabulary) {
    using kest::BandType;
    const std::tuple<BandType, int, const char*> cases[] = {{BandType::Blue, 1, "blue"},
                                                            {BandType::MidInfrared, 4, "swir16"},
                                                            {BandType::MidInfrared, 5, "swir22"},
                                                            {BandType::MidInfrared, 9, ""},
                                                            {BandType::ThermalHighGain, 7, "lwir"},
                                                            {BandType::Panchromatic, 0, "pan"},
                                                            {BandType::Unknown, 4, ""}};
    for (const auto& [type, number, name] : cases) {
        EXPECT_EQ(commonName(type, number), name);
    }
}

TEST(Words, WriteNumbersToBeReadByPeople) {
    const std::pair<double, const char*> cases[] = {
        {30.0, "30"}, {500000.0, "500000"}, {0.00025, "0.00025"}, {-0.1, "-0.1"},
        {0, "0"},     {1e300, "1e+300"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(numberText(value), text);
    }
}

TEST(Words, NameCoordinateSystems) {
    EXPECT_EQ(systemName(4326, R"(GEOGCS["WGS 84"])"), "EPSG:4326");
    EXPECT_EQ(systemName(0, R"(LOCAL_CS["my grid",UNIT["m",1]])"), "my grid");
    EXPECT_EQ(systemName(0, "no quotes"), "no quotes");
    EXPECT_EQ(systemName(0, "half \""), "half \"");
    EXPECT_EQ(systemName(0, ""), "none");
}

}  // namespace
}  // namespace kestms
