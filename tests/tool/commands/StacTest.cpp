#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ogr_geometry.h>

#include <filesystem>

#include "tests/tool/Process.h"
#include "tool/raster/Footprint.h"
#include "tool/scene/AcquisitionTime.h"
#include "tool/scene/MetadataFile.h"

namespace kestms {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kScene = "LC08_L2SP_195026_20200908_20200919_02_T1";

class Stac : public InDirectory {
  protected:
    /// Two bands and a quality layer; the second band has its own facts.
    void writeScene() const {
        for (const char* band : {"_SR_B2.TIF", "_SR_B5.TIF", "_QA_PIXEL.TIF"}) {
            write(kScene + band, {.type = GDT_UInt16});
        }
        fakes::changeRaster(directory_ / (kScene + "_SR_B5.TIF"), [](GDALDataset& file) {
            GDALRasterBand& band = *file.GetRasterBand(1);
            band.SetScale(0.0000275);
            band.SetOffset(-0.2);
            band.SetNoDataValue(0);
            band.SetUnitType("1");
        });
    }

    Outcome stac(const Strings& options) const {
        return runKestms(joined({"stac", directory_.path()}, options));
    }
    json itemAt(const std::string& name) const {
        return json::parse(fakes::readFile(directory_ / name));
    }

    const std::string item_ = directory_ / "item.json";
};

TEST_F(Stac, ListsThePicturesOfAScene) {
    for (const char* band : {"B02", "B04", "TCI"}) {
        write("T32TQM_20180629T101031_" + std::string(band) + ".tif", {.type = GDT_UInt16});
    }
    ASSERT_EQ(stac({"-o", item_}).code, 0);
    EXPECT_EQ(itemAt("item.json")["assets"]["TCI"]["roles"], json({"overview"}));
}

TEST_F(Stac, DescribesEveryFileOfAScene) {
    writeScene();
    fakes::writeFile(directory_ / (kScene + "_MTL.txt"),
                     "  DATE_ACQUIRED = 2020-09-08\n  SCENE_CENTER_TIME = \"10:04:52.91Z\"\n");
    const Outcome outcome = stac({"-o", item_});
    ASSERT_EQ(std::tuple(outcome.code, outcome.out, outcome.err), std::tuple(0, item_ + "\n", ""));
    json item = itemAt("item.json");
    json assets = item["assets"];
    const OGRGeometry* area =
        OGRGeometryFactory::createFromGeoJson(item["geometry"].dump().c_str());
    ASSERT_NE(area, nullptr);
    EXPECT_TRUE(area->IsValid());
    OGRGeometryFactory::destroyGeometry(const_cast<OGRGeometry*>(area));
    EXPECT_THAT(item["bbox"], ElementsAre(9.0, 41.5495027, 9.0043167, 41.5516645));
    for (const char* each : {"geometry", "bbox", "assets"}) {
        item.erase(each);
    }
    EXPECT_EQ(item, R"json({
        "type": "Feature", "stac_version": "1.0.0", "links": [],
        "stac_extensions": ["https://stac-extensions.github.io/projection/v1.1.0/schema.json",
                            "https://stac-extensions.github.io/eo/v1.1.0/schema.json",
                            "https://stac-extensions.github.io/raster/v1.1.0/schema.json",
                            "https://stac-extensions.github.io/processing/v1.1.0/schema.json"],
        "id": "LC08_L2SP_195026_20200908_20200919_02_T1",
        "properties": {"title": "Landsat 8-9 OLI/TIRS, Collection 2 level 2",
                       "datetime": "2020-09-08T10:04:52.91Z", "proj:epsg": 32632,
                       "processing:software": {"kestms": "1.0.0"}}})json"_json);
    EXPECT_EQ(assets["SR_B5"], R"json({
        "href": "./LC08_L2SP_195026_20200908_20200919_02_T1_SR_B5.TIF",
        "type": "image/tiff; application=geotiff", "roles": ["data"],
        "title": "Near infrared (B5)",
        "proj:shape": [8, 12], "proj:transform": [30, 0, 500000, 0, -30, 4600000],
        "proj:bbox": [500000, 4599760, 500360, 4600000],
        "eo:bands": [{"name": "SR_B5", "description": "Near infrared (B5)", "common_name": "nir08",
                      "center_wavelength": 0.865, "full_width_half_max": 0.03}],
        "raster:bands": [{"data_type": "uint16", "sampling": "area", "nodata": 0, "unit": "1",
                          "scale": 0.0000275, "offset": -0.2, "spatial_resolution": 30}]
})json"_json);
    EXPECT_EQ(assets["QA_PIXEL"]["roles"], json({"quality"}));
    EXPECT_EQ(assets["QA_PIXEL"]["raster:bands"][0]["data_type"], "uint16");
    EXPECT_EQ(assets["metadata"]["href"], "./" + kScene + "_MTL.txt");
    EXPECT_EQ(assets.size(), 4U);
    const fakes::TempDirectory other;
    const std::string tar = other / "scene.tar";
    runProgram({"tar", "-cf", tar, "-C", directory_.path(), "."});
    EXPECT_EQ(runKestms({"stac", tar, "-o", "-"}).json()["properties"], item["properties"]);
}

TEST_F(Stac, LeadsOtherProgramsToTheFiles) {
    writeScene();
    std::filesystem::create_directory(directory_ / "cat alogue");
    const std::string folder = directory_ / "cat alogue";
    ASSERT_EQ(stac({"-o", folder + "/item.json"}).code, 0);
    // GDAL reads items in collections, and resolves their relative addresses in the current
    // directory.
    const json collection = {{"type", "FeatureCollection"},
                             {"stac_version", "1.0.0"},
                             {"features", {itemAt("cat alogue/item.json")}}};
    fakes::writeFile(folder + "/all.json", collection.dump());
    const Outcome info =
        Process({"gdalinfo", "-json", "-checksum", "STACIT:\"all.json\":asset=SR_B5"}, [&folder] {
            std::filesystem::current_path(folder);
        }).wait();
    ASSERT_EQ(info.code, 0) << info.err;
    EXPECT_EQ(info.json()["bands"][0]["checksum"],
              gdalInfo(directory_ / (kScene + "_SR_B5.TIF"))["bands"][0]["checksum"]);
    EXPECT_THAT(info.json()["geoTransform"], ElementsAre(500000, 30, 0, 4600000, 0, -30));

    ASSERT_EQ(stac({"-o", folder + "/other.json", "--absolute"}).code, 0);
    const json absolute = itemAt("cat alogue/other.json");
    EXPECT_EQ(absolute["assets"]["SR_B5"]["href"],
              "file://" + directory_ / (kScene + "_SR_B5.TIF"));
    EXPECT_EQ(absolute["links"][0]["href"], "file://" + directory_ / "cat%20alogue/other.json");
}

TEST_F(Stac, ReplacesOnlyItemsOfItsOwn) {
    writeScene();
    const std::string delivered = directory_ / (kScene + "_SR_stac.json");
    fakes::writeFile(delivered, R"({"type": "Feature", "stac_version": "1.0.0"})");
    ASSERT_EQ(stac({"-o", item_}).code, 0);
    const struct {
        Strings options;
        int code;
        const char* reason;
    } rows[] = {
        {{"-o", item_, "--overwrite"}, 0, ""},
        {{"-o", item_}, 2, "--overwrite replaces it"},
        {{"-o", delivered, "--overwrite"}, 2, "lies beside the inputs"},
        {{"-o", directory_ / "item.tif"}, 2, "the output is a STAC item"},
        {{"-o", directory_ / "no/item.json"}, 4, "No such file or directory"},
        {{"-o", item_, "--datetime", "yesterday", "--overwrite"}, 2, "neither a day"},
    };
    const auto before = fakes::namesIn(directory_);
    for (const auto& row : rows) {
        const Outcome outcome = stac(row.options);
        EXPECT_EQ(outcome.code, row.code) << row.reason;
        EXPECT_THAT(outcome.err, HasSubstr(row.reason));
        EXPECT_EQ(fakes::namesIn(directory_), before);
    }
    EXPECT_EQ(itemAt("item.json")["properties"]["end_datetime"], "2020-09-08T23:59:59.999Z");
}

TEST_F(Stac, AsksForTheDateThatNothingTells) {
    write("one.tif");
    write("two.tif");
    const Outcome without = stac({"-o", "-"});
    EXPECT_EQ(without.code, 2);
    EXPECT_THAT(without.err, HasSubstr("give it with --datetime"));
    const json item = stac({"-o", "-", "--datetime", "2021-05-03"}).json();
    EXPECT_TRUE(item["properties"]["datetime"].is_null());
    EXPECT_EQ(item["assets"]["two"]["href"], "file://" + directory_ / "two.tif");
    const fakes::TempDirectory landsat;
    writeLandsat(landsat);
    EXPECT_EQ(runKestms({"stac", landsat.path(), "-o", "-"}).json()["properties"]["start_datetime"],
              "2001-07-30T00:00:00Z");
}

TEST(AcquisitionTime, IsWhatTheTextSays) {
    const struct {
        std::string text, start, end;
    } rows[] = {
        {"2020-02-29", "2020-02-29T00:00:00Z", "2020-02-29T23:59:59.999Z"},
        {"2020-02-29T23:59:59.5Z", "2020-02-29T23:59:59.5Z", "2020-02-29T23:59:59.5Z"},
        {"2020-01-01/2020-01-02T03:04:05Z", "2020-01-01T00:00:00Z", "2020-01-02T03:04:05Z"},
        {"2021-02-29", "", ""},
        {"2020-01-01T24:00:00Z", "", ""},
        {"2020-01-01T00:00:00.Z", "", ""},
        {"2020-01-01T00:00:00", "", ""},
        {"2020-01-02/2020-01-01", "", ""},
        {"/", "", ""},
        {"", "", ""},
    };
    for (const auto& row : rows) {
        const TimeSpan time = parseTimeSpan(row.text).value_or(TimeSpan{});
        EXPECT_EQ(std::pair(time.start, time.end), std::pair(row.start, row.end)) << row.text;
    }
    EXPECT_EQ(acquisitionTime("T56JMM_20180629T000241", "2018-06-29", {})->start,
              "2018-06-29T00:02:41Z");
    EXPECT_EQ(acquisitionTime("HLS.S30.T32TQM.2018032T000241.v2.0", "2018-02-01", {})->start,
              "2018-02-01T00:02:41Z");
    EXPECT_EQ(acquisitionTime("A_20180629T990241", "2018-06-29", {})->start,
              "2018-06-29T00:00:00Z");
    EXPECT_FALSE(acquisitionTime("A_20180629T000241", "", {}));
    const fakes::TempDirectory tile;
    fakes::writeFile(tile / "metadata.xml",
                     "<A><SENSING_TIME metadataLevel=\"Standard\">2018-06-29T00:02:41.458Z</"
                     "SENSING_TIME></A>");
    for (const char* band : {"R10m/B02.jp2", "IMG_DATA/T_B02.jp2", "IMG_DATA/R10m/T_B02_10m.jp2"}) {
        EXPECT_EQ(metadataFileBeside("0", {tile / band}), tile / "metadata.xml");
    }
    EXPECT_EQ(acquisitionTime("0", "", tile / "metadata.xml")->start, "2018-06-29T00:02:41.458Z");
}

/// A band of 100 x 100 pixels in a coordinate system.
Band bandAt(int epsg, double left, double top, double size) {
    OGRSpatialReference system;
    system.importFromEPSG(epsg);
    char* wkt = nullptr;
    system.exportToWkt(&wkt);
    Band band;
    band.width = band.height = 100;
    const double far = 100 * size;
    band.georeference = Georeference{size,
                                     size,
                                     0,
                                     {left, top},
                                     {left + far, top},
                                     {left, top - far},
                                     {left + far, top - far},
                                     std::make_shared<std::string>(wkt),
                                     epsg};
    CPLFree(wkt);
    return band;
}

TEST(Footprints, AreAsTheAreaLiesOnTheEarth) {
    const struct {
        Band band;
        std::size_t parts;
        std::array<double, 4> box;
    } rows[] = {
        {bandAt(4326, 10, 50, 0.01), 1, {10, 49, 11, 50}},
        {bandAt(4326, 179.5, 1, 0.01), 2, {179.5, 0, -179.5, 1}},
        {bandAt(4326, 190, 1, 0.01), 1, {-170, 0, -169, 1}},
        {bandAt(4326, -180, 90, 3.6), 0, {}},  // reaches beyond the pole
        {bandAt(32601, 150000, 110000, 1000), 2, {179.85576, 0.09034, -179.24611, 0.99443}},
        {bandAt(3995, -500000, 500000, 10000), 1, {-180, 83.49873, 180, 90}},
        {bandAt(3031, -500000, 500000, 10000), 1, {-180, -90, 180, -83.49873}},
    };
    for (const auto& row : rows) {
        const auto footprint = footprintOf({row.band});
        ASSERT_EQ(footprint ? footprint->parts.size() : 0, row.parts)
            << row.band.georeference->epsg;
        for (std::size_t i = 0; footprint && i < row.box.size(); ++i) {
            EXPECT_NEAR(footprint->box[i], row.box[i], 1e-4) << row.band.georeference->epsg;
        }
        for (std::size_t i = 0; i < row.parts; ++i) {
            OGRLinearRing ring;
            for (const Pyxis::Point2d& point : footprint->parts[i]) {
                EXPECT_LE(std::abs(point.x), 180);
                ring.addPoint(point.x, point.y);
            }
            OGRPolygon polygon;
            polygon.addRing(&ring);
            EXPECT_TRUE(polygon.IsValid());
            EXPECT_FALSE(ring.isClockwise());
        }
    }
}

TEST(Footprints, FollowCurvedEdges) {
    const Band band = bandAt(32632, 300000, 6700000, 2000);
    const auto ring = footprintOf({band})->parts.at(0);
    OGRSpatialReference utm;
    OGRSpatialReference degrees;
    utm.importFromEPSG(32632);
    degrees.SetWellKnownGeogCS("WGS84");
    degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const std::unique_ptr<OGRCoordinateTransformation> back(
        OGRCreateCoordinateTransformation(&degrees, &utm));
    ASSERT_GT(ring.size(), 30U);
    for (std::size_t i = 1; i < ring.size(); ++i) {
        double x = (ring[i - 1].x + ring[i].x) / 2;
        double y = (ring[i - 1].y + ring[i].y) / 2;
        ASSERT_TRUE(back->Transform(1, &x, &y));
        const double off = std::min(std::min(std::abs(x - 300000), std::abs(x - 500000)),
                                    std::min(std::abs(y - 6700000), std::abs(y - 6500000)));
        EXPECT_LT(off, 2.0);
    }
}

}  // namespace
}  // namespace kestms
