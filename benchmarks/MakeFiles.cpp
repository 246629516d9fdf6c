// Makes the sample files of the benchmarks: small GeoTIFFs for opening, and large ones for reading.

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// What the samples look like.
enum class Look {
    Plain,
    Scene,      ///< smooth with noise, which compresses as imagery does; in deflated tiles
    OpenScene,  ///< the same, not compressed and in strips
};

std::vector<std::uint16_t> plainSamples(int size, int band) {
    std::vector<std::uint16_t> samples;
    samples.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int i = 0; i < size * size; ++i) {
        samples.push_back(static_cast<std::uint16_t>((i * 7 + i / size * 13 + band * 31) % 2039));
    }
    return samples;
}

std::vector<std::uint16_t> sceneSamples(int size, int band) {
    std::mt19937 random(static_cast<unsigned>(band));
    std::normal_distribution<double> noise(0, 60);
    std::vector<std::uint16_t> samples;
    samples.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int row = 0; row < size; ++row) {
        for (int column = 0; column < size; ++column) {
            const double hills = std::sin(row * 0.011 + band) * std::cos(column * 0.007) +
                                 0.3 * std::sin((row + column) * 0.09);
            samples.push_back(static_cast<std::uint16_t>(9000 + 1500 * hills + noise(random)));
        }
    }
    return samples;
}

void writeRaster(const std::string& path, int size, int band, Look look) {
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    CPLStringList options;
    if (look == Look::Scene) {
        options.SetNameValue("TILED", "YES");
        options.SetNameValue("COMPRESS", "DEFLATE");
        options.SetNameValue("PREDICTOR", "2");
    }
    const GDALDatasetUniquePtr dataset(
        driver->Create(path.c_str(), size, size, 1, GDT_UInt16, options.List()));
    if (!dataset) {
        throw std::runtime_error("cannot write " + path);
    }
    const double pixel = 30720.0 / size;
    double transform[6] = {483000.0, pixel, 0.0, 5634000.0, 0.0, -pixel};
    OGRSpatialReference system;
    system.importFromEPSG(32632);
    dataset->SetGeoTransform(transform);
    dataset->SetSpatialRef(&system);
    std::vector<std::uint16_t> samples =
        look == Look::Plain ? plainSamples(size, band) : sceneSamples(size, band);
    if (dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, size, size, samples.data(), size, size,
                                            GDT_UInt16, 0, 0, nullptr) != CE_None) {
        throw std::runtime_error("cannot fill " + path);
    }
}

/// Writes `count` files of `size` pixels a side into a folder, and a list of their paths beside it.
void makeSet(const fs::path& directory, const std::string& name, int count, int size,
             Look look = Look::Plain) {
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
        writeRaster(path.string(), size, band, look);
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
        makeSet(directory, "scene", 6, 5120, Look::Scene);
        makeSet(directory, "openscene", 6, 5120, Look::OpenScene);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_files: %s\n", error.what());
        return 1;
    }
}
