#pragma once

#include <string>
#include <vector>

#include "pyxis/Geometry.h"
#include "tool/raster/OutputFile.h"
#include "tool/samples/Scene.h"

namespace kestms::samples {

/// The conversion of reflectances to samples.
enum class Samples { EightBits, ElevenBits };

/// The sample scene in some bands.
struct SampleRaster {
    std::vector<Spectrum> bands;
    int pixels = 0;       ///< along each side
    double extent = 0.0;  ///< metres along each side
    Samples samples = Samples::EightBits;
    std::string driver = "GTiff";
    std::string description = {};
    std::vector<std::string> options = {};  ///< creation options of the driver
};

/// Upper-left corner of every sample scene, in UTM zone 32 north.
inline constexpr Pyxis::Point2d kOrigin{483000.0, 5634000.0};

/// The samples of the first band, 8 bits each, line by line.
std::string rawSamples(const SampleRaster& raster);

/// Writes a georeferenced file with GDAL. Throws a Failure with ExitCode::CannotWrite, and one
/// with ExitCode::Interrupted.
void writeRaster(const OutputFile& output, const SampleRaster& raster);

}  // namespace kestms::samples
