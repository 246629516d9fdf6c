#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

/// Formats that hosts know by nothing but their name.
struct Case {
    const char* format;
    const char* driver;
    const char* file;
    const char* worldFile;  ///< null: the file says itself where it lies
};
constexpr Case kCases[] = {
    {"JPEG 2000", "JP2OpenJPEG", "a.jp2", nullptr},
    {"JPEG 2000", "JP2OpenJPEG", "w.jp2", "w.j2w"},
    {"JPEG 2000", "JP2OpenJPEG", "k.j2k", "k.wld"},
    {"Erdas Imagine", "HFA", "a.img", nullptr},
    {"PNG", "PNG", "a.png", "a.pgw"},
    {"JPEG", "JPEG", "a.jpg", "a.jgw"},
    {"ENVI", "ENVI", "e.dat", nullptr},
};

class OtherFormats : public OnFiles {
  protected:
    std::string write(const Case& c) const {
        const bool isPlaced = c.worldFile == nullptr;
        const fakes::Raster raster{.width = 64,
                                   .height = 48,
                                   .transform = isPlaced ? fakes::Raster().transform : std::nullopt,
                                   .epsg = isPlaced ? 32632 : 0};
        const GDALDatasetUniquePtr source(
            GDALDataset::Open(fakes::writeRaster(directory / "source.tif", raster).c_str()));
        const std::string path = directory / c.file;
        GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(c.driver);
        GDALDatasetUniquePtr(
            driver->CreateCopy(path.c_str(), source.get(), FALSE, nullptr, nullptr, nullptr));
        std::filesystem::remove(path + ".aux.xml");
        if (c.worldFile != nullptr) {
            fakes::writeFile(directory / c.worldFile, "30\n0\n0\n-30\n1015\n1985\n");
        }
        return path;
    }
};

TEST_F(OtherFormats, ShowPixelsAndPlace) {
    for (const Case& c : kCases) {
        const std::string path = write(c);
        SCOPED_TRACE(path);
        const Opened opened(path);
        ASSERT_NE(opened.frame, nullptr) << whyNotReadable(fileSpecifier(path));
        StringBuffer name;
        opened.codec->getFormatName(name);
        EXPECT_EQ(toUtf8(name), c.format);
        EXPECT_TRUE(opened.codec->isValidFileName(fileSpecifier(path)));
        EXPECT_EQ(opened.pixels(), gdalPixels(path, 1));
        EXPECT_EQ(opened.place(),
                  c.worldFile != nullptr ? "1000 560, -1 " : "500000 4598560, 32632 PROJCRS[");
    }
}

/// Drivers look for these whatever list of siblings they are given.
TEST_F(OtherFormats, NothingBesideThemIsOpened) {
    const std::string far = fakes::writeRaster(directory / "far.tif", {.width = 32, .height = 24});
    for (const Case& c : kCases) {
        const std::string path = write(c);
        SCOPED_TRACE(path);
        const std::string before = Opened(path).place();
        for (const char* ending : {".ovr", ".msk"}) {
            std::filesystem::copy_file(far, path + ending);
        }
        ASSERT_EQ(mkfifo((path + ".aux").c_str(), 0600), 0);
        fakes::writeFile(
            path + ".aux.xml",
            "<PAMDataset><SRS>EPSG:32633</SRS><GeoTransform>9,1,0,9,0,-1"
            "</GeoTransform><Metadata domain=\"OVERVIEWS\"><MDI key=\"OVERVIEW_FILE\">" +
                far + "</MDI></Metadata></PAMDataset>");
        const Opened opened(path);
        EXPECT_EQ(opened.place(), before);
        EXPECT_EQ(opened.frame->frameOp8(), 0);
        EXPECT_EQ(opened.pixels().size(), 64U * 48U);
        EXPECT_THAT(openBelow(directory.path()),
                    Each(AllOf(Not(HasSubstr(".ovr")), Not(HasSubstr(".msk")),
                               Not(HasSubstr(".aux")), testing::Ne(far))));
    }
}

TEST_F(OtherFormats, DamagedFilesAndPicturesOfNoPlaceAreRefused) {
    for (const Case& c : kCases) {
        const std::string path = write(c);
        SCOPED_TRACE(path);
        fakes::writeFile(path, fakes::readFile(path).substr(0, 60));
        EXPECT_EQ(codecOf(path), nullptr);
        const std::string why = whyNotReadable(fileSpecifier(path));
        EXPECT_FALSE(why.empty() || why.find("/vsi") != std::string::npos) << why;
    }
    for (const Case& c : {kCases[4], kCases[5]}) {
        const std::string path = write(c);
        std::filesystem::remove(directory / c.worldFile);
        EXPECT_EQ(codecOf(path), nullptr);
        EXPECT_EQ(whyNotReadable(fileSpecifier(path)), "a picture without a world file");
    }
}

}  // namespace
