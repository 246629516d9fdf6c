#pragma once

#include <gdal_priv.h>

#include <string>
#include <utility>

#include "tests/tool/Process.h"

namespace kestms {

/// Writes rasters of sets by the tool, and reads them back by GDAL's programs.
class RasterExport : public InDirectory {
  protected:
    /// Opens a file for changes.
    template <typename Change>
    static void change(const std::string& path, Change change) {
        const GDALDatasetUniquePtr file(GDALDataset::Open(path.c_str(), GDAL_OF_UPDATE));
        change(*file);
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
