// Makes the sample files of the benchmarks: small GeoTIFFs for opening, and large ones for reading.

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

void writeRaster(const std::string& path, int size, int band) {
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    const GDALDatasetUniquePtr dataset(
        driver->Create(path.c_str(), size, size, 1, GDT_UInt16, nullptr));
    if (!dataset) {
        throw std::runtime_error("cannot write " + path);
    }
    const double pixel = 30720.0 / size;
    double transform[6] = {483000.0, pixel, 0.0, 5634000.0, 0.0, -pixel};
    OGRSpatialReference system;
    system.importFromEPSG(32632);
    dataset->SetGeoTransform(transform);
    dataset->SetSpatialRef(&system);
    std::vector<std::uint16_t> samples;
    samples.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int i = 0; i < size * size; ++i) {
        samples.push_back(static_cast<std::uint16_t>((i * 7 + i / size * 13 + band * 31) % 2039));
    }
    if (dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, size, size, samples.data(), size, size,
                                            GDT_UInt16, 0, 0, nullptr) != CE_None) {
        throw std::runtime_error("cannot fill " + path);
    }
}

/// Writes `count` files of `size` pixels a side into a folder, and a list of their paths beside it.
void makeSet(const fs::path& directory, const std::string& name, int count, int size) {
    const fs::path listPath = directory / (name + ".txt");
    if (fs::exists(listPath)) {
        return;  // written last: all the files are there
    }
    fs::create_directories(directory / name);
    std::string list;
    for (int band = 0; band < count; ++band) {
        const std::string number = std::to_string(band);
        const fs::path path =
            directory / name / ("band" + std::string(5 - number.size(), '0') + number + ".tif");
        writeRaster(path.string(), size, band);
        list += path.string() + "\n";
    }
    std::ofstream(listPath) << list;
}

}  // namespace

int main(int argc, char** argv) {
    const bool few = argc == 3 && std::string(argv[2]) == "--smoke";
    if (argc != 2 && !few) {
        std::fputs("usage: make_files DIRECTORY [--smoke]\n", stderr);
        return 2;
    }
    GDALAllRegister();
    try {
        const fs::path directory = fs::absolute(argv[1]);
        for (const int count : {10, 100, 1000, 10000}) {
            if (!few || count <= 100) {
                makeSet(directory, "small" + std::to_string(count), count, 32);
            }
        }
        makeSet(directory, "large4", 4, 2048);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_files: %s\n", error.what());
        return 1;
    }
}
