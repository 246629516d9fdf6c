#pragma once

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// Small raster files for tests, made by GDAL in a directory that goes with the test.

namespace fakes {

class TempDirectory {
  public:
    TempDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "rasters-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        path_ = pattern;
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

struct Raster {
    int width = 12;
    int height = 8;
    int bands = 1;
    GDALDataType type = GDT_Byte;
    std::optional<std::array<double, 6>> transform = {{500000, 30, 0, 4600000, 0, -30}};
    int epsg = 32632;              ///< 0: no coordinate system; -1: one without a code
    std::string description = {};  ///< image description
    bool palette = false;
    std::string driver = "GTiff";
    std::vector<std::string> options = {};  ///< creation options of the driver
};

/// Sample values that differ along lines, columns and bands, negative ones among them.
inline double sampleAt(int band, int x, int y, bool withSign) {
    return (x * 7 + y * 13 + band * 31) % 251 - (withSign ? 120 : 0);
}

/// Makes the folders of a file that is to be written.
inline void makeFoldersOf(const std::filesystem::path& path) {
    std::error_code there;
    std::filesystem::create_directories(path.parent_path(), there);
}

inline void writeFile(const std::string& path, const std::string& content) {
    makeFoldersOf(path);
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::string& path) {
    return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

/// The names in a directory, sorted.
inline std::vector<std::string> namesIn(const TempDirectory& directory) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline std::string writeRaster(const std::string& path, const Raster& raster = {}) {
    GDALAllRegister();
    makeFoldersOf(path);
    CPLStringList options;
    for (const std::string& option : raster.options) {
        options.AddString(option.c_str());
    }
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(raster.driver.c_str());
    const bool copies = driver->GetMetadataItem(GDAL_DCAP_CREATE) == nullptr;
    GDALDriver* maker = copies ? GetGDALDriverManager()->GetDriverByName("MEM") : driver;
    GDALDatasetUniquePtr dataset(maker->Create(path.c_str(), raster.width, raster.height,
                                               raster.bands, raster.type,
                                               copies ? nullptr : options.List()));
    if (!dataset) {
        throw std::runtime_error("cannot write " + path);
    }
    if (raster.transform) {
        auto transform = *raster.transform;
        dataset->SetGeoTransform(transform.data());
    }
    if (raster.epsg != 0) {
        OGRSpatialReference system;
        if (raster.epsg > 0) {
            system.importFromEPSG(raster.epsg);
        } else {
            system.SetProjCS("own");
            system.SetWellKnownGeogCS("WGS84");
            system.SetTM(1, 12, 0.9, 500, 0);
        }
        dataset->SetSpatialRef(&system);
    }
    if (!raster.description.empty()) {
        dataset->SetMetadataItem("TIFFTAG_IMAGEDESCRIPTION", raster.description.c_str());
    }
    GDALColorTable colours;
    const GDALColorEntry red{255, 1, 2, 255};
    colours.SetColorEntry(1, &red);
    for (int b = 1; b <= raster.bands; ++b) {
        GDALRasterBand* band = dataset->GetRasterBand(b);
        if (raster.palette) {
            band->SetColorTable(&colours);
        }
        std::vector<double> samples;
        const bool withSign = raster.type != GDT_Byte && raster.type != GDT_UInt16;
        for (int y = 0; y < raster.height; ++y) {
            for (int x = 0; x < raster.width; ++x) {
                samples.push_back(sampleAt(b, x, y, withSign));
            }
        }
        if (band->RasterIO(GF_Write, 0, 0, raster.width, raster.height, samples.data(),
                           raster.width, raster.height, GDT_Float64, 0, 0, nullptr) != CE_None) {
            throw std::runtime_error("cannot fill " + path);
        }
    }
    if (copies) {
        dataset.reset(driver->CreateCopy(path.c_str(), dataset.get(), FALSE, options.List(),
                                         nullptr, nullptr));
    }
    return path;
}

/// Changes a raster by a function of its dataset, and returns its path.
template <typename Change>
std::string changeRaster(const std::string& path, Change change) {
    const GDALDatasetUniquePtr file(GDALDataset::Open(path.c_str(), GDAL_OF_UPDATE));
    change(*file);
    return path;
}

}  // namespace fakes
