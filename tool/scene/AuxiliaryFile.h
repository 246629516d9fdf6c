#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kestms {

/// Metadata items of one domain, by key.
using MetadataItems = std::map<std::string, std::string>;
/// By domain; "" is the default one.
using MetadataDomains = std::map<std::string, MetadataItems>;

/// The description of a band in an auxiliary file.
struct AuxiliaryBand {
    std::optional<std::string> description;
    std::optional<std::string> unit;
    std::optional<double> scale;
    std::optional<double> offset;
    std::optional<double> noData;
    std::optional<std::string> colour;  ///< GDAL's word for the colour interpretation
    std::optional<std::vector<std::string>> categories;
    MetadataDomains domains;
};

/// GDAL's auxiliary file of a raster.
struct AuxiliaryFile {
    std::map<int, AuxiliaryBand> bands;  ///< from 1
    MetadataDomains domains;             ///< of the whole raster
};

/// Reads the descriptions beside a raster (".aux.xml"). Ignores anything that could lead to another
/// file. Empty when there is no such file, or it is too large or invalid.
AuxiliaryFile readAuxiliaryFile(const std::string& rasterPath);

}  // namespace kestms
