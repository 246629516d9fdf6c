#include <cpl_conv.h>
#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/fakes/Rasters.h"

// The driver as GDAL programs use it: loaded from a folder, called through GDAL.

namespace {

using fakes::Raster;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kScene = "L71026029_02920000609_";

void loadDriver() {
    CPLSetConfigOption("GDAL_DRIVER_PATH", KEST_GDAL_PLUGINS);
    GDALAllRegister();
}

GDALDatasetUniquePtr openRaster(const std::string& name) {
    return GDALDatasetUniquePtr(GDALDataset::Open(name.c_str(), GDAL_OF_RASTER));
}

/// GDAL's message when the name cannot be opened; empty when it can, or there is no message.
std::string whyNot(const std::string& name) {
    CPLErrorReset();
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    const auto dataset = GDALDatasetUniquePtr(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    return dataset ? "" : CPLGetLastErrorMsg();
}

/// Calls a function in so many threads, each with its number.
template <typename Function>
void inThreads(int count, Function function) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(function, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// All samples of a window, in a buffer of the given size.
std::vector<double> samplesOf(GDALRasterBand& band, int x, int y, int width, int height,
                              int bufferWidth, int bufferHeight, int overview = -1) {
    std::vector<double> samples(static_cast<std::size_t>(bufferWidth * bufferHeight), -1);
    GDALRasterBand* source = overview < 0 ? &band : band.GetOverview(overview);
    EXPECT_EQ(source->RasterIO(GF_Read, x, y, width, height, samples.data(), bufferWidth,
                               bufferHeight, GDT_Float64, 0, 0, nullptr),
              CE_None);
    return samples;
}

std::vector<double> samplesOf(GDALRasterBand& band) {
    return samplesOf(band, 0, 0, band.GetXSize(), band.GetYSize(), band.GetXSize(),
                     band.GetYSize());
}

std::array<double, 6> transformOf(GDALDataset& dataset) {
    std::array<double, 6> transform{};
    EXPECT_EQ(dataset.GetGeoTransform(transform.data()), CE_None);
    return transform;
}

/// A scene as it is delivered: the panchromatic band has half the pixel size and begins and ends
/// within the outermost pixels of the others.
class DriverTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { loadDriver(); }

    std::string path(const std::string& band) const {
        return directory_ / (kScene + band + ".TIF");
    }
    std::string folder() const { return "KESTMS:" + directory_.path(); }

    void writeScene(GDALDataType type = GDT_Byte) const {
        for (const char* band : {"B10", "B20", "B40"}) {
            fakes::writeRaster(path(band), {.width = 20, .type = type});
        }
        fakes::writeRaster(path("B80"), {.width = 39,
                                         .height = 15,
                                         .type = type,
                                         .transform = {{500007.5, 15, 0, 4599992.5, 0, -15}}});
    }

    fakes::TempDirectory directory_;
};

std::string documentOf(const std::vector<std::string>& paths) {
    std::string text = R"(<storage version="1.00"><image>)";
    for (const std::string& path : paths) {
        text += R"(<component><data><file path=")" + path + R"(" frame="0"/></data></component>)";
    }
    return text + "</image></storage>";
}

TEST_F(DriverTest, RecognisesSetsByContentAndPrefix) {
    writeScene();
    const std::string set = documentOf({path("B10"), path("B20")});
    const std::pair<std::string, bool> rows[] = {
        {set, true},
        {"\xEF\xBB\xBF" + set, true},
        {"<?xml version=\"1.0\"?>\n<!-- a set -->\n" + set, true},
        {"<!DOCTYPE storage [<!ENTITY a \"b\">] >" + set, true},
        {"<other/>" + set, false},
        {"<?xml version=\"1.0\"?><other>" + set + "</other>", false},
        {"<!-- <storage><image> --><kml/>", false},
        {"<storageArea><image/></storageArea>", false},
        {"<VRTDataset><storage/></VRTDataset>", false},
        {"text <storage><image>", false},
        {"", false},
    };
    for (const auto& [content, isSet] : rows) {
        const std::string file = directory_ / "any.name";
        fakes::writeFile(file, content);
        GDALDriver* driver = GDALDriver::FromHandle(GDALIdentifyDriver(file.c_str(), nullptr));
        EXPECT_EQ(driver != nullptr && EQUAL(driver->GetDescription(), "KESTMS"), isSet) << content;
    }
    fakes::writeFile(directory_ / "set.xml", set);
    EXPECT_EQ(openRaster(directory_ / "set.xml")->GetRasterCount(), 2);
    EXPECT_EQ(openRaster(folder())->GetRasterCount(), 4);
    EXPECT_EQ(openRaster("kestms:" + directory_ / "*B[12]0.TIF")->GetRasterCount(), 2);
    fakes::writeFile(directory_ / "list.txt", path("B10") + "\n" + path("B80") + "\n");
    EXPECT_EQ(openRaster("KESTMS:" + directory_ / "list.txt")->GetRasterCount(), 2);
    const std::string scene = directory_ / "LC08_L1TP_195026_20200908_20200919_02_T1_";
    fakes::writeRaster(scene + "B2.TIF");
    fakes::writeRaster(scene + "B3.TIF");
    fakes::writeFile(scene + "MTL.txt", "GROUP = LANDSAT_METADATA_FILE\n");
    EXPECT_EQ(openRaster("KESTMS:" + scene + "MTL.txt")->GetRasterCount(), 2);
}

TEST_F(DriverTest, ReportsTheToolsReasonOnce) {
    writeScene();
    fakes::writeRaster(directory_ / "other.tif", {.type = GDT_UInt16});
    fakes::writeFile(directory_ / "text.tif", "text");
    fakes::writeFile(directory_ / "refused.xml",
                     documentOf({path("B10"), directory_ / "other.tif"}));
    fakes::writeFile(directory_ / "far.xml",
                     documentOf({"/vsicurl/http://localhost:9/a.tif", path("B10")}));
    const std::pair<std::string, const char*> rows[] = {
        {"KESTMS:" + directory_ / "refused.xml", "16-bit single channel, the set's is 8-bit"},
        {"KESTMS:" + directory_ / "text.tif", "no known raster format"},
        {"KESTMS:" + directory_ / "far.xml", "and not named by the user"},
    };
    for (const auto& [name, reason] : rows) {
        EXPECT_THAT(whyNot(name), AllOf(HasSubstr(reason), Not(HasSubstr("--")))) << name;
    }
    CPLErrorReset();
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    EXPECT_EQ(GDALOpen(folder().c_str(), GA_Update), nullptr);
    EXPECT_THAT(CPLGetLastErrorMsg(), HasSubstr("read only"));
}

TEST_F(DriverTest, DeletesTheDocumentAloneAndNoComponent) {
    writeScene();
    const std::string set = directory_ / (std::string(kScene) + "set.xml");
    fakes::writeFile(set, documentOf({path("B10"), path("B20")}));
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("KESTMS");
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    EXPECT_EQ(driver->Delete(folder().c_str()), CE_Failure);
    EXPECT_EQ(driver->Rename((directory_ / "new.xml").c_str(), set.c_str()), CE_Failure);
    EXPECT_EQ(driver->CopyFiles((directory_ / "new.xml").c_str(), set.c_str()), CE_Failure);
    EXPECT_EQ(GDALDriver::QuietDelete(set.c_str()), CE_None);  // as before writing over it
    EXPECT_TRUE(whyNot(folder()).empty());
    EXPECT_EQ(openRaster(folder())->GetRasterCount(), 4);
    EXPECT_FALSE(openRaster(set));
}

TEST_F(DriverTest, PlacesEveryBandWhereItsComponentLies) {
    writeScene(GDT_Int16);
    const auto set = openRaster(folder());
    const auto grid = transformOf(*set);
    EXPECT_THAT(grid, ElementsAre(500007.5, 15, 0, 4599992.5, 0, -15));
    EXPECT_EQ(set->GetRasterXSize(), 39);
    std::mt19937 random(7);
    for (int number = 1; number <= set->GetRasterCount(); ++number) {
        GDALRasterBand& band = *set->GetRasterBand(number);
        const auto component = openRaster(band.GetMetadataItem("component"));
        const auto own = transformOf(*component);
        const auto samples = samplesOf(*component->GetRasterBand(1));
        const auto expected = [&](double column, double row) {
            const double c = (grid[0] + column * grid[1] - own[0]) / own[1] + 1e-6;
            const double r = (grid[3] + row * grid[5] - own[3]) / own[5] + 1e-6;
            return samples.at(static_cast<std::size_t>(std::floor(r) * component->GetRasterXSize() +
                                                       std::floor(c)));
        };
        for (int round = 0; round < 40; ++round) {
            const int x = static_cast<int>(random() % 30);
            const int y = static_cast<int>(random() % 10);
            const int width = 1 + static_cast<int>(random() % 9U);
            const int height = 1 + static_cast<int>(random() % 5U);
            const auto read = samplesOf(band, x, y, width, height, width, height);
            for (int i = 0; i < width * height; ++i) {
                EXPECT_EQ(read[static_cast<std::size_t>(i)],
                          expected(x + i % width + 0.5, y + i / width + 0.5))
                    << number << ": " << x << "," << y << " " << width << "x" << height;
            }
        }
    }
}

TEST_F(DriverTest, ReadsWindowsAsGdalReadsTheComponent) {
    const Raster raster{.width = 200,
                        .height = 120,
                        .type = GDT_UInt16,
                        .options = {"TILED=YES", "BLOCKXSIZE=64", "BLOCKYSIZE=32"}};
    for (const char* band : {"B10", "B20"}) {
        fakes::writeRaster(path(band), raster);
        fakes::changeRaster(path(band), [](GDALDataset& file) {
            const int levels[] = {2, 4};
            EXPECT_EQ(file.BuildOverviews("AVERAGE", 2, levels, 0, nullptr, nullptr, nullptr),
                      CE_None);
        });
    }
    const auto set = openRaster(folder());
    const auto component = openRaster(path("B20"));
    GDALRasterBand& band = *set->GetRasterBand(2);
    GDALRasterBand& own = *component->GetRasterBand(1);
    ASSERT_EQ(band.GetOverviewCount(), 2);
    EXPECT_EQ(band.GetOverview(1)->GetXSize(), own.GetOverview(1)->GetXSize());
    int width = 0;
    int height = 0;
    band.GetBlockSize(&width, &height);
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 32);
    const struct {
        int x, y, width, height, bufferWidth, bufferHeight, overview;
    } rows[] = {
        {0, 0, 200, 120, 200, 120, -1}, {3, 5, 70, 41, 70, 41, -1},  {0, 0, 200, 120, 50, 30, -1},
        {10, 20, 30, 10, 90, 20, -1},   {0, 0, 100, 60, 100, 60, 0}, {7, 9, 20, 10, 20, 10, 1},
    };
    for (const auto& [x, y, columns, lines, bufferWidth, bufferHeight, overview] : rows) {
        EXPECT_EQ(samplesOf(band, x, y, columns, lines, bufferWidth, bufferHeight, overview),
                  samplesOf(own, x, y, columns, lines, bufferWidth, bufferHeight, overview))
            << x << "," << y << " to " << bufferWidth << ", overview " << overview;
    }
}

TEST_F(DriverTest, CarriesWhatComponentsTell) {
    writeScene();
    fakes::changeRaster(path("B40"), [](GDALDataset& file) {
        GDALRasterBand& band = *file.GetRasterBand(1);
        band.SetScale(0.5);
        band.SetOffset(-3);
        band.SetUnitType("W");
        band.SetNoDataValue(17);
        band.SetMetadataItem("SENSOR", "ETM");
        file.SetMetadataItem("SUN", "high");
    });
    fakes::writeFile(path("B10") + ".aux.xml",
                     R"(<PAMDataset><PAMRasterBand band="1"><Scale>2</Scale><UnitType>K</UnitType>
        <CategoryNames><Category>none</Category><Category>sea</Category></CategoryNames>
        </PAMRasterBand></PAMDataset>)");
    const auto set = openRaster(folder());
    CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", "YES");  // the program's own
    GDALRasterBand& band = *set->GetRasterBand(3);
    EXPECT_EQ(band.GetScale(), 0.5);
    EXPECT_STREQ(CPLGetThreadLocalConfigOption("GDAL_PAM_ENABLED", "lost"), "YES");
    CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", nullptr);
    EXPECT_EQ(band.GetOffset(), -3);
    EXPECT_STREQ(band.GetUnitType(), "W");
    EXPECT_EQ(band.GetNoDataValue(), 17);
    EXPECT_EQ(band.GetMaskFlags(), GMF_NODATA);
    EXPECT_STREQ(band.GetMetadataItem("SENSOR"), "ETM");
    EXPECT_STREQ(band.GetMetadataItem("SUN"), "high");
    EXPECT_STREQ(band.GetMetadataItem("pixel_size"), "30 30");
    GDALRasterBand& described = *set->GetRasterBand(1);  // by a file beside it
    EXPECT_EQ(described.GetScale(), 2);
    EXPECT_STREQ(described.GetUnitType(), "K");
    EXPECT_STREQ(CSLGetField(described.GetCategoryNames(), 1), "sea");
    const CPLStringList domains(described.GetMetadataDomainList());
    EXPECT_GE(domains.FindString("IMAGERY"), 0);
    fakes::writeFile(directory_ / (std::string(kScene) + "B40.tfw"), "30\n0\n0\n-30\n0\n0\n");
    EXPECT_EQ(CPLStringList(set->GetFileList()).Count(), 6);
}

TEST_F(DriverTest, ShowsTheMaskOfAComponent) {
    const Raster raster{.options = {"PHOTOMETRIC=MINISBLACK"}};
    CPLSetConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    for (const char* name : {"B10", "B20"}) {
        fakes::writeRaster(path(name), raster);
    }
    fakes::changeRaster(path("B20"), [](GDALDataset& file) {
        EXPECT_EQ(file.CreateMaskBand(GMF_PER_DATASET), CE_None);
        std::vector<std::uint8_t> valid(12 * 8, 255);
        valid[5] = 0;
        EXPECT_EQ(file.GetRasterBand(1)->GetMaskBand()->RasterIO(
                      GF_Write, 0, 0, 12, 8, valid.data(), 12, 8, GDT_Byte, 0, 0, nullptr),
                  CE_None);
    });
    CPLSetConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
    const auto set = openRaster(folder());
    EXPECT_EQ(set->GetRasterBand(1)->GetMaskFlags(), GMF_ALL_VALID);
    EXPECT_EQ(set->GetRasterBand(2)->GetMaskFlags(), 0);
    const char* const options[] = {"BANDS=green", nullptr};
    const auto alone =
        GDALDatasetUniquePtr(GDALDataset::Open(folder().c_str(), GDAL_OF_RASTER, nullptr, options));
    EXPECT_EQ(alone->GetRasterBand(1)->GetMaskFlags(), GMF_PER_DATASET);
    const auto mask = samplesOf(*set->GetRasterBand(2)->GetMaskBand());
    EXPECT_EQ(mask[5], 0);
    EXPECT_EQ(std::count(mask.begin(), mask.end(), 255), 12 * 8 - 1);
    // An alpha band masks the other band of its file.
    const fakes::TempDirectory other;
    fakes::writeRaster(other / "b.tif", {});  // GDAL itself sees to files of two bands
    fakes::changeRaster(fakes::writeRaster(other / "a.tif", {.bands = 2}), [](GDALDataset& file) {
        file.GetRasterBand(2)->SetColorInterpretation(GCI_AlphaBand);
    });
    const auto masked = openRaster("KESTMS:" + other.path());
    EXPECT_EQ(samplesOf(*masked->GetRasterBand(1)->GetMaskBand()),
              samplesOf(*masked->GetRasterBand(2)));
}

TEST_F(DriverTest, OpensNothingBesideAComponent) {
    for (const char* driver : {"HFA", "GTiff", "JP2OpenJPEG"}) {
        SCOPED_TRACE(driver);
        const fakes::TempDirectory scene;
        for (const char* name : {"a_01.x", "a_02.x"}) {
            const std::string component =
                fakes::writeRaster(scene / name, {.width = 64, .height = 48, .driver = driver});
            fakes::writeRaster(component + ".ovr", {.width = 32, .height = 24});
            const auto mask =
                openRaster(fakes::writeRaster(component + ".msk", {.width = 64, .height = 48}));
            mask->SetMetadataItem("INTERNAL_MASK_FLAGS_1", "2");
        }
        const auto set = openRaster("KESTMS:" + scene.path());
        ASSERT_TRUE(set);
        EXPECT_EQ(set->GetRasterBand(1)->GetMaskFlags(), GMF_ALL_VALID);
        EXPECT_EQ(set->GetRasterBand(1)->GetOverviewCount(), 0);
        EXPECT_EQ(samplesOf(*set->GetRasterBand(1)).size(), 64U * 48U);
    }
}

TEST_F(DriverTest, ShowsTheBandsAskedForInTheOrderAskedFor) {
    writeScene();
    const struct {
        std::vector<const char*> options;
        std::string bands;  ///< common names
    } rows[] = {
        {{"ORDER=display"}, "green blue nir pan"},
        {{"BANDS=nir,Green (band 2),*80.TIF"}, "nir green pan"},
        {{"BANDS=pan,blue,green", "ORDER=display"}, "green blue pan"},
        {{"BANDS=swir16"}, ""},
    };
    for (auto row : rows) {
        row.options.push_back(nullptr);
        const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
        const auto set = GDALDatasetUniquePtr(GDALDataset::Open(
            folder().c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR, nullptr, row.options.data()));
        std::string names;
        for (int i = 1; set && i <= set->GetRasterCount(); ++i) {
            names += (i > 1 ? " " : "") +
                     std::string(set->GetRasterBand(i)->GetMetadataItem("common_name"));
        }
        EXPECT_EQ(names, row.bands);
    }
    EXPECT_THAT(CPLGetLastErrorMsg(), HasSubstr("swir16"));
}

/// Everything a program may read of a set, as one text.
std::string told(const std::string& name) {
    const auto set = openRaster(name);
    std::string all;
    for (int i = 1; set && i <= set->GetRasterCount(); ++i) {
        GDALRasterBand& band = *set->GetRasterBand(i);
        int blocks[2] = {};
        band.GetBlockSize(&blocks[0], &blocks[1]);
        all += CPLSPrintf("%s %d %d %d %g ", band.GetDescription(), blocks[0],
                          band.GetOverviewCount(), band.GetMaskFlags(), band.GetScale());
        const CPLStringList items(CSLDuplicate(band.GetMetadata()));
        all += std::to_string(items.Count());
        for (const double sample : samplesOf(band)) {
            all += CPLSPrintf(" %g", sample);
        }
    }
    return all;
}

TEST_F(DriverTest, IsReadByManyThreadsAtOnce) {
    writeScene();
    const std::string set = directory_ / "set.xml";
    fakes::writeFile(set, documentOf({path("B10"), path("B20"), path("B80")}));
    const std::string names[] = {folder(), set, folder() + ":30m"};
    const std::string expected[] = {told(names[0]), told(names[1]), told(names[2])};
    std::atomic<int> right = 0;
    inThreads(6, [&](int thread) {
        for (int round = 0; round < 8; ++round) {
            const int which = (thread + round) % 3;
            right += told(names[which]) == expected[which] ? 1 : 0;
        }
    });
    EXPECT_EQ(right, 6 * 8);
}

TEST_F(DriverTest, ReadsOneComponentInSeveralThreads) {
    const Raster raster{
        .width = 512,
        .height = 512,
        .options = {"TILED=YES", "BLOCKXSIZE=128", "BLOCKYSIZE=128", "COMPRESS=DEFLATE"}};
    fakes::writeRaster(path("B10"), raster);
    fakes::writeRaster(path("B20"), raster);
    const auto expected = samplesOf(*openRaster(path("B20"))->GetRasterBand(1));
    std::atomic<int> wrong = 0;
    inThreads(4, [&](int thread) {
        const auto set = openRaster(folder());
        for (int y = thread * 8; y < 512; y += 32) {
            const auto lines = samplesOf(*set->GetRasterBand(2), 0, y, 512, 8, 512, 8);
            wrong += std::equal(lines.begin(), lines.end(), expected.begin() + y * 512) ? 0 : 1;
        }
    });
    EXPECT_EQ(wrong, 0);
}

/// What GDAL calls before it destroys its drivers.
struct Closer : GDALDataset {
    static int close(GDALDataset& dataset) { return (dataset.*&Closer::CloseDependentDatasets)(); }
};

TEST_F(DriverTest, FailsAfterItsFilesWereLetGo) {
    writeScene();
    const auto set = openRaster(folder());
    samplesOf(*set->GetRasterBand(1));
    EXPECT_EQ(Closer::close(*set), TRUE);
    EXPECT_EQ(Closer::close(*set), FALSE);
    set->FlushCache();
    const CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    double sample = 0;
    EXPECT_EQ(set->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, 1, 1, &sample, 1, 1, GDT_Float64, 0, 0,
                                              nullptr),
              CE_Failure);
    EXPECT_EQ(set->GetRasterBand(1)->GetScale(), 1.0);
}

using ExitTest = DriverTest;

/// Opens, closes and destroys in that order, then ends: "o" opens and reads, "c" closes, "d"
/// destroys GDAL's drivers, "r" registers them again.
[[noreturn]] void endAfter(const std::string& steps, const std::string& name) {
    std::vector<GDALDataset*> open;
    for (const char step : steps) {
        if (step == 'o') {
            open.push_back(openRaster(name).release());
            samplesOf(*open.back()->GetRasterBand(1));
            open.back()->GetRasterBand(1)->GetMaskFlags();
        } else if (step == 'c') {
            GDALClose(open.back());
            open.pop_back();
        } else if (step == 'd') {
            GDALDestroyDriverManager();
            open.clear();
        } else {
            loadDriver();
        }
    }
    std::filesystem::remove_all(name.substr(name.find(':') + 1));  // this process's own
    std::exit(testing::Test::HasFailure() ? 1 : 0);
}

TEST_F(ExitTest, EndsInAnyOrder) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    writeScene();
    for (const char* steps : {"o", "oc", "oo", "ocd", "od", "ood", "odro", "ocdroc"}) {
        EXPECT_EXIT(endAfter(steps, folder()), testing::ExitedWithCode(0), "") << steps;
    }
}

}  // namespace
