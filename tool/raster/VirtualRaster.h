#pragma once

#include <gdal_priv.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tool/raster/OutputGrid.h"
#include "tool/raster/SourceName.h"

namespace kestms {

struct ComponentDescription;

struct VirtualRasterOptions {
    /// How the document names the components.
    enum class Paths {
        Absolute,
        Relative,  ///< from the raster's directory, so that both can move together
    };

    Paths paths = Paths::Relative;
    std::string resampling = "nearest";  ///< GDAL's name
    std::optional<double> noData;        ///< one value for all bands, in place of theirs
};

/// A GDAL virtual raster (VRT) that takes its pixels from the components and carries what they say
/// of them. It is open and named after no file. The open one sees the components alone; programs
/// that open the document see the files beside them as well.
class VirtualRaster {
  public:
    /// Throws a Failure: ExitCode::CannotRead for a component, ExitCode::Usage for a no-data value
    /// that a band's samples cannot have.
    VirtualRaster(const OutputRaster& raster, const VirtualRasterOptions& options);

    GDALDataset& dataset() const { return *dataset_; }
    /// The document. Throws a Failure with ExitCode::CannotWrite that names a component whose path
    /// XML cannot hold.
    std::string text() const;
    /// Whether each band is that of its component, pixel by pixel from corner to corner.
    bool isUnchanged() const { return isUnchanged_; }
    /// What does not arrive in the raster, a line each.
    const std::vector<std::string>& leftOut() const { return leftOut_; }

  private:
    /// GDAL's name for the component, under which it sees nothing beside it.
    std::string nameOf(const OutputBand& band);
    void addBand(OutputBand band, ComponentDescription& facts, const VirtualRasterOptions& options);

    const OutputRaster& raster_;
    std::map<std::string, std::unique_ptr<SourceName>> names_;  ///< by prefix and path
    GDALDatasetUniquePtr dataset_;
    /// The sources of each band and of its mask, which may be empty. GDAL forgets the properties of
    /// a source that it has not opened; readers would have to open all of them.
    std::vector<std::string> sources_;
    std::vector<std::string> maskSources_;
    std::vector<std::string> leftOut_;
    bool isUnchanged_ = true;
};

}  // namespace kestms
