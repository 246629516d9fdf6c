#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/gdal/RasterFacts.h"

class GDALDataset;

namespace Pyxis {

/// An open dataset for formats, without GDAL's headers. Valid while its handle is being loaded.
class Dataset {
  public:
    explicit Dataset(GDALDataset& dataset, std::size_t part) : dataset_(&dataset), part_(part) {}

    int numBands() const;
    /// Every band as a frame. Colour tables are read only if there may be one.
    std::vector<FrameFacts> frames(bool mayHaveColours = true) const;
    bool hasTransform() const;
    /// An item of the metadata, of the dataset or of a band (from 1); nothing when there is none.
    std::optional<std::string> item(const char* key, const char* domain = "") const;
    std::optional<std::string> bandItem(int band, const char* key, const char* domain) const;
    int numItems(const char* domain) const;
    /// The files of the dataset, as GDAL opened them, the main one first.
    std::vector<std::string> files() const;
    /// Whether GDAL can read the last pixel of the last band, and so its whole block. False without
    /// reading when that block takes more than 64 MiB.
    bool canReadLastPixel() const;

  private:
    GDALDataset* dataset_;
    std::size_t part_;
};

/// The size of a block of pixels of so many interleaved bands.
std::uint64_t bytesAtOnce(const FrameFacts& facts, std::size_t bands = 1);

/// GDAL's name for samples of a format and a size in bits; empty when it has no such type.
std::string sampleTypeName(SampleFormat format, std::int32_t bits);

/// Decodes base 64.
std::string decodedBase64(std::string text);

/// A GDAL option from the process or its environment.
std::optional<std::string> gdalOption(const char* name);

}  // namespace Pyxis
