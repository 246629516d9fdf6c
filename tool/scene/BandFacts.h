#pragma once

#include <gdal.h>

#include <optional>
#include <string>
#include <vector>

#include "host/formats/RasterSource.h"
#include "tool/scene/OpenedSet.h"

namespace kestms {

/// A metadata item as GDAL keeps them.
struct MetadataItem {
    const char* domain;  ///< empty for the default one
    const char* key;
    std::string value;
};

/// What a band brings along when it is handed on to programs that read rasters through GDAL.
struct BandFacts {
    std::string description;
    GDALColorInterp colour = GCI_Undefined;
    std::vector<MetadataItem> metadata;
    std::optional<double> noData;
    GDALDataType type = GDT_Unknown;
    bool signedBytes = false;  ///< `type` is GDT_Byte, but with a sign
    Pyxis::Size block;         ///< in which the file is read best
    Pyxis::RasterSource source;
};

/// Throws a Failure with ExitCode::CannotRead.
BandFacts factsOf(const OpenedSet& set, const BandView& band);

}  // namespace kestms
