#include <gmock/gmock.h>

#include "host/codecs/RasterSource.h"
#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;
using testing::HasSubstr;

class Claims : public OnFiles {
  protected:
    struct Field {
        int tag;
        unsigned value;
    };

    /// A TIFF file of eight bits a sample whose directory claims what it likes.
    std::string claiming(const std::vector<Field>& fields, std::size_t pixelBytes) const {
        std::string bytes("II\x2a\0\x10\0\0\0\0\0\0\0\0\0\0\0", 16);
        const auto number = [&bytes](unsigned value, int size) {
            for (int i = 0; i < size; ++i) {
                bytes += static_cast<char>(value >> 8 * i);
            }
        };
        number(static_cast<unsigned>(fields.size()), 2);
        for (const Field& field : fields) {
            number(static_cast<unsigned>(field.tag), 2);
            number(4, 2);  // 32 bits
            number(1, 4);
            number(field.value, 4);
        }
        number(0, 4);
        fakes::writeFile(directory / "claims.tif", bytes + std::string(pixelBytes, '\0'));
        return directory / "claims.tif";
    }
};

TEST_F(Claims, OutOfProportionToTheFileAreRefused) {
    struct Case {
        std::vector<Field> fields;
        const char* reason;
        std::size_t pixelBytes = 64;
    };
    constexpr unsigned kMany = 2147483647;
    const std::vector<Field> bits = {{258, 8}, {259, 1}, {262, 1}};
    const auto with = [&bits](std::vector<Field> size, const std::vector<Field>& blocks) {
        size.insert(size.end(), bits.begin(), bits.end());
        size.insert(size.end(), blocks.begin(), blocks.end());
        return size;
    };
    const Case cases[] = {
        {with({{256, 1}, {257, 1}}, {{273, 0}, {277, 65535}, {278, 1}, {279, 0}}),
         "claims 65535 bands in a file of 194"},
        {with({{256, 1}, {257, 1}}, {{273, 130}, {277, 4097}, {278, 1}, {279, 4097}}),
         "claims 4097 bands; at most 4096 are read", 4097},
        {with({{256, kMany}, {257, 1}}, {{273, 8}, {277, 1}, {278, 1}, {279, 8}}),
         "claims a block of 2147483647 bytes"},
        {with({{256, kMany}, {257, 1}}, {{273, 8}, {277, 1}, {278, 1}, {279, 8000}}), "cut short"},
        {with({{256, 9000}, {257, 9000}},
              {{277, 1}, {322, 16384}, {323, 16384}, {324, 0}, {325, 0}}),
         "claims a block of 268435456 bytes"},
    };
    for (const Case& c : cases) {
        const std::string path = claiming(c.fields, c.pixelBytes);
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
    const FileSpecifier file = fileSpecifier(path);
    ASSERT_TRUE(rasterSourceOf(file, 0));
    std::filesystem::remove(path);  // opening it again would fail
    const auto source = rasterSourceOf(file, 2);
    ASSERT_TRUE(source);
    EXPECT_EQ(source->prefix + std::to_string(source->band) + source->dataType, "3Byte");
    EXPECT_FALSE(rasterSourceOf(file, 3) || rasterSourceOf(file, -1));
}

}  // namespace
