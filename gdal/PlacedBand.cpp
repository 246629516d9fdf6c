#include "gdal/PlacedBand.h"

#include <algorithm>
#include <utility>

#include "gdal/PlacedRead.h"
#include "pyxis/NoThrow.h"

namespace kestgdal {

PlacedBand::PlacedBand(GDALDataset* dataset, int number, GDALDataType type,
                       std::shared_ptr<PixelSource> source, const Sampling& sampling,
                       std::string path)
    : source_(std::move(source)), sampling_(sampling), path_(std::move(path)) {
    poDS = dataset;
    nBand = number;
    eDataType = type;
    eAccess = GA_ReadOnly;
    nRasterXSize = sampling.size.width;
    nRasterYSize = sampling.size.height;
    nBlockXSize = std::clamp(sampling.block.width, 1, nRasterXSize);
    nBlockYSize = std::clamp(sampling.block.height, 1, nRasterYSize);
}

bool PlacedBand::read(const kestms::PixelRectangle& window, const Buffer& buffer) {
    return source_ && Pyxis::answerOr(false, [&] {
               return readPlaced(*source_, sampling_.place, window, buffer, sampling_.outside);
           });
}

bool PlacedBand::read(const kestms::RasterWindow& window, const Buffer& buffer) {
    if (sampling_.place.isOwnGrid) {
        return source_ && Pyxis::answerOr(false, [&] {
                   return source_->read(sampling_.level, window, buffer);
               });
    }
    return read(kestms::PixelRectangle{static_cast<double>(window.x), static_cast<double>(window.y),
                                       static_cast<double>(window.width),
                                       static_cast<double>(window.height)},
                buffer);
}

CPLErr PlacedBand::IReadBlock(int column, int row, void* data) {
    const kestms::RasterWindow window{column * nBlockXSize, row * nBlockYSize,
                                      std::min(nBlockXSize, nRasterXSize - column * nBlockXSize),
                                      std::min(nBlockYSize, nRasterYSize - row * nBlockYSize)};
    const GSpacing bytes = GDALGetDataTypeSizeBytes(eDataType);
    if (!read(window, {data, window.width, window.height, eDataType, bytes, bytes * nBlockXSize})) {
        CPLError(CE_Failure, CPLE_FileIO, "%s: the pixels cannot be read", path_.c_str());
        return CE_Failure;
    }
    return CE_None;
}

CPLErr PlacedBand::IRasterIO(GDALRWFlag flag, int x, int y, int width, int height, void* data,
                             int bufferWidth, int bufferHeight, GDALDataType type,
                             GSpacing pixelSpace, GSpacing lineSpace, GDALRasterIOExtraArg* extra) {
    const int bytes = GDALGetDataTypeSizeBytes(type);
    const bool resized = width != bufferWidth || height != bufferHeight;
    const bool nearest =
        !resized || extra == nullptr || extra->eResampleAlg == GRIORA_NearestNeighbour;
    // Buffers that are written backward or over themselves are left to GDAL.
    const bool plain = pixelSpace >= bytes && lineSpace >= bytes;
    if (flag == GF_Read && nearest && plain) {
        const Buffer buffer{data, bufferWidth, bufferHeight, type, pixelSpace, lineSpace};
        const bool withinPixels = extra != nullptr && extra->bFloatingPointWindowValidity &&
                                  (extra->dfXOff != x || extra->dfYOff != y ||
                                   extra->dfXSize != width || extra->dfYSize != height);
        const bool done = withinPixels
                              ? read(kestms::PixelRectangle{extra->dfXOff, extra->dfYOff,
                                                            extra->dfXSize, extra->dfYSize},
                                     buffer)
                              : read(kestms::RasterWindow{x, y, width, height}, buffer);
        if (done) {
            return CE_None;
        }
    }
    return GDALRasterBand::IRasterIO(flag, x, y, width, height, data, bufferWidth, bufferHeight,
                                     type, pixelSpace, lineSpace, extra);
}

}  // namespace kestgdal
