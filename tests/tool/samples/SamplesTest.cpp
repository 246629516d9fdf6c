#include "tests/tool/RunTool.h"

namespace kestms {
namespace {

/// "scheme reference: number file#frame, ..." of the bands in their order; "~" stands for the
/// reference name.
std::string summaryOf(const nlohmann::json& set) {
    const std::string reference = set["referenceName"];
    std::string text = set["namingScheme"]["number"].dump() + " " + reference + ":";
    for (const auto& band : set["bands"]) {
        std::string file = std::filesystem::path(band["file"].get<std::string>()).filename();
        if (EQUALN(file.c_str(), reference.c_str(), reference.size())) {
            file.replace(0, reference.size(), "~");
        }
        text += " " + band["number"].dump() + " " + file + "#" + band["fileFrame"].dump();
    }
    return text;
}

TEST(Samples, EverySetIsRecognisedBandByBand) {
    const fakes::TempDirectory directory;
    ASSERT_EQ(runTool({"samples", directory.path(), "--size", "8"}).code, 0);
    const std::pair<const char*, const char*> cases[] = {
        {"po-product",
         "3 PO_1234567: 0 ~_pan_0000000.tif#0 1 ~_blu_0000000.tif#0 2 ~_grn_0000000.tif#0 "
         "3 ~_red_0000000.tif#0 4 ~_nir_0000000.tif#0"},
        {"po-nitf",
         "4 PO_1234567: 1 ~_blu_0000000.ntf#0 2 ~_grn_0000000.ntf#0 3 ~_red_0000000.ntf#0 "
         "4 ~_nir_0000000.ntf#0"},
        {"landsat7",
         "5 L71026029_02920000609: 0 ~_B10.TIF#0 1 ~_B20.TIF#0 2 ~_B30.TIF#0 3 ~_B40.TIF#0 "
         "4 ~_B50.TIF#0 5 ~_B70.TIF#0 6 ~_B61.TIF#0 7 ~_B62.TIF#0 8 ~_B80.TIF#0"},
        {"landsat7-fast",
         "6 L71026029_02920000609: 0 ~_HRF.FST#0 1 ~_HRF.FST#1 2 ~_HRF.FST#2 3 ~_HRF.FST#3 "
         "4 ~_HRF.FST#4 5 ~_HRF.FST#5 6 ~_HTM.FST#0 7 ~_HTM.FST#1 8 ~_HPN.FST#0"},
        {"landsat9",
         "9 LC09_L1TP_193026_20250712_20250712_02_T1: 1 ~_B2.TIF#0 2 ~_B3.TIF#0 3 ~_B4.TIF#0 "
         "4 ~_B5.TIF#0 5 ~_B6.TIF#0 6 ~_B7.TIF#0 8 ~_B10.TIF#0 10 ~_B8.TIF#0"},
        {"sentinel2",
         "9 T32UMB_20250712T102559: 1 ~_B02_10m.tif#0 2 ~_B03_10m.tif#0 3 ~_B04_10m.tif#0 "
         "7 ~_B08_10m.tif#0 8 ~_B8A_20m.tif#0 11 ~_B11_20m.tif#0 12 ~_B12_20m.tif#0"},
        {"numbered", "2 scene: 1 ~_01.tif#0 2 ~_02.tif#0 3 ~_03.tif#0 10 ~_10.tif#0"},
        {"generic", "1 visible: 1 ~.tif#0 2 infrared.tif#0 3 thermal.tif#0"},
        {"quickbird-1234", "7 scene: 0 ~.tif#0 1 ~.tif#1 2 ~.tif#2 3 ~.tif#3"},
        {"quickbird-321", "7 scene: 0 ~.tif#2 1 ~.tif#1 2 ~.tif#0"},
        {"quickbird-432", "7 scene: 1 ~.tif#2 2 ~.tif#1 3 ~.tif#0"},
        {"quickbird-1", "7 march: 0 ~.tif#0 0 june.tif#0"},
        {"nitf", "8 north: 0 south.ntf#0 0 middle.ntf#0 1 east.ntf#0 2 ~.ntf#0 3 west.ntf#0"},
    };
    for (const auto& [name, expected] : cases) {
        const std::string set = directory / name + "/set.xml";
        const auto info = runTool({"info", set, "--json"}).json();
        EXPECT_EQ(summaryOf(info), expected) << name;
        EXPECT_EQ(info["metadataTextFile"].is_null(), name != std::string("po-product"));
        EXPECT_EQ(runTool({"check", set}).code, 0) << name;
    }
    EXPECT_EQ(fakes::namesIn(directory).size(), std::size(cases) + 1);
    const auto landsat = runTool({"info", directory / "landsat7/set.xml", "--json"}).json();
    EXPECT_EQ(valuesOf(landsat["bands"], "type"),
              (Strings{"blue", "green", "red", "near-infrared", "mid-infrared", "mid-infrared",
                       "thermal-low-gain", "thermal-high-gain", "panchromatic"}));
}

}  // namespace
}  // namespace kestms
