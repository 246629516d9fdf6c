#include <filesystem>

#include "host/codecs/Readability.h"
#include "tests/fakes/Paths.h"
#include "tests/host/formats/Opened.h"
#include "tests/host/tiff/TiffFile.h"

namespace {

using namespace Pyxis;
namespace fs = std::filesystem;

class TiffDirectory : public testing::Test {
  protected:
    std::string write(const std::vector<fakes::TiffField>& fields) {
        const std::string path = directory / (std::to_string(++written) + ".tif");
        fakes::writeFile(path, fakes::tiffBytes(rasterFields(fields), fakes::rasterPixels()));
        return path;
    }

    TiffDirectory() { GDALAllRegister(); }

    fakes::TempDirectory directory;
    int written = 0;
    // Recently written files are cached too, so that the test sees whether they are open.
    StandardCodecs codecs{StandardCodecs::QuickBird::With, StandardCodecs::Changes::Ignore};
};

std::string rangeText(double minimum, double maximum, double noData, bool hasNoData) {
    return CPLSPrintf("%.17g to %.17g, ", minimum, maximum) +
           (hasNoData ? CPLSPrintf("%.17g, ", noData) : std::string());
}

/// The code of a registered system, else its text: GDAL's text of a registered one depends on the
/// file that it read first.
std::string systemText(OGRSpatialReference system) {
    const auto codeOf = [&system] {
        const char* code = system.GetAuthorityCode(nullptr);
        return std::string(code != nullptr ? code : "");
    };
    if (!codeOf().empty() || (system.AutoIdentifyEPSG() == OGRERR_NONE && !codeOf().empty())) {
        return codeOf();
    }
    const char* const form[] = {"FORMAT=WKT2_2018", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    system.exportToWkt(&text, form);
    const std::string wkt = text != nullptr ? text : "";
    CPLFree(text);
    return wkt;
}

/// GDAL's facts of the first band of a file: range, block size, sample type, first corner, the
/// system.
std::string gdalSays(const std::string& path) {
    const CPLErrorHandlerPusher silent(CPLQuietErrorHandler);
    const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str()));
    if (!dataset) {
        return "does not open";
    }
    GDALRasterBand& band = *dataset->GetRasterBand(1);
    std::array<double, 6> t{};
    int width = 0, height = 0;
    band.GetBlockSize(&width, &height);
    dataset->GetGeoTransform(t.data());
    const OGRSpatialReference* known = dataset->GetSpatialRef();
    const std::string system = known != nullptr ? systemText(*known) : "";
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    return rangeText(band.GetMinimum(), band.GetMaximum(), noData, hasNoData != FALSE) +
           CPLSPrintf("%d x %d of %d, %.9g %.9g, %s", width, height,
                      GDALGetDataTypeSizeBits(band.GetRasterDataType()), t[0], t[3],
                      system.c_str());
}

std::string codecSays(const Opened& opened) {
    const auto* geo = opened.property<GeoTiffCorrelation>();
    StringBuffer system;
    geo->getCoordinateSystem(system);
    int code = 0;
    geo->getCoordinateSystemCode(code);
    const Point2d corner = geo->getUpperLeft();
    ChannelRange range;
    opened.frame->frameOp11(0, &range);
    return rangeText(range.minimum, range.maximum, range.noData, range.hasNoData) +
           CPLSPrintf("%d x %d of %d, %.9g %.9g, %s", opened.frame->frameOp9(),
                      opened.frame->frameOp10(), opened.frame->frameOp6(), corner.x, corner.y,
                      code > 0 ? std::to_string(code).c_str() : toUtf8(system).c_str());
}

/// The codec refuses the file or says what GDAL says, without GDAL if the file is plain.
void expectAsGdal(const std::string& path, bool isPlain) {
    const Opened opened(path);
    const std::string told = opened.frame != nullptr ? codecSays(opened) : "";
    EXPECT_EQ(!told.empty() && openBelow(path).empty(), isPlain);
    EXPECT_TRUE(told.empty() || told == gdalSays(path)) << told;
}

TEST_F(TiffDirectory, TellsWhatGdalSays) {
    struct Case {
        const char* name;
        fakes::Raster raster;
        bool opensLater = true;  // the file's own bytes do
        const char* metadata[2] = {nullptr, nullptr};
        bool hasColours = false;
    };
    const std::vector<std::string> big = {"BIGTIFF=YES", "TILED=YES", "BLOCKXSIZE=16",
                                          "BLOCKYSIZE=32"};
    const Case cases[] = {
        {"corners", {}},
        {"tiles", {.width = 40, .height = 70, .type = GDT_Int16, .options = big}},
        {"big-endian", {.type = GDT_UInt32, .options = {"ENDIANNESS=BIG"}}},
        {"packed", {.height = 90, .type = GDT_Float32, .options = {"COMPRESS=LZW", "PREDICTOR=3"}}},
        {"long strip", {.width = 4, .height = 2001, .options = {"BLOCKYSIZE=2001"}}, false},
        {"large strip", {.width = 90, .height = 100, .options = {"BLOCKYSIZE=100"}}, false},
        {"lines", {.width = 4000, .height = 3, .type = GDT_Float64, .options = {"BLOCKYSIZE=2"}}},
        {"feet", {.epsg = 2263}, false},
        {"degrees", {.epsg = 4258}, false},
        {"own system", {.epsg = -1}, false},
        {"centres", {}, true, {"AREA_OR_POINT", "Point"}},
        {"described", {.description = "scene"}, false},
        {"metadata", {}, false, {"SENSOR", "a"}},
        {"complex", {.type = GDT_CFloat32}, false},
        {"bits", {.options = {"NBITS=4"}}, false},
        {"bands", {.bands = 2}, false},
        {"bilevel", {.options = {"NBITS=1"}}, false, {nullptr, nullptr}, true},
        {"dark on light", {.options = {"PHOTOMETRIC=MINISWHITE"}}, false, {nullptr, nullptr}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path =
            fakes::writeRaster(directory / (std::string(c.name) + ".tif"), c.raster);
        if (c.metadata[0] != nullptr) {
            fakes::changeRaster(path, [&c](GDALDataset& file) {
                file.SetMetadataItem(c.metadata[0], c.metadata[1]);
            });
        }
        const Opened opened(path);
        EXPECT_EQ(openBelow(path).empty(), c.opensLater);
        EXPECT_EQ(codecSays(opened), gdalSays(path));
        EXPECT_EQ(opened.frame->frameOp4() == 1, c.hasColours);
        EXPECT_EQ(opened.frame->frameOp12() != nullptr, c.hasColours);
        EXPECT_EQ(opened.pixels(), gdalPixels(path, 1));
        if (c.metadata[0] == nullptr) {  // what was changed afterwards lies behind the pixels
            std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
            EXPECT_EQ(whyNotReadable(fileSpecifier(path)), "the file is cut short");
        }
    }
}

TEST_F(TiffDirectory, ReadsNoDataAsGdalDoes) {
    const struct {
        std::string text;
        bool isPlain = true;
        bool isFloat = false;
    } cases[] = {
        {"0"},
        {"-9999"},
        {"6.5535e4", true, true},
        {"-0.5", true, true},
        {"nan", true, true},
        {"nan", false},
        {"", false},
        {"0.1", false, true},  // not exact in 32 bits
        {"-3.4028234663852886e+38", false, true},
        {" 7", false},
        {"+7", false},
        {"7 ", false},
        {"0x10", false},
        {"1,5", false},
        {"inf", false, true},
        {"7e", false},
        {std::string("7\0008", 3), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        std::vector<fakes::TiffField> fields = {{42113, 2, fakes::codesOf(c.text + '\0')},
                                                fakes::keyDirectory(fakes::systemKeys(32632))};
        if (c.isFloat) {
            fields.insert(fields.end(), {{256, 3, {3}}, {258, 3, {32}}, {339, 3, {3}}});
        }
        expectAsGdal(write(fields), c.isPlain);
    }
}

TEST_F(TiffDirectory, ReadsStatisticsAsGdalDoes) {
    const std::string minimum = "  <Item name=\"STATISTICS_MINIMUM\" sample=\"0\">-2.5e1</Item>\n";
    const std::string maximum = "  <Item name=\"STATISTICS_MAXIMUM\" sample=\"0\">7</Item>\n";
    const auto valued = [&minimum](const std::string& value) {
        return std::string(minimum).replace(minimum.find("-2.5e1"), 6, value);
    };
    const std::pair<std::string, bool> cases[] = {
        {maximum + minimum, true},
        {minimum, true},
        {"", true},
        {minimum + maximum, false},
        {minimum + minimum, false},
        {valued("nan"), false},
        {valued("1,5"), false},
        {valued("&#50;"), false},
        {valued("4</Item><Item name=\"a\">"), false},
        {"  <Item name=\"STATISTICS_MINIMUM\" sample=\"0\" role=\"scale\">4</Item>\n", false},
        {"  <Item name=\"OVERVIEW_FILE\" domain=\"OVERVIEWS\">a.ovr</Item>\n", false},
    };
    for (const auto& [items, isPlain] : cases) {
        SCOPED_TRACE(items);
        const std::string text = "<GDALMetadata>\n" + items + "</GDALMetadata>\n";
        expectAsGdal(write({{42112, 2, fakes::codesOf(text + '\0')},
                            fakes::keyDirectory(fakes::systemKeys(32632))}),
                     isPlain);
    }
}

TEST_F(TiffDirectory, DoesNotReadDamagedDirectoriesOtherwiseThanGdal) {
    const fs::path seeds = fs::path(fakes::kResources) / "../fuzz/corpus/tiffagainstgdal";
    int files = 0;
    int compared = 0;
    for (const auto& seed : fs::directory_iterator(seeds)) {
        const std::string good = fakes::readFile(seed.path());
        for (std::size_t at = 0; at < good.size(); at += 37) {
            std::string bytes = good;
            if (at != 0) {  // at first as it is
                bytes[at] = "\0\1\xff"[at % 3];
            }
            const std::string path = directory / (std::to_string(++files) + ".tif");
            fakes::writeFile(path, bytes);
            const Opened opened(path);
            const bool opensLater = opened.frame != nullptr && openBelow(path).empty();
            if (opensLater && opened.property<GeoTiffCorrelation>() != nullptr) {
                ASSERT_EQ(codecSays(opened), gdalSays(path)) << seed.path() << ", byte " << at;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 500);
}

/// The keys of an unregistered system: their numbers and names are in other fields.
std::vector<fakes::TiffField> ownSystem(int zone, std::uint16_t numbers, std::uint16_t text) {
    const std::string name = "zone " + std::to_string(zone) + "|";
    const auto length = static_cast<double>(name.size());
    return {fakes::keyDirectory({{1024, 0, 1, 1},
                                 {1025, 0, 1, 1},
                                 {2048, 0, 1, 4326},
                                 {3072, 0, 1, 32767},
                                 {3073, 34737, length, 0},
                                 {3074, 0, 1, 32767},
                                 {3075, 0, 1, 1},
                                 {3076, 0, 1, 9001},
                                 {3080, 34736, 1, 0},
                                 {3081, 34736, 1, 1},
                                 {3082, 34736, 1, 2},
                                 {3083, 34736, 1, 3},
                                 {3092, 34736, 1, 4}}),
            {34736, numbers, {numbers == 2 ? 9 : zone * 6.0, 0, 500000, 0, 1}},
            {34737, text, fakes::codesOf(name)}};
}

TEST_F(TiffDirectory, DoesNotTakeOneSystemForAnother) {
    using Fields = std::vector<fakes::TiffField>;
    const auto directoryOf = [](int code, std::uint16_t type) {
        return Fields{fakes::keyDirectory(fakes::systemKeys(code), type)};
    };
    const auto twice = [](int code, int second, int key = 3072) {
        auto keys = fakes::systemKeys(code);
        keys.push_back({static_cast<double>(key), 0, 1, static_cast<double>(second)});
        return Fields{fakes::keyDirectory(keys)};
    };
    const struct {
        const char* name;
        Fields first, second;
    } cases[] = {
        {"plain", directoryOf(32632, 3), directoryOf(32633, 3)},
        {"signed keys", directoryOf(32632, 8), directoryOf(32633, 8)},
        {"long keys", directoryOf(32632, 4), directoryOf(32633, 4)},
        {"numbers", ownSystem(2, 12, 2), ownSystem(3, 12, 2)},
        {"short numbers", ownSystem(2, 11, 2), ownSystem(3, 11, 2)},
        {"whole numbers", ownSystem(2, 3, 2), ownSystem(3, 3, 2)},
        {"byte text", ownSystem(2, 12, 1), ownSystem(3, 12, 1)},
        {"undefined text", ownSystem(4, 12, 7), ownSystem(5, 12, 7)},
        {"key twice", twice(32632, 32634), twice(32632, 32635)},
        {"corners, then centres", twice(32632, 2, 1025), twice(32633, 2, 1025)},
        {"compound", directoryOf(5556, 3), directoryOf(5555, 3)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string first = write(c.first);
        const std::string second = write(c.second);
        EXPECT_EQ(codecSays(Opened(first)), gdalSays(first));
        EXPECT_EQ(codecSays(Opened(second)), gdalSays(second));
        EXPECT_NE(gdalSays(first), gdalSays(second));
    }
}

TEST_F(TiffDirectory, KeepsTheSystemOfControlPointsWhereAWorldFilePlacesThem) {
    const fakes::TiffField keys = fakes::keyDirectory(fakes::systemKeys(2263));  // in feet
    const fakes::TiffField points{33922, 12, {0, 0, 0, 5, 6, 0, 1, 1, 0, 7, 9, 0}};
    const std::string placed = write({keys, points, {33550, 12, {0, 0, 0}}});
    fakes::writeFile(placed.substr(0, placed.size() - 3) + "tfw", "30\n0\n0\n-30\n1015\n1985\n");
    const std::string plain = write({keys});
    for (const std::string& path : {placed, plain}) {
        EXPECT_EQ(codecSays(Opened(path)), gdalSays(path));
    }
}

TEST_F(TiffDirectory, ShowsTheColoursThatGdalInvents) {
    const fakes::TiffField cases[] = {
        {258, 3, {8}},    {258, 3, {1}},    {258, 3, {1, 8}}, {258, 4, {8}},    {262, 3, {0}},
        {262, 3, {1, 0}}, {262, 3, {0, 1}}, {262, 3, {3}},    {320, 3, {1, 2}},
    };
    int withColours = 0;
    for (const fakes::TiffField& field : cases) {
        SCOPED_TRACE(testing::Message()
                     << field.tag << " " << testing::PrintToString(field.values));
        const std::string path = write({field});
        const CPLErrorHandlerPusher silent(CPLQuietErrorHandler);
        const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str()));
        const bool expected = dataset->GetRasterBand(1)->GetColorTable() != nullptr;
        EXPECT_EQ(Opened(path).frame->frameOp12() != nullptr, expected);
        withColours += expected ? 1 : 0;
    }
    EXPECT_GT(withColours, 1);
}

TEST_F(TiffDirectory, ReadsFilesWhosePixelsAreAllThere) {
    const fakes::TiffField keys = fakes::keyDirectory(fakes::systemKeys(32632));
    const fakes::TiffField fullStrips{279, 4, {36, 36, 36}};
    const fakes::TiffField packed{259, 3, {8}};  // but the pixels are not
    const struct {
        const char* name;
        std::vector<fakes::TiffField> fields;
        bool directoryLast;
        std::size_t lost;  // bytes at the end
        bool isWhole;
    } cases[] = {
        {"last strip said to be full", {keys, fullStrips}, false, 0, true},
        {"last pixel lost", {keys, fullStrips}, false, 1, false},
        {"packed strip said to be longer", {keys, fullStrips, packed}, false, 0, false},
        {"directory last", {keys}, true, 0, true},
        {"keys lost", {keys}, true, 40, true},
        {"lengths of strips lost", {keys}, true, 120, false},
        {"places of strips lost", {keys}, true, 130, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = directory / "cut.tif";
        const std::string bytes =
            fakes::tiffBytes(rasterFields(c.fields), fakes::rasterPixels(), c.directoryLast);
        fakes::writeFile(path, bytes.substr(0, bytes.size() - c.lost));
        EXPECT_EQ(whyNotReadable(fileSpecifier(path)), c.isWhole ? "" : "the file is cut short");
        if (c.isWhole) {
            EXPECT_EQ(Opened(path).pixels(), gdalPixels(path, 1));
        }
    }
}

}  // namespace
