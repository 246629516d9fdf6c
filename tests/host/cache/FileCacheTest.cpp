#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;

/// Recently written files are not cached: a change within one clock tick would not be noticed.
void makeOld(const std::string& path) {
    using namespace std::chrono_literals;
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) - 1h);
    std::this_thread::sleep_for(60ms);  // the time of this change itself cannot be set
}

class FileCache : public OnFiles {};

TEST_F(FileCache, QuestionsImagesAndFramesShareOneOpenFile) {
    const std::string path = fakes::writeRaster(directory / "raster.tif", {.bands = 2});
    makeOld(path);
    const Opened first(path, 0);
    const Opened second(path, 1);
    EXPECT_EQ(first.pixels(), gdalPixels(path, 1));
    EXPECT_EQ(second.pixels(), gdalPixels(path, 2));
    EXPECT_EQ(openBelow(directory.path()), std::vector{path});
}

TEST_F(FileCache, ChangedFilesAreReadAnew) {
    const std::string path = fakes::writeRaster(directory / "raster.tif");
    makeOld(path);
    const Opened before(path);
    ASSERT_EQ(before.frame->frameOp6(), 8);
    fakes::writeRaster(path, {.type = GDT_UInt16});
    EXPECT_EQ(Opened(path).frame->frameOp6(), 16);
    // The same size and time, but another file under the name.
    const auto time = std::filesystem::last_write_time(path);
    const std::string other = fakes::writeRaster(
        directory / "other.tif", {.type = GDT_UInt16, .transform = {{7, 1, 0, 7, 0, -1}}});
    makeOld(path);
    EXPECT_NE(codecOf(path), nullptr);
    std::filesystem::last_write_time(other, time);
    std::filesystem::rename(other, path);
    EXPECT_EQ(Opened(path).property<GeoTiffCorrelation>()->getUpperLeft().x, 7);
    fakes::writeFile(path, "no raster any more");
    EXPECT_EQ(codecOf(path), nullptr);
}

TEST(FileCacheThatIgnoresChanges, AnswersOfARunFitTogether) {
    const fakes::TempDirectory directory;
    StandardCodecs codecs(StandardCodecs::QuickBird::With, StandardCodecs::Changes::Ignore);
    std::vector<std::string> paths = {directory / "none.tif"};
    for (int i = 0; i < 80; ++i) {
        paths.push_back(fakes::writeRaster(directory / ("r" + std::to_string(i) + ".tif"),
                                           {.transform = {{double(i), 1, 0, 7, 0, -1}}}));
    }
    codecs.readAhead(paths, [] { return false; });
    EXPECT_EQ(codecOf(paths.front()), nullptr);
    for (int i = 0; i < 80; ++i) {
        const std::string& path = paths[static_cast<std::size_t>(i) + 1];
        EXPECT_NE(codecOf(path), nullptr);  // a helper may still be opening it
        fakes::writeRaster(path, {.type = GDT_UInt16});
        const Opened opened(path);
        EXPECT_EQ(opened.frame->frameOp6(), 8);
        EXPECT_EQ(opened.place(), std::to_string(i) + " -1, 32632 PROJCRS[");
    }
}

TEST_F(FileCache, RelativeNamesFollowTheWorkingDirectory) {
    const std::filesystem::path before = std::filesystem::current_path();
    for (const GDALDataType type : {GDT_Byte, GDT_UInt16}) {
        const std::filesystem::path own = directory / GDALGetDataTypeName(type);
        std::filesystem::create_directory(own);
        std::filesystem::current_path(own);
        makeOld(fakes::writeRaster("raster.tif", {.type = type}));
        EXPECT_EQ(Opened("raster.tif").frame->frameOp6(), GDALGetDataTypeSizeBits(type));
    }
    std::filesystem::current_path(before);
}

TEST_F(FileCache, OpenFilesStayFewAndOpenAgain) {
    constexpr int kFiles = 150;
    std::vector<std::unique_ptr<Opened>> all;
    all.reserve(kFiles);
    for (int i = 0; i < kFiles; ++i) {
        all.push_back(std::make_unique<Opened>(
            fakes::writeRaster(directory / ("r" + std::to_string(i) + ".tif"))));
    }
    EXPECT_LE(openBelow(directory.path()).size(), 64U);
    const std::vector<unsigned char> expected = gdalPixels(directory / "r0.tif", 1);
    for (const auto& opened : all) {
        EXPECT_EQ(opened->pixels(), expected);
    }
    EXPECT_LE(openBelow(directory.path()).size(), 64U);
    // Closed by now: the cached facts no longer match the file.
    fakes::writeRaster(directory / "r0.tif", {.width = 3});
    EXPECT_TRUE(all.front()->pixels().empty());
    EXPECT_EQ(all.front()->frame->frameOp8(), 0);
}

}  // namespace
