#pragma once

#include <string>
#include <string_view>

namespace kestms {

enum class OutputFormat { VirtualRaster, GeoTiff, Png, Jpeg, WebP, SetDocument, StacItem };

/// GDAL's name of the driver that writes it; documents have none.
const char* driverOf(OutputFormat format);

/// The picture format that the path's extension names; PNG without one.
OutputFormat pictureFormat(const std::string& path);

/// Throws a Failure with ExitCode::Usage when the path has the extension of another format.
void requireExtension(const std::string& path, OutputFormat format);

/// Whether the path means standard output ("-", "/dev/stdout" and the like).
bool isStandardOutput(std::string_view path);

/// Throws a Failure with ExitCode::Usage for standard output, which cannot take a raster.
void refuseStandardOutput(const std::string& path);

}  // namespace kestms
