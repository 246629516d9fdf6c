#include "tool/actions/RasterActions.h"
#include "tool/raster/GeoTiffWriter.h"
#include "tool/raster/RasterExport.h"

namespace kestms {

ExitCode exportSet(Context& context, const ExportOptions& options) {
    exportRasters(context, options.request, OutputFormat::GeoTiff,
                  [&](const OutputRaster& raster, const VirtualRaster& pixels, OutputFile& file,
                      const ProgressFunction& progress) {
                      return writeGeoTiff(raster, pixels, options.format, file, progress);
                  });
    return ExitCode::Success;
}

}  // namespace kestms
