#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/codecs/Readability.h"
#include "tests/fakes/Network.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

class SideFiles : public OnFiles {
  protected:
    /// A raster without georeference, and its world file.
    std::string placedByWorldFile() {
        fakes::writeFile(directory / "lost.tfw", "30\n0\n0\n-30\n1015\n1985\n");
        return fakes::writeRaster(directory / "lost.tif", {.transform = {}, .epsg = 0});
    }
};

/// Whatever GDAL would read beside a raster: each would change an answer, block or connect.
TEST_F(SideFiles, AreNotOpenedWhateverTheyName) {
    const std::string path = placedByWorldFile();
    const fakes::Listener listener;
    const std::string far = fakes::writeRaster(directory / "far/o.tif", {.width = 6, .height = 4});
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    for (const char* name : {"lost.tif.msk", "lost.tab", "lost.IMD", "lost.RPB", "lost_rpc.txt"}) {
        ASSERT_EQ(mkfifo((directory / name).c_str(), 0600), 0);
    }
    std::filesystem::copy_file(far, directory / "lost.tif.ovr");
    for (const std::string& overviews : {far, directory / "pipe", listener.url()}) {
        SCOPED_TRACE(overviews);
        fakes::writeFile(
            path + ".aux.xml",
            "<PAMDataset><SRS>EPSG:32633</SRS><GeoTransform>9,1,0,9,0,-1"
            "</GeoTransform><Metadata domain=\"OVERVIEWS\"><MDI key=\"OVERVIEW_FILE\">" +
                overviews +
                "</MDI></Metadata><PAMRasterBand band=\"1\"><NoDataValue>7"
                "</NoDataValue></PAMRasterBand></PAMDataset>");
        const Opened opened(path);
        EXPECT_EQ(opened.place(), "9 1, 32633 PROJCRS[");
        EXPECT_EQ(opened.frame->frameOp8(), 0);
        ChannelRange range;
        opened.frame->frameOp11(0, &range);
        EXPECT_FALSE(range.hasNoData);
        EXPECT_EQ(opened.pixels(2).front(), fakes::sampleAt(1, 1, 1, false));
        EXPECT_LE(openBelow(directory.path()).size(), 1U);
    }
    EXPECT_FALSE(listener.isCalled());
}

TEST_F(SideFiles, WorldFilesPlaceARasterAsGdalDoes) {
    const struct {
        const char* name;
        std::string text;
        bool isRead = true;
    } cases[] = {
        {"tfw", "30\n0\n0\n-30\n1015\n1985\n"},
        {"TFW", "3e1\r\n1.5\r\n-2.5\r\n-30\r\n1015.25\r\n1985.5"},
        {"tifw", " 30,5 \n0\n0\n-30,5\n1015,25\n1985\nseventh\n"},
        {"wld", "+0.5\t\n0\n0\n0.5\n-7\n8\n"},
        {"WLD", "0\n-2\n3\n0\n7\n8\n"},
        {"Tfw", "30\n0\n0\n-30\n1015\n1985\n"},
        {"tfx", "30\n0\n0\n-30\n1015\n1985\n", false},
        {"tfw", "", false},
        {"tfw", "30\n0\n0\n-30\n1015\n", false},
        {"tfw", "30\n0\n0\n-30\nnan\n1985\n", false},
        {"tfw", "30\n0\n0\n-30\n1e999\n1985\n", false},
        {"tfw", "0\n0\n0\n-30\n1015\n1985\n", false},
        {"tfw", "thirty\n0\n0\n-30\n1015\n1985\n", false},
        {"tfw", "30\n0\n0\n-30\n1015\n1985\n" + std::string(5000, ' '), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.text.substr(0, 30));
        const fakes::TempDirectory own;
        const std::string path = fakes::writeRaster(own / "lost.tif", {.transform = {}, .epsg = 0});
        fakes::writeFile(own / (std::string("lost.") + c.name), c.text);
        const Opened opened(path);
        const auto* geo = opened.property<GeoTiffCorrelation>();
        ASSERT_EQ(geo != nullptr, c.isRead);
        if (geo == nullptr) {
            continue;
        }
        const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str()));
        std::array<double, 6> t{};
        ASSERT_EQ(dataset->GetGeoTransform(t.data()), CE_None);
        EXPECT_EQ(geo->getUpperLeft().x, t[0]);
        EXPECT_EQ(geo->getUpperLeft().y, t[3]);
        EXPECT_DOUBLE_EQ(geo->getLowerRight().x, t[0] + 12 * t[1] + 8 * t[2]);
        EXPECT_DOUBLE_EQ(geo->getLowerRight().y, t[3] + 12 * t[4] + 8 * t[5]);
    }
}

TEST_F(SideFiles, AWorldFileThatIsNoFileIsPassedOver) {
    const std::string path = placedByWorldFile();
    std::filesystem::remove(directory / "lost.tfw");
    ASSERT_EQ(mkfifo((directory / "lost.tfw").c_str(), 0600), 0);
    EXPECT_EQ(Opened(path).place(), "none");
    fakes::writeFile(directory / "lost.wld", "1\n0\n0\n-1\n0.5\n7.5\n");
    EXPECT_EQ(Opened(path).place(), "0 0, -1 ");
}

TEST_F(SideFiles, ThoseThatMayPlaceARasterAreNamedWhenTheyAreNotRead) {
    const fakes::Raster raster{.transform = {}, .epsg = 0};
    const FileSpecifier path = fileSpecifier(fakes::writeRaster(directory / "lost.tif", raster));
    EXPECT_EQ(unreadGeoreference(path), "");
    const char* const statistics = "<PAMDataset><PAMRasterBand band=\"1\"/></PAMDataset>";
    ASSERT_EQ(mkfifo((directory / "lost.RPB").c_str(), 0600), 0);
    const std::array<const char*, 2> cases[] = {
        {"lost.tif.aux.xml", "<PAMDataset><GeoTransform>9,1,0,9</GeoTransform></PAMDataset>"},
        {"lost.tab", "!table\nDefinition Table\n  File \"lost.tif\"\n  Type \"RASTER\"\n"},
        {"lost_rpc.txt", "LINE_OFF: 1\n"},
        {"lost.tfw", "no numbers"},
    };
    for (const auto& [name, text] : cases) {
        fakes::writeFile(directory / name, text);
        EXPECT_EQ(unreadGeoreference(path), name);
        std::filesystem::remove(directory / name);
    }
    fakes::writeFile(directory / "lost.tif.aux.xml", statistics);
    EXPECT_EQ(unreadGeoreference(path), "");
}

}  // namespace
