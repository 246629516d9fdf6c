#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kestms {

/// Metadata items of one domain, by key.
using MetadataItems = std::map<std::string, std::string>;

/// The description of a band in an auxiliary file.
struct AuxiliaryBand {
    std::optional<std::string> description;
    std::optional<std::string> unit;
    std::optional<double> scale;
    std::optional<double> offset;
    std::optional<std::vector<std::string>> categories;
    std::map<std::string, MetadataItems> domains;  ///< "" is the default one
};

/// Reads the descriptions in GDAL's auxiliary file of a raster (".aux.xml"), by band, from 1.
/// Ignores anything that could lead to another file. Empty when there is no such file, or it is too
/// large or invalid.
std::map<int, AuxiliaryBand> readAuxiliaryFile(const std::string& rasterPath);

}  // namespace kestms
