#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kestms {

/// Metadata items of one domain, by key.
using MetadataItems = std::map<std::string, std::string>;

/// What an auxiliary file adds to a band.
struct AuxiliaryBand {
    std::optional<std::string> description;
    std::optional<std::string> unit;
    std::optional<double> scale;
    std::optional<double> offset;
    std::optional<std::vector<std::string>> categories;
    std::map<std::string, MetadataItems> domains;  ///< "" is the default one
};

/// Reads the descriptions that GDAL keeps beside a raster (".aux.xml"), by band, from 1. Anything
/// there that could lead to another file is passed over. Empty when there is no such file, or one
/// that is too large or no auxiliary file.
std::map<int, AuxiliaryBand> readAuxiliaryFile(const std::string& rasterPath);

}  // namespace kestms
