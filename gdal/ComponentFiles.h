#pragma once

#include <gdal_priv.h>

#include <map>
#include <memory>
#include <string>

#include "tool/raster/ComponentDataset.h"
#include "tool/raster/ComponentDescription.h"
#include "tool/scene/Band.h"

namespace kestgdal {

/// The components as GDAL itself opens them, for what a frame does not have: scale, unit, mask,
/// sizes of overviews. They open when they are first asked for, each once.
class ComponentFiles {
  public:
    /// The band of the component; null when GDAL cannot open it.
    GDALRasterBand* band(const kestms::Band& band);
    /// The description of the band by component and set, as in exports.
    kestms::ComponentDescription describe(const kestms::Band& band);
    /// Closes them for good.
    void close();

  private:
    bool closed_ = false;
    kestms::ComponentReader reader_;
    /// Null: could not be opened.
    std::map<std::string, std::unique_ptr<kestms::ComponentDataset>> datasets_;
};

}  // namespace kestgdal
