// Opens every file of a list once with GDAL and does nothing else: the minimum for anyone who wants
// to know the files' content.

#include <gdal_priv.h>

#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: open_loop LIST\n", stderr);
        return 2;
    }
    GDALAllRegister();
    std::ifstream list(argv[1]);
    long long pixels = 0;
    for (std::string path; std::getline(list, path);) {
        const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER));
        if (!dataset) {
            return 1;
        }
        pixels += dataset->GetRasterXSize();
    }
    std::printf("%lld\n", pixels);
}
