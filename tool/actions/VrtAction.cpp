#include "tool/actions/RasterActions.h"
#include "tool/raster/RasterExport.h"

namespace kestms {

ExitCode writeVirtualRasters(Context& context, const ExportRequest& request) {
    if (isStandardOutput(request.output)) {
        printVirtualRaster(context, request);
    } else {
        exportRasters(context, request, OutputFormat::VirtualRaster,
                      [](const OutputRaster& /*raster*/, const VirtualRaster& pixels,
                         OutputFile& file, const ProgressFunction& /*progress*/) {
                          file.write(pixels.text());
                          return std::vector<std::string>();
                      });
    }
    return ExitCode::Success;
}

}  // namespace kestms
