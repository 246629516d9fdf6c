#pragma once

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
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
    int epsg = 32632;              ///< 0: no coordinate system
    std::string description = {};  ///< image description
    bool palette = false;
    std::string driver = "GTiff";
    std::vector<std::string> options = {};  ///< creation options of the driver
};

/// Sample values that differ along lines, columns and bands, negative ones among them.
inline double sampleAt(int band, int x, int y, bool withSign) {
    return (x * 7 + y * 13 + band * 31) % 251 - (withSign ? 120 : 0);
}

inline void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Writes a raster and answers its path.
inline std::string writeRaster(const std::string& path, const Raster& raster = {}) {
    GDALAllRegister();
    CPLStringList options;
    for (const std::string& option : raster.options) {
        options.AddString(option.c_str());
    }
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(raster.driver.c_str());
    GDALDatasetUniquePtr dataset(driver->Create(path.c_str(), raster.width, raster.height,
                                                raster.bands, raster.type, options.List()));
    if (!dataset) {
        throw std::runtime_error("cannot write " + path);
    }
    if (raster.transform) {
        auto transform = *raster.transform;
        dataset->SetGeoTransform(transform.data());
    }
    if (raster.epsg != 0) {
        OGRSpatialReference system;
        system.importFromEPSG(raster.epsg);
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
    return path;
}

/// A FAST header in the layout of Landsat 7 products.
struct FastHeader {
    std::vector<std::string> bandFiles;
    int width = 12;
    int height = 8;
    double x = 500000;  ///< upper-left corner
    double y = 5600000;
    double pixelSize = 30;
    std::string satellite = "LANDSAT7";
};

inline std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

inline std::string fastHeaderText(const FastHeader& header) {
    std::string text = padded("PRODUCT ID =L7", 36) + "ACQUISITION DATE =20010730";
    text = padded(text, 80) + "SATELLITE =" + padded(header.satellite, 12) + "SENSOR =ETM+      ";
    for (const std::string& name : header.bandFiles) {
        text += " FILENAME =" + padded(name, 29);
    }
    const auto number = [](const char* format, double value) -> std::string {
        return CPLSPrintf(format, value);
    };
    text += number(" PIXELS PER LINE =%5.0f", header.width);
    text += number(" LINES PER BAND =%5.0f OUTPUT BITS PER PIXEL =8 ", header.height);
    text = padded(text, 1536) + "GAINS AND BIASES IN ASCENDING BAND NUMBER ORDER";
    for (int i = 0; i < 7; ++i) {
        text += " -6.2 0.77";
    }
    text = padded(text, 3072) + "MAP PROJECTION =UTM  ELLIPSOID =WGS84              DATUM =WGS84 " +
           " USGS PROJECTION PARAMETERS =";
    for (int i = 0; i < 15; ++i) {
        text += " 0.0";
    }
    text += " USGS MAP ZONE =32    ";
    const double right = header.width - 0.5;
    const double bottom = header.height - 0.5;
    const auto corner = [&](const char* name, double column, double row) {
        text += padded(std::string(name) + " =", 31);
        text += number("%13.3f ", header.x + column * header.pixelSize);
        text += number("%13.3f ", header.y - row * header.pixelSize);
    };
    corner("UL", 0.5, 0.5);
    corner("UR", right, 0.5);
    corner("LR", right, bottom);
    corner("LL", 0.5, bottom);
    return padded(text, 4608);
}

/// The bytes of one band of a FAST product.
inline std::string fastBand(const FastHeader& header, int band) {
    std::string bytes;
    for (int i = 0; i < header.width * header.height; ++i) {
        const double sample = sampleAt(band, i % header.width, i / header.width, false);
        bytes += static_cast<char>(static_cast<unsigned char>(sample));
    }
    return bytes;
}

}  // namespace fakes
