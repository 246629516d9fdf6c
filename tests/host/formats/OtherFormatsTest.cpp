#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;
using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

/// Formats that hosts know only by name.
struct Case {
    const char* format;
    const char* driver;
    const char* file;
    const char* worldFile;  ///< null: the file has its own georeference
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
        const std::string path = fakes::writeRaster(
            directory / c.file, {.width = 64,
                                 .height = 48,
                                 .transform = isPlaced ? fakes::Raster().transform : std::nullopt,
                                 .epsg = isPlaced ? 32632 : 0,
                                 .driver = c.driver});
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
    std::filesystem::rename(directory / "e.hdr", directory / "e.HDR");
    EXPECT_NE(codecOf(directory / "e.dat"), nullptr);
}

/// Drivers look for these whatever list of siblings they get.
TEST_F(OtherFormats, NothingBesideThemIsOpened) {
    const std::string far = fakes::writeRaster(directory / "far.tif", {.width = 32, .height = 24});
    for (const Case& c : kCases) {
        const std::string path = write(c);
        SCOPED_TRACE(path);
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
        EXPECT_EQ(opened.frame->frameOp8(), 0);
        EXPECT_EQ(opened.pixels().size(), 64U * 48U);
        EXPECT_THAT(openBelow(directory.path()),
                    Each(AllOf(Not(HasSubstr(".ovr")), Not(HasSubstr(".msk")),
                               Not(HasSubstr(".aux")), testing::Ne(far))));
    }
}

/// GDAL's own answer, in the form of `Opened::place`.
std::string gdalPlace(const std::string& path) {
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str()));
    std::array<double, 6> t{};
    if (dataset->GetGeoTransform(t.data()) != CE_None) {
        return "none";
    }
    const OGRSpatialReference* system = dataset->GetSpatialRef();
    const char* code = system != nullptr ? system->GetAuthorityCode(nullptr) : nullptr;
    return CPLSPrintf("%.0f %.0f, %s ", t[0], t[3] + 48 * t[5], code != nullptr ? code : "-1");
}

TEST_F(OtherFormats, AuxiliaryFilesPlaceThemAsGdalDoes) {
    const std::string transform = "<GeoTransform> 9, 1,0,9.5,0,-1e0</GeoTransform>";
    const std::string system = "<SRS dataAxisToSRSAxisMapping=\"1,2\">EPSG:32633</SRS>";
    const std::string root = "<PAMDataset>";
    const std::string texts[] = {
        root + transform + system + "</PAMDataset>",
        root + transform + "</PAMDataset>",
        root + system + "</PAMDataset>",
        root + "<GeoTransform>1,2,3</GeoTransform></PAMDataset>",
        root + "<PAMRasterBand>" + transform + "</PAMRasterBand></PAMDataset>",
        root + "<SRS>/etc/passwd</SRS>" + transform + "</PAMDataset>",
        "<Other>" + transform + "</Other>",
        "<?xml version=\"1.0\"?>" + root + transform + "</PAMDataset>",
        root + transform,
    };
    std::vector<Case> cases(std::begin(kCases), std::end(kCases));
    cases.push_back({"TIFF", "GTiff", "t.tif", nullptr});
    cases.push_back({"TIFF", "GTiff", "u.tif", "u.tfw"});
    cases.push_back({"NITF", "NITF", "n.ntf", "n.none"});
    for (const Case& c : cases) {
        const std::string path = write(c);
        for (const std::string& text : texts) {
            SCOPED_TRACE(path + " " + text);
            fakes::writeFile(path + ".aux.xml", text);
            EXPECT_THAT(Opened(path).place(), testing::StartsWith(gdalPlace(path)));
        }
        // Only regular files are opened.
        std::filesystem::remove(path + ".aux.xml");
        const std::string before = Opened(path).place();
        ASSERT_EQ(mkfifo((path + ".aux.xml").c_str(), 0600), 0);
        EXPECT_EQ(Opened(path).place(), before);
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
    const std::string shifted = write(kCases[6]);  // an ENVI file, its pixels further on
    std::string header = fakes::readFile(directory / "e.hdr");
    header.replace(header.find("header offset = 0"), 17, "header offset = 9");
    fakes::writeFile(directory / "e.hdr", header);
    EXPECT_EQ(whyNotReadable(fileSpecifier(shifted)), "shorter than its header says");
    const std::string divided = fakes::writeRaster(directory / "divided.img",
                                                   {.driver = "HFA", .options = {"USE_SPILL=YES"}});
    EXPECT_NE(whyNotReadable(fileSpecifier(divided)).find("in a second file"), std::string::npos);
    for (const Case& c : {kCases[4], kCases[5]}) {
        const std::string path = write(c);
        std::filesystem::remove(directory / c.worldFile);
        EXPECT_EQ(codecOf(path), nullptr);
        EXPECT_EQ(whyNotReadable(fileSpecifier(path)),
                  "a picture without a georeference beside it");
    }
}

}  // namespace
