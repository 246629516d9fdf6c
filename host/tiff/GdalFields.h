#pragma once

#include <optional>
#include <string_view>

namespace Pyxis {

/// A number as GDAL writes it in its own fields; nothing for a text that it might read differently.
std::optional<double> numberIn(std::string_view text);

/// The limits of the samples of a file's only band.
struct TiffStatistics {
    std::optional<double> minimum;
    std::optional<double> maximum;
};

/// The statistics in GDAL's metadata field; nothing if the field holds anything else.
std::optional<TiffStatistics> statisticsIn(std::string_view metadata);

}  // namespace Pyxis
