#include <gmock/gmock.h>

#include "tests/tool/RunTool.h"

namespace kestms {
namespace {

using testing::ElementsAreArray;

/// Scheme and reference name, then a line a frame.
using Lines = Strings;

Lines linesOf(const nlohmann::json& set) {
    const auto text = [](const nlohmann::json& value) { return value.get<std::string>(); };
    Lines lines = {set["namingScheme"]["number"].dump() + " " + text(set["referenceName"])};
    for (const auto& band : set["bands"]) {
        const auto& bucket = set["buckets"].at(band["bucket"].get<std::size_t>());
        const std::filesystem::path file = text(band["file"]);
        lines.push_back(band["number"].dump() + " " + text(band["name"]) + "|" +
                        text(band["type"]) + "|" + text(band["displayChannel"]) + "|" +
                        bucket["number"].dump() + " " + text(bucket["name"]) + "|" +
                        file.filename().string() + "#" + band["fileFrame"].dump());
    }
    return lines;
}

/// The "L7" product, with its bands in those files.
Lines landsat(const std::string& scheme, const Lines& files) {
    const char* const bands[] = {
        "0 Blue (band 1)|blue|blue|0 Reflective bands|",
        "1 Green (band 2)|green|green|0 Reflective bands|",
        "2 Red (band 3)|red|red|0 Reflective bands|",
        "3 Near infrared (band 4)|near-infrared|none|0 Reflective bands|",
        "4 Short-wave infrared 1 (band 5)|mid-infrared|none|0 Reflective bands|",
        "5 Short-wave infrared 2 (band 7)|mid-infrared|none|0 Reflective bands|",
        "6 Thermal infrared, low gain (band 6L)|thermal-low-gain|none|1 Thermal bands|",
        "7 Thermal infrared, high gain (band 6H)|thermal-high-gain|none|1 Thermal bands|",
        "8 Panchromatic (band 8)|panchromatic|none|2 Panchromatic band|",
    };
    const std::string name = "L71026029_02920000609";
    Lines lines = {scheme + " " + name};
    for (std::size_t i = 0; i < files.size(); ++i) {
        lines.push_back(bands[i] + name + "_" + files[i]);
    }
    return lines;
}

/// A scene of the catalogue.
Lines withFiles(const std::string& scene,
                const std::vector<std::pair<std::string, std::string>>& bands) {
    Lines lines = {"9 " + scene};
    for (const auto& [band, file] : bands) {
        lines.push_back(band + scene + "_" + file + "#0");
    }
    return lines;
}

TEST(Samples, EverySetIsRecognisedBandByBand) {
    const fakes::TempDirectory directory;
    ASSERT_EQ(runTool({"samples", directory.path(), "--size", "8"}).code, 0);
    const std::pair<const char*, Lines> cases[] = {
        {"po-product",
         {"3 PO_1234567",
          "0 Panchromatic|panchromatic|none|0 Panchromatic|po_1234567_pan_0000000.tif#0",
          "1 Blue|blue|blue|1 Multispectral|po_1234567_blu_0000000.tif#0",
          "2 Green|green|green|1 Multispectral|po_1234567_grn_0000000.tif#0",
          "3 Red|red|red|1 Multispectral|po_1234567_red_0000000.tif#0",
          "4 Near infrared|near-infrared|none|1 Multispectral|po_1234567_nir_0000000.tif#0"}},
        {"po-nitf",
         {"4 PO_1234567", "1 Blue|blue|blue|1 Multispectral|po_1234567_blu_0000000.ntf#0",
          "2 Green|green|green|1 Multispectral|po_1234567_grn_0000000.ntf#0",
          "3 Red|red|red|1 Multispectral|po_1234567_red_0000000.ntf#0",
          "4 Near infrared|near-infrared|none|1 Multispectral|po_1234567_nir_0000000.ntf#0"}},
        {"landsat7", landsat("5", {"B10.TIF#0", "B20.TIF#0", "B30.TIF#0", "B40.TIF#0", "B50.TIF#0",
                                   "B70.TIF#0", "B61.TIF#0", "B62.TIF#0", "B80.TIF#0"})},
        {"landsat7-fast",
         landsat("6", {"HRF.FST#0", "HRF.FST#1", "HRF.FST#2", "HRF.FST#3", "HRF.FST#4", "HRF.FST#5",
                       "HTM.FST#0", "HTM.FST#1", "HPN.FST#0"})},
        {"landsat9",
         withFiles(
             "LC09_L1TP_193026_20250712_20250712_02_T1",
             {{"1 Blue (B2)|blue|blue|0 Reflective bands|", "B2.TIF"},
              {"2 Green (B3)|green|green|0 Reflective bands|", "B3.TIF"},
              {"3 Red (B4)|red|red|0 Reflective bands|", "B4.TIF"},
              {"4 Near infrared (B5)|near-infrared|none|0 Reflective bands|", "B5.TIF"},
              {"5 Short-wave infrared 1 (B6)|mid-infrared|none|0 Reflective bands|", "B6.TIF"},
              {"6 Short-wave infrared 2 (B7)|mid-infrared|none|0 Reflective bands|", "B7.TIF"},
              {"8 Thermal infrared 1 (B10)|thermal-low-gain|none|0 Reflective bands|", "B10.TIF"},
              {"10 Panchromatic (B8)|panchromatic|none|2 Panchromatic band|", "B8.TIF"}})},
        {"sentinel2",
         withFiles(
             "T32UMB_20250712T102559",
             {{"1 Blue (B02)|blue|blue|0 10 m bands|", "B02_10m.tif"},
              {"2 Green (B03)|green|green|0 10 m bands|", "B03_10m.tif"},
              {"3 Red (B04)|red|red|0 10 m bands|", "B04_10m.tif"},
              {"7 Near infrared (B08)|near-infrared|none|0 10 m bands|", "B08_10m.tif"},
              {"8 Near infrared, narrow (B8A)|near-infrared|none|1 20 m bands|", "B8A_20m.tif"},
              {"11 Short-wave infrared 1 (B11)|mid-infrared|none|1 20 m bands|", "B11_20m.tif"},
              {"12 Short-wave infrared 2 (B12)|mid-infrared|none|1 20 m bands|", "B12_20m.tif"}})},
        {"numbered",
         {"2 scene", "1 B01|unknown|none|1 Group 1|scene_01.tif#0",
          "2 B02|unknown|none|1 Group 1|scene_02.tif#0",
          "3 B03|unknown|none|1 Group 1|scene_03.tif#0",
          "10 B10|unknown|none|1 Group 1|scene_10.tif#0"}},
        {"generic",
         {"1 visible", "1 visible|unknown|none|1 Group 1|visible.tif#0",
          "2 infrared|unknown|none|1 Group 1|infrared.tif#0",
          "3 thermal|unknown|none|2 Group 2|thermal.tif#0"}},
        {"quickbird-1234",
         {"7 scene", "0 Blue|blue|blue|1 Multispectral|scene.tif#0",
          "1 Green|green|green|1 Multispectral|scene.tif#1",
          "2 Red|red|red|1 Multispectral|scene.tif#2",
          "3 Near infrared|near-infrared|none|1 Multispectral|scene.tif#3"}},
        {"quickbird-321",
         {"7 scene", "0 Blue|blue|blue|1 Natural colour|scene.tif#2",
          "1 Green|green|green|1 Natural colour|scene.tif#1",
          "2 Red|red|red|1 Natural colour|scene.tif#0"}},
        {"quickbird-432",
         {"7 scene", "1 Green|green|blue|1 Colour infrared|scene.tif#2",
          "2 Red|red|green|1 Colour infrared|scene.tif#1",
          "3 Near infrared|near-infrared|red|1 Colour infrared|scene.tif#0"}},
        {"quickbird-1",
         {"7 march", "0 Panchromatic|panchromatic|none|0 Panchromatic|march.tif#0",
          "0 Panchromatic|panchromatic|none|0 Panchromatic|june.tif#0"}},
        {"nitf",
         {"8 north", "0 Blue|blue|blue|1 Multispectral|south.ntf#0",
          "0 Panchromatic|panchromatic|none|0 Panchromatic|middle.ntf#0",
          "1 Green|green|green|1 Multispectral|east.ntf#0",
          "2 Red|red|red|1 Multispectral|north.ntf#0",
          "3 Near infrared|near-infrared|none|1 Multispectral|west.ntf#0"}},
    };
    for (const auto& [name, lines] : cases) {
        const std::string set = directory / name + "/set.xml";
        const auto info = runTool({"info", set, "--json"}).json();
        EXPECT_THAT(linesOf(info), ElementsAreArray(lines)) << name;
        EXPECT_EQ(info["metadataTextFile"].is_null(), name != std::string("po-product"));
        EXPECT_EQ(runTool({"check", set}).code, 0) << name;
    }
    EXPECT_EQ(fakes::namesIn(directory).size(), std::size(cases) + 1);
}

}  // namespace
}  // namespace kestms
