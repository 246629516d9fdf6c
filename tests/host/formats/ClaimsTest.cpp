#include <gmock/gmock.h>

#include "host/codecs/RasterSource.h"
#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"
#include "tests/host/tiff/TiffFile.h"

namespace {

using namespace Pyxis;
using testing::HasSubstr;

class Claims : public OnFiles {};

TEST_F(Claims, OutOfProportionToTheFileAreRefused) {
    using Fields = std::vector<std::pair<std::uint16_t, double>>;
    struct Case {
        Fields fields;
        const char* reason;
        std::size_t pixelBytes = 64;
    };
    constexpr double kMany = 2147483647;
    const Case cases[] = {
        // A strip at the start of the file: places count from the pixels.
        {{{256, 1}, {257, 1}, {273, -122}, {277, 65535}, {278, 1}, {279, 0}},
         "claims 65535 bands in a file of 186"},
        {{{256, 1}, {257, 1}, {273, 0}, {277, 4097}, {278, 1}, {279, 4097}},
         "claims 4097 bands; at most 4096 are read",
         4097},
        {{{256, kMany}, {257, 1}, {273, 0}, {277, 1}, {278, 1}, {279, 8}},
         "claims a block of 2147483647 bytes"},
        {{{256, kMany}, {257, 1}, {273, 0}, {277, 1}, {278, 1}, {279, 8000}}, "cut short"},
        {{{256, 9000}, {257, 9000}, {277, 1}, {322, 16384}, {323, 16384}, {324, 0}, {325, 0}},
         "claims a block of 268435456 bytes"},
    };
    for (const Case& c : cases) {
        const std::string path = directory / "claims.tif";
        std::vector<fakes::TiffField> fields = {{258, 4, {8}}, {259, 4, {1}}, {262, 4, {1}}};
        for (const auto& [tag, value] : c.fields) {
            fields.push_back({tag, 4, {value}});
        }
        std::sort(fields.begin(), fields.end(),
                  [](const auto& one, const auto& next) { return one.tag < next.tag; });
        fakes::writeFile(path, fakes::tiffBytes(fields, std::string(c.pixelBytes, '\0')));
        EXPECT_EQ(codecOf(path), nullptr) << c.reason;
        EXPECT_THAT(whyNotReadable(fileSpecifier(path)), HasSubstr(c.reason));
    }
}

TEST_F(Claims, OfSparseFilesAreTakenAsTheyAre) {
    const std::string path = directory / "sparse.tif";
    {
        CPLStringList options;
        options.AddString("SPARSE_OK=YES").AddString("TILED=YES");
        GDALAllRegister();
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
        GDALDatasetUniquePtr(
            driver->Create(path.c_str(), 200000, 100000, 1, GDT_UInt16, options.List()));
    }
    EXPECT_NE(Opened(path).frame, nullptr) << whyNotReadable(fileSpecifier(path));
}

TEST(Sources, OfAllBandsComeFromOneOpenFile) {
    const fakes::TempDirectory directory;
    const StandardCodecs codecs(StandardCodecs::QuickBird::With, StandardCodecs::Changes::Ignore);
    const std::string path = fakes::writeRaster(directory / "bands.tif", {.bands = 3});
    ASSERT_TRUE(rasterSourceOf(path, 0));
    std::filesystem::remove(path);  // opening it again would fail
    const auto source = rasterSourceOf(path, 2);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->prefix + std::to_string(source->band) + source->dataType, "3Byte");
    EXPECT_FALSE(rasterSourceOf(path, 3) || rasterSourceOf(path, -1));
}

}  // namespace
