#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/tool/RunTool.h"
#include "tool/scene/Resources.h"
#include "tool/scene/Words.h"
#include "tool/terminal/NumberText.h"

namespace kestms {
namespace {

using nlohmann::json;
using testing::_;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

class Info : public InDirectory {
  protected:
    static Outcome infoOf(const Strings& files, const Strings& options) {
        return runTool(joined(joined({"info"}, files), options));
    }
};

TEST_F(Info, DescribesALandsatScene) {
    const auto files = writeLandsat(directory_);
    const json set = infoOf(files, {"--json"}).json();
    EXPECT_EQ(set["schema"], json({{"name", "kestms info"}, {"version", 1}}));
    EXPECT_EQ(set["referenceName"], kLandsat.substr(0, 21));
    EXPECT_EQ(set["namingScheme"], json({{"number", 5}, {"name", "landsat-7"}}));
    EXPECT_THAT(set["size"], ElementsAre(24, 16));
    EXPECT_THAT(set["files"], ElementsAreArray(files));
    EXPECT_TRUE(set["metadataTextFile"].is_null());
    ASSERT_EQ(set["bands"].size(), files.size());
    EXPECT_EQ(set["bands"][0]["indexInBucket"], 3);
    json band = set["bands"][4];
    EXPECT_EQ(band["file"], files[0]);
    EXPECT_EQ(band["coordinateSystem"]["epsg"], 32632);
    EXPECT_EQ(band["coordinateSystem"]["name"], "EPSG:32632");
    band.erase("file");
    band.erase("coordinateSystem");
    const json expected = R"json({
        "frame": 4, "number": 8, "name": "Panchromatic (band 8)", "type": "panchromatic",
        "displayChannel": "none", "commonName": "pan", "bucket": 1, "indexInBucket": 0,
        "fileFrame": 0, "size": [24, 16], "bitsPerPixel": 8, "pixelModel": "single channel",
        "sampleFormat": "unsigned integer", "sampleType": "uint8", "noData": null, "pixelSize": [15, 15], "rotation": 0,
        "corners": {"upperLeft": [500000, 4600000], "upperRight": [500360, 4600000],
                    "lowerLeft": [500000, 4599760], "lowerRight": [500360, 4599760]}})json"_json;
    EXPECT_EQ(band, expected) << json::diff(expected, band);
    const json buckets = R"json([
        {"index": 0, "number": 0, "name": "Reflective bands", "bandCount": 4, "pixelSize": [30, 30]},
        {"index": 1, "number": 2, "name": "Panchromatic band", "bandCount": 1, "pixelSize": [15, 15]}
    ])json"_json;
    EXPECT_EQ(set["buckets"], buckets);
    const std::string text = infoOf(files, {}).out;
    for (const std::string& line : Strings{
             "Reference name:      " + kLandsat.substr(0, 21) + "\n",
             "Naming scheme:       5 landsat-7 (\"L7\" names)\n",
             "Size:                24 x 16 pixels on the finest grid\n",
             "Coordinate system:   EPSG:32632\n",
             "\nFiles: 5 in " + directory_.path() + "/\n  " + kLandsat.substr(0, 21),
             "\n     1       2  Panchromatic band      1  15 x 15\n",
             "\n    0       0  Blue (band 1)                         blue              blue"
             "              0  blue     30 x 30     uint8       none  " +
                 directory_.path(),
         }) {
        EXPECT_THAT(text, HasSubstr(line));
    }
}

TEST_F(Info, SpeaksTheChosenLanguage) {
    const auto files = writeLandsat(directory_);
    EXPECT_THAT(infoOf(files, {"--language", "ja"}).out, HasSubstr("青"));
    for (const auto& [variable, value, blue] : {std::tuple{"LANG", "de_DE.UTF-8", "Blau"},
                                                {"LC_ALL", "fr", "Bleu"},
                                                {"LC_ALL", "xx_YY", "Blue"},
                                                {"LC_ALL", "C", "Blue"}}) {
        for (const char* each : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            unsetenv(each);
        }
        setenv(variable, value, 1);
        const Outcome outcome = runAsTheUser({"info", files[0], files[4]}, std::istringstream());
        EXPECT_THAT(outcome.out, HasSubstr(blue)) << value;
    }
    EXPECT_THAT(availableLanguages(), ElementsAre("de", "en", "es", "fr", "ja"));
}

TEST_F(Info, ShowsPropertiesInOrder) {
    const std::string red = write("po_7_red_01.tif");
    write("po_7_nir_01.tif", {.description = "scene\nof two lines"});
    const std::string metadata = directory_ / "po_7_metadata.txt";
    fakes::writeFile(metadata, "first line\r\nsecond \x1b line\n");
    const json set = runTool({"info", directory_.path(), "--json", "--properties"}).json();
    EXPECT_EQ(set["metadataTextFile"], json({{"file", metadata}, {"readable", true}}));
    Strings shown;
    for (const json& property : set["bands"][0]["properties"]) {
        shown.push_back(property["name"].get<std::string>() + ": " +
                        property["value"].get<std::string>());
    }
    EXPECT_THAT(shown, ElementsAre(_, "Metadata text file: first line\r\nsecond \x1b line\n",
                                   "Reference name: PO_7",
                                   "Band name: Red, number 1 in its bucket, " + red + ", frame 0",
                                   "Band type: red, display channel red",
                                   "Band group: Multispectral, number 0 of 1"));
    EXPECT_EQ(set["bands"][1]["properties"].size(), shown.size() + 1);
    const std::string text = runTool({"info", directory_.path(), "--properties"}).out;
    EXPECT_THAT(text,
                HasSubstr("\n  Metadata text file:\n    first line\n    second \\x1b line\n"));
    EXPECT_THAT(text, HasSubstr("EPSG:32632, lower left (500000, 4599760), pixels of 30 x 30\n"));
    EXPECT_THAT(text, HasSubstr("Metadata text file:  " + metadata + "\n"));
}

TEST_F(Info, ExplainsTheNamingScheme) {
    const std::string red = write("po_7_red_01.tif");
    const std::string nir = write("po_7_nir_02.tif");
    const std::string green = write("po_7_grn_01.tif");
    const std::string landsat = write(kLandsat + "B10.TIF");
    const std::string a = write("a.tif");
    const std::string b = write("b.tif");
    const auto listing = [](const char* list) {
        return fakes::Raster{.description =
                                 std::string("{\n  bandList = \n  [\n") + list + "\n  ]\n}"};
    };
    const std::string listed = write("q_a.tif", listing("1,"));
    const std::string overlong = write("q_b.tif", listing("1,2,3,4,5"));
    fakes::Raster two = listing("1,");
    two.bands = 2;
    const std::string shortList = write("q_c.tif", two);
    const auto nitf = [&](const char* name, const char* letter) {
        return write(
            name, {.driver = "NITF", .options = {"ICORDS=N", std::string("IREPBAND=") + letter}});
    };
    const std::string lettered = nitf("a.ntf", "R");
    const std::string odd = nitf("c.ntf", "X");
    struct Case {
        Strings files;
        const char* scheme;
        Strings obstacles;
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
        {{landsat, red},
         "numbered",
         {red + " shows \"po_\" product names, " + landsat + " shows \"L7\" names"}},
        {{listed, overlong},
         "quickbird",
         {overlong +
          " is not named by its product: its band list is \"12345\", not 1234, 321, 432 or 1"}},
        {{listed, shortList + "#1"},
         "quickbird",
         {shortList + "#1 is not named by its product: its band list \"1\" is shorter than the "
                      "file's bands"}},
        {{lettered, odd},
         "nitf",
         {odd + " is not named by its product: its band letter is \"X\", not R, G, B, N or M"}},
    };
    for (const Case& each : cases) {
        const json set = infoOf(each.files, {"--json", "--explain"}).json();
        EXPECT_EQ(set["namingScheme"]["name"], each.scheme);
        EXPECT_THAT(set["explanation"]["obstacles"], ElementsAreArray(each.obstacles));
        EXPECT_EQ(set["explanation"]["components"].size(), each.files.size());
        const std::string text = infoOf(each.files, {"--explain"}).out;
        for (const std::string& obstacle : each.obstacles) {
            EXPECT_THAT(text, HasSubstr("  " + obstacle + ".\n"));
        }
    }
    EXPECT_EQ(infoOf({lettered, odd}, {"--json"}).json()["bands"][1]["name"], "c");
    const json report =
        runTool({"check", a, nir, directory_ / "none", "--json", "--explain"}).json();
    const json& components = report["explanation"]["components"];
    EXPECT_EQ(components.size(), 2U);
    EXPECT_TRUE(components[0]["trailingNumber"].is_null());
    EXPECT_EQ(
        components[1],
        json({{"file", nir}, {"fileFrame", 0}, {"kind", "po-product"}, {"trailingNumber", 2}}));
}

TEST(Words, WriteNumbersToBeReadByPeople) {
    const std::pair<double, const char*> cases[] = {
        {30.0, "30"}, {500000.0, "500000"}, {0.00025, "0.00025"}, {-0.1, "-0.1"},
        {0, "0"},     {1e300, "1e+300"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(numberText(value), text);
    }
    const std::pair<double, const char*> sizes[] = {
        {150.01999999999998, "150.02"}, {30, "30"},
        {1234567.891, "1234568"},       {0.000269494585235, "0.000269495"},
        {1.0 / 3, "0.333333"},          {-15, "-15"}};
    for (const auto& [value, text] : sizes) {
        EXPECT_EQ(sizeText(value), text);
    }
    EXPECT_EQ(sizeText(30, 29.99999999), "30 x 30");
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
