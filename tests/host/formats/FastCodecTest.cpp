#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"
#include "tool/samples/FastHeaderText.h"

namespace {

using namespace Pyxis;
using kestms::samples::fastHeaderText;
using kestms::samples::FastProduct;
using testing::HasSubstr;

class FastCodec : public OnFiles {
  protected:
    FastCodec() {
        for (int band = 1; band <= 3; ++band) {
            const std::string& name = product.bandFiles[static_cast<std::size_t>(band) - 1];
            fakes::writeFile(directory / name, bytesOf(band));
        }
        writeHeader(product);
    }

    void writeHeader(const FastProduct& facts) const {
        fakes::writeFile(header, fastHeaderText(facts));
    }
    std::string bytesOf(int band) const {
        std::string bytes;
        for (int i = 0; i < product.width * product.height; ++i) {
            bytes += static_cast<char>(static_cast<unsigned char>(
                fakes::sampleAt(band, i % product.width, i / product.width, false)));
        }
        return bytes;
    }
    static std::string bandFile(const Opened& opened) {
        StringBuffer value;
        opened.property<FASTBandFilenameProperty>()->getValue(value);
        return toUtf8(value);
    }

    FastProduct product{{"L7_B10.FST", "L7_B20.FST", "L7_B30.FST"}, 12, 8, 500000, 5600000, 30};
    std::string header = directory / "L7_HRF.FST";
};

TEST_F(FastCodec, BandsNameTheirFilesAndTellWhereTheyLie) {
    for (int i = 0; i < 3; ++i) {
        const Opened opened(header, i);
        ASSERT_NE(opened.frame, nullptr) << whyNotReadable(fileSpecifier(header));
        EXPECT_NE(dynamic_cast<const FASTFormatCodec*>(opened.codec), nullptr);
        const std::string bytes = bytesOf(i + 1);
        EXPECT_EQ(opened.pixels(), std::vector<unsigned char>(bytes.begin(), bytes.end()));
        EXPECT_EQ(bandFile(opened), product.bandFiles[static_cast<std::size_t>(i)]);
        EXPECT_EQ(opened.image->getNumFiles(), 4);
        EXPECT_EQ(toUtf8(opened.image->getFile(i + 1).string()),
                  directory / product.bandFiles[static_cast<std::size_t>(i)]);
        EXPECT_EQ(opened.place(), "500000 5599760, 32632 PROJCRS[");
    }
}

TEST_F(FastCodec, HeaderAndBandsMayBeLinkedTogetherAndLackBands) {
    std::filesystem::create_directory(directory / "links");
    for (const char* name : {"L7_HRF.FST", "L7_B10.FST", "L7_B20.FST", "L7_B30.FST"}) {
        std::filesystem::create_symlink(directory / name, directory / "links/" + name);
    }
    EXPECT_EQ(Opened(directory / "links/L7_HRF.FST", 2).pixels(), Opened(header, 2).pixels());
    std::filesystem::remove(directory / "L7_B20.FST");
    const Opened opened(header, 1);
    ASSERT_EQ(opened.image->getNumFrames(), 2);
    EXPECT_EQ(bandFile(opened), "L7_B30.FST");
}

/// A virtual raster named like overviews could lead GDAL to any file.
TEST_F(FastCodec, ReducedReadTakesThePixelsThemselves) {
    fakes::writeRaster(directory / "other.tif", {.width = 6, .height = 4});
    fakes::writeFile(header + ".ovr",
                     "<VRTDataset rasterXSize=\"6\" rasterYSize=\"4\"><VRTRasterBand "
                     "dataType=\"Byte\" band=\"1\"><SimpleSource><SourceFilename>" +
                         (directory / "other.tif") +
                         "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
    const Opened opened(header);
    EXPECT_EQ(opened.frame->frameOp8(), 0);
    const std::vector<unsigned char> bytes = opened.pixels(2);
    EXPECT_EQ(bytes.at(0), fakes::sampleAt(1, 1, 1, false));
    EXPECT_EQ(bytes.at(23), fakes::sampleAt(1, 11, 7, false));
}

TEST_F(FastCodec, DamagedOrHostileHeadersAreRefusedWithAReason) {
    const auto refused = [&](const FastProduct& facts, const char* reason) {
        writeHeader(facts);
        EXPECT_EQ(codecOf(header), nullptr) << reason;
        EXPECT_THAT(whyNotReadable(fileSpecifier(header)), HasSubstr(reason));
    };
    const auto named = [&](const std::string& name) {
        FastProduct facts = product;
        facts.bandFiles[1] = name;
        return facts;
    };
    fakes::writeFile(directory / "sub/x.FST", bytesOf(2));
    refused(named("/etc/passwd"), "outside its directory");
    refused(named("../L7_B20.FST"), "outside its directory");
    refused(named("sub/x.FST"), "outside its directory");
    refused(named("sub"), "not a regular file");
    // GDAL also looks for names in another case and, for missing bands, for names of its own.
    for (const char* name : {"l7_b20.fst", "L7_HRF.b02"}) {
        std::filesystem::remove(directory / "L7_B20.FST");
        ASSERT_EQ(mkfifo((directory / name).c_str(), 0600), 0);
        refused(product, "not a regular file");
        std::filesystem::remove(directory / name);
        fakes::writeFile(directory / "sub/far.FST", bytesOf(2));
        std::filesystem::create_symlink("sub/far.FST", directory / name);
        refused(product, "leads out of the header's directory");
        std::filesystem::remove(directory / name);
    }
    fakes::writeFile(directory / "L7_B20.FST", bytesOf(2));
    FastProduct lost = product;
    lost.bandFiles = {"none.FST"};
    refused(lost, "Failed to find");
    FastProduct big = product;
    big.width = 99999;
    big.height = 99999;
    refused(big, "shorter than its header says");
    big.width = 0;
    refused(big, "");
    for (const std::size_t length : {1000U, 1100U, 1600U}) {
        fakes::writeFile(header, fastHeaderText(product).substr(0, length));
        EXPECT_EQ(codecOf(header), nullptr) << length;
        EXPECT_NE(whyNotReadable(fileSpecifier(header)), "") << length;
    }
    fakes::writeFile(header, fastHeaderText(product).substr(0, 3100));
    EXPECT_EQ(Opened(header).property<FormatCodecGeoCorrelation>(), nullptr);
}

}  // namespace
