#pragma once

#include "tests/tool/Process.h"

namespace kestms {

/// Writes rasters of sets by the tool, and reads them back by GDAL's programs.
class RasterExport : public InDirectory {
  protected:
    /// Gives a raster's first band a no-data value, and returns its path.
    static std::string withNoData(const std::string& path, double value) {
        return fakes::changeRaster(
            path, [value](GDALDataset& file) { file.GetRasterBand(1)->SetNoDataValue(value); });
    }
    /// The last `size` pixels of a mask that is read behind other bands.
    static std::vector<double> maskOf(const std::string& raster, std::size_t size,
                                      const std::string& mask = "mask") {
        const std::vector<double> all =
            gdalPixels(raster, 1, {"-b", mask, "-co", "INTERLEAVE=BSQ"});
        return {all.end() - static_cast<std::ptrdiff_t>(size), all.end()};
    }

    nlohmann::json infoOf(Strings command, const Strings& files) {
        const std::string output = directory_ / (command[0] == "vrt" ? "out.vrt" : "out.tif");
        const Outcome outcome =
            runKestms(joined(joined(std::move(command), files), {"-o", output, "--overwrite"}));
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        said_ = outcome.err;
        return outcome.code == 0 ? gdalInfo(output) : nlohmann::json();
    }

    std::string said_;  ///< on the error stream
};

}  // namespace kestms
