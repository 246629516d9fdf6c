// The first directory of a TIFF file, read by the host and by GDAL: what the host claims to know is
// GDAL's answer. Inputs are mutated field by field, because few bytes of a file belong to its
// directory.

#include <gdal_frmts.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "fuzz/Input.h"
#include "host/tiff/TiffDirectory.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

using fuzz::require;

/// How much is read first: some values are within it and some are not.
constexpr std::size_t kHeadBytes = 200;

/// A file in memory that has a path.
class MemoryFile {
  public:
    explicit MemoryFile(std::string_view bytes) {
        require(ftruncate(descriptor(), 0) == 0 && pwrite(descriptor(), bytes.data(), bytes.size(),
                                                          0) == static_cast<ssize_t>(bytes.size()),
                "the file is written");
    }
    static std::string path() { return "/proc/self/fd/" + std::to_string(descriptor()); }

  private:
    static int descriptor() {
        static const int file = memfd_create("fuzz", 0);
        return file;
    }
};

GDALDatasetUniquePtr openWithGdal() {
    const std::string path = MemoryFile::path();
    const char* const drivers[] = {"GTiff", nullptr};
    const char* const siblings[] = {CPLGetFilename(path.c_str()), nullptr};
    return GDALDatasetUniquePtr(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY,
                                                  drivers, nullptr, siblings));
}

/// GDAL returns the system separately when it reads the tie points as ground control points.
const OGRSpatialReference* systemOf(GDALDataset& dataset) {
    return dataset.GetGCPCount() > 0 ? dataset.GetGCPSpatialRef() : dataset.GetSpatialRef();
}

std::string textOf(const OGRSpatialReference* system) {
    const char* const form[] = {"FORMAT=WKT2_2018", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    if (system != nullptr) {
        system->exportToWkt(&text, form);
    }
    const std::string found = text != nullptr ? text : "";
    CPLFree(text);
    return found;
}

/// A file of one pixel with only the fields of a system key, which is "II" or "MM" and then
/// TAG=SIZE:BYTES for each field.
std::string fileOfKey(std::string_view key) {
    const bool bigEndian = key.substr(0, 2) == "MM";
    const auto number = [bigEndian](std::size_t value, std::size_t width) {
        std::string bytes(width, '\0');
        for (std::size_t i = 0; i < width; ++i, value >>= 8U) {
            bytes[bigEndian ? width - 1 - i : i] = static_cast<char>(value);
        }
        return bytes;
    };
    std::string entries;
    std::string values;
    std::size_t count = 0;
    const auto add = [&](std::size_t tag, std::size_t type, std::string_view bytes) {
        constexpr std::array<std::size_t, 13> kWidths = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
        entries += number(tag, 2) + number(type, 2) + number(bytes.size() / kWidths.at(type), 4);
        if (bytes.size() > 4) {
            entries += number(1024 + values.size(), 4);
            values += bytes;
        } else {
            entries += std::string(bytes) + std::string(4 - bytes.size(), '\0');
        }
        ++count;
    };
    for (const std::size_t tag : {256U, 257U, 258U, 259U, 262U, 273U, 277U, 278U, 279U}) {
        add(tag, 3, number(tag == 258 || tag == 273 ? 8 : 1, 2));
    }
    key.remove_prefix(2);
    while (!key.empty()) {
        const std::size_t tag = std::stoul(std::string(key));
        key.remove_prefix(key.find('=') + 1);
        const std::size_t size = std::stoul(std::string(key));
        key.remove_prefix(key.find(':') + 1);
        add(tag, tag == 34735 ? 3 : tag == 34736 ? 12 : 2, key.substr(0, size));
        key.remove_prefix(size);
    }
    std::string file = std::string(bigEndian ? "MM" : "II") + number(42, 2) + number(8, 4) +
                       number(count, 2) + entries + number(0, 4);
    file.resize(1024);
    return file + values;
}

void compareRaster(const Pyxis::KnownRaster& known, GDALDataset& dataset) {
    GDALRasterBand& band = *dataset.GetRasterBand(1);
    int width = 0;
    int height = 0;
    band.GetBlockSize(&width, &height);
    require(dataset.GetRasterCount() == 1, "one band");
    require(known.width == band.GetXSize() && known.height == band.GetYSize(), "the same size");
    require(known.blockWidth == width && known.blockHeight == height, "the same blocks");
    const GDALDataType type = band.GetRasterDataType();
    using enum Pyxis::SampleFormat;
    require(known.bits == GDALGetDataTypeSizeBits(type) &&
                (known.format == FloatingPoint) == (GDALDataTypeIsFloating(type) != 0) &&
                (known.format != UnsignedInteger) == (GDALDataTypeIsSigned(type) != 0) &&
                GDALDataTypeIsComplex(type) == 0,
            "the same type");
    int hasNoData = FALSE;
    const double noData = band.GetNoDataValue(&hasNoData);
    require(known.range.hasNoData == (hasNoData != FALSE) &&
                (hasNoData == FALSE || known.range.noData == noData ||
                 (std::isnan(known.range.noData) && std::isnan(noData))),
            "the same no-data value");
    require(known.range.minimum == band.GetMinimum(nullptr) &&
                known.range.maximum == band.GetMaximum(nullptr),
            "the same range");
    require(band.GetMetadataItem("PIXELTYPE", "IMAGE_STRUCTURE") == nullptr, "no signed bytes");
}

void compareWhatMayBe(const Pyxis::KnownFacts& known, GDALDataset& dataset) {
    require(
        known.mayNameOverviews || dataset.GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") == nullptr,
        "no overviews are named");
    require(
        known.mayHaveDescription || dataset.GetMetadataItem("TIFFTAG_IMAGEDESCRIPTION") == nullptr,
        "there is no description");
    for (int i = 1; i <= dataset.GetRasterCount() && i < 10 && !known.mayHaveColours; ++i) {
        require(dataset.GetRasterBand(i)->GetColorTable() == nullptr, "there are no colours");
    }
}

/// The registered system of a code that the host returns is the one that GDAL found.
void compareCode(int code, const OGRSpatialReference* found) {
    OGRSpatialReference system;
    if (system.importFromEPSG(code) == OGRERR_NONE && system.IsProjected() != 0 &&
        system.IsCompound() == 0 && system.GetLinearUnits() == 1.0) {
        require(textOf(&system) == textOf(found), "the same registered system");
    }
}

bool isTiff(std::string_view bytes) {
    using namespace std::string_view_literals;
    constexpr std::array kMagics = {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv};
    return std::find(kMagics.begin(), kMagics.end(), bytes.substr(0, 4)) != kMagics.end();
}

std::size_t numberIn(const std::uint8_t* data, std::size_t at, std::size_t width) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value = value << 8U | data[data[0] == 'M' ? at + i : at + width - 1 - i];
    }
    return value;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    CPLSetErrorHandler(CPLQuietErrorHandler);
    CPLSetConfigOption("GDAL_PAM_ENABLED", "NO");
    GDALRegister_GTiff();
    return 0;
}

/// Changes one number of an entry of the directory: tag, type, count, or value.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned int seed) {
    std::minstd_rand random(seed);
    const bool big = size > 3 && (data[2] == 43 || data[3] == 43);
    const std::size_t start = size > 16 ? numberIn(data, big ? 8 : 4, big ? 8 : 4) : size;
    const std::size_t first = start + (big ? 8 : 2);
    if (random() % 4 == 0 || start >= size || first + 20 > size) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const std::size_t entry = big ? 20 : 12;
    const std::size_t entries = std::min<std::size_t>((size - first) / entry, 24);
    std::uint8_t* const at = data + first + random() % entries * entry;
    constexpr std::array<std::uint16_t, 14> kTags = {254, 256, 258, 259,   262,   273,   277,
                                                     279, 317, 339, 34735, 34736, 34737, 33550};
    constexpr std::array<std::size_t, 4> kPlaces = {0, 2, 4, 8};
    const std::size_t place = kPlaces.at(random() % kPlaces.size());
    const std::size_t value = place == 0 && random() % 2 == 0 ? kTags.at(random() % kTags.size())
                              : place == 2                    ? random() % 19
                                                              : random() % 40;
    const std::size_t width = place < 4 ? 2 : 4;
    for (std::size_t i = 0; i < width; ++i) {
        at[place + (data[0] == 'M' ? width - 1 - i : i)] =
            static_cast<std::uint8_t>(value >> 8U * i);
    }
    return size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (!isTiff(bytes)) {
        return 0;
    }
    const MemoryFile file(bytes);
    Pyxis::FileHead head;
    head.bytes = bytes.substr(0, kHeadBytes);
    head.state.size = size;
    const Pyxis::KnownFacts known = Pyxis::tiffFacts(MemoryFile::path(), head);
    std::string system;
    {
        const GDALDatasetUniquePtr dataset = openWithGdal();
        require(dataset || !known.raster, "GDAL opens a raster that is known");
        if (!dataset) {
            return 0;
        }
        if (known.raster) {
            compareRaster(*known.raster, *dataset);
        }
        compareWhatMayBe(known, *dataset);
        std::array<double, 6> transform{};
        const bool isPlaced = dataset->GetGeoTransform(transform.data()) == CE_None;
        require(!known.transform ||  // by bits: NaN is not equal to itself
                    (isPlaced &&
                     std::memcmp(known.transform->data(), transform.data(), sizeof transform) == 0),
                "the same place");
        if (known.projectedSystem != 0) {
            compareCode(known.projectedSystem, systemOf(*dataset));
        }
        if (known.systemKey.empty()) {
            return 0;
        }
        system = textOf(systemOf(*dataset));
    }
    const MemoryFile keysAlone(fileOfKey(known.systemKey));
    const GDALDatasetUniquePtr dataset = openWithGdal();
    require(dataset && textOf(systemOf(*dataset)) == system, "the key decides on the system");
    return 0;
}
