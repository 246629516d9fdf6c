#include "gdal/PlacedRead.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace kestgdal {
namespace {

/// A centre on the edge between two pixels belongs to the second one, rounding or not; one on the
/// last edge to the last pixel, as in virtual rasters.
constexpr double kEdge = 1e-6;
/// How much of the source is held at a time, in bytes.
constexpr std::size_t kMostBytes = 4U << 20U;
constexpr int kOutside = -1;

/// For each sample the source's column (or line), kOutside beyond its ends.
std::vector<int> sourcePixels(const Axis& axis, double from, double length, int samples,
                              double perFullPixel, int sourceSize) {
    std::vector<int> pixels(static_cast<std::size_t>(samples));
    for (int i = 0; i < samples; ++i) {
        const double centre = axis.at(from + (i + 0.5) * length / samples) * perFullPixel;
        const bool isLastEdge = std::abs(centre - sourceSize) <= kEdge;
        const double pixel = isLastEdge ? sourceSize - 1 : std::floor(centre + kEdge);
        pixels[static_cast<std::size_t>(i)] =
            pixel >= 0 && pixel < sourceSize ? static_cast<int>(pixel) : kOutside;
    }
    return pixels;
}

/// First pixel and number of pixels that the samples need; none when all are outside.
std::pair<int, int> rangeOf(const std::vector<int>& pixels) {
    int first = kOutside;
    int last = kOutside;
    for (const int pixel : pixels) {
        if (pixel != kOutside) {
            first = first == kOutside ? pixel : std::min(first, pixel);
            last = std::max(last, pixel);
        }
    }
    return {first, first == kOutside ? 0 : last - first + 1};
}

/// The most reduced level that still has a pixel for each sample.
int levelFor(PixelSource& source, double fullPixelsPerSample) {
    if (fullPixelsPerSample < 2) {
        return 0;
    }
    int best = 0;
    const double full = source.levelSize(0).width;
    double bestFactor = 1.0;
    for (int level = 1; level <= source.numLevels(); ++level) {
        const double factor = full / source.levelSize(level).width;
        if (factor > bestFactor && factor <= fullPixelsPerSample + kEdge) {
            best = level;
            bestFactor = factor;
        }
    }
    return best;
}

/// Copies samples of `Bytes` bytes from one line to another, by column.
template <std::size_t Bytes>
void scatter(const unsigned char* line, int firstColumn, const std::vector<int>& columns,
             unsigned char* target, GSpacing pixelSpace) {
    for (const int column : columns) {
        if (column != kOutside) {
            std::memcpy(target, line + static_cast<std::size_t>(column - firstColumn) * Bytes,
                        Bytes);
        }
        target += pixelSpace;
    }
}

using Scatter = void (*)(const unsigned char*, int, const std::vector<int>&, unsigned char*,
                         GSpacing);

Scatter scatterFor(int bytes) {
    switch (bytes) {
        case 1:
            return scatter<1>;
        case 2:
            return scatter<2>;
        case 4:
            return scatter<4>;
        case 8:
            return scatter<8>;
        default:
            return scatter<16>;
    }
}

void fill(const Buffer& buffer, double value) {
    for (int row = 0; row < buffer.height; ++row) {
        GDALCopyWords64(&value, GDT_Float64, 0, buffer.at(0, row), buffer.type,
                        static_cast<int>(buffer.pixelSpace), buffer.width);
    }
}

/// Source lines held in memory, read in runs of as many as fit.
class Lines {
  public:
    Lines(PixelSource& source, int level, int firstColumn, int columns, GDALDataType type)
        : source_(source),
          level_(level),
          firstColumn_(firstColumn),
          columns_(columns),
          type_(type),
          lineBytes_(static_cast<std::size_t>(columns) *
                     static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type))) {}

    /// The line, after reading it and as many up to `last` as fit; null when it cannot be read.
    const unsigned char* line(int number, int last) {
        if (number < first_ || number >= first_ + count_) {
            const auto most = static_cast<int>(std::max<std::size_t>(1, kMostBytes / lineBytes_));
            first_ = number;
            count_ = std::min(last - number + 1, most);
            bytes_.resize(lineBytes_ * static_cast<std::size_t>(count_));
            const Buffer all{bytes_.data(),
                             columns_,
                             count_,
                             type_,
                             GDALGetDataTypeSizeBytes(type_),
                             static_cast<GSpacing>(lineBytes_)};
            if (!source_.read(level_, {firstColumn_, first_, columns_, count_}, all)) {
                count_ = 0;
                return nullptr;
            }
        }
        return bytes_.data() + static_cast<std::size_t>(number - first_) * lineBytes_;
    }

  private:
    PixelSource& source_;
    int level_;
    int firstColumn_;
    int columns_;
    GDALDataType type_;
    std::size_t lineBytes_;
    int first_ = 0;
    int count_ = 0;
    std::vector<unsigned char> bytes_;
};

}  // namespace

bool readPlaced(PixelSource& source, const BandPlace& place, const kestms::PixelRectangle& window,
                const Buffer& buffer, double outside) {
    const double perSample = std::min(place.x.scale * window.width / buffer.width,
                                      place.y.scale * window.height / buffer.height);
    const int level = levelFor(source, perSample);
    const Pyxis::Size full = source.levelSize(0);
    const Pyxis::Size size = source.levelSize(level);
    const std::vector<int> columns =
        sourcePixels(place.x, window.x, window.width, buffer.width,
                     static_cast<double>(size.width) / full.width, size.width);
    const std::vector<int> rows =
        sourcePixels(place.y, window.y, window.height, buffer.height,
                     static_cast<double>(size.height) / full.height, size.height);
    const auto [firstColumn, numColumns] = rangeOf(columns);
    const auto [firstRow, numRows] = rangeOf(rows);
    const bool reachesAll = std::find(columns.begin(), columns.end(), kOutside) == columns.end() &&
                            std::find(rows.begin(), rows.end(), kOutside) == rows.end();
    if (!reachesAll) {
        fill(buffer, outside);
    }
    if (numColumns == 0 || numRows == 0) {
        return true;
    }
    // Lines that no sample comes from are not read.
    const bool sparse = numRows > 2 * buffer.height;
    const Scatter copy = scatterFor(GDALGetDataTypeSizeBytes(buffer.type));
    Lines lines(source, level, firstColumn, numColumns, buffer.type);
    for (int row = 0; row < buffer.height; ++row) {
        const int number = rows[static_cast<std::size_t>(row)];
        if (number == kOutside) {
            continue;
        }
        const unsigned char* line = lines.line(number, sparse ? number : firstRow + numRows - 1);
        if (line == nullptr) {
            return false;
        }
        copy(line, firstColumn, columns, buffer.at(0, row), buffer.pixelSpace);
    }
    return true;
}

}  // namespace kestgdal
