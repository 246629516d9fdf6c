#pragma once

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <optional>
#include <string>
#include <vector>

#include "gdal/CommonLevels.h"
#include "gdal/ComponentFiles.h"
#include "gdal/Grid.h"
#include "gdal/SetName.h"
#include "gdal/SharedSession.h"

namespace kestgdal {

/// The bands of a set that share a pixel size.
struct PixelSizeGroup {
    std::string label;
    std::vector<const kestms::Band*> bands;
};

/// An opened set, or the part of it with one pixel size, on one grid. Read only.
class SetDataset final : public GDALDataset {
  public:
    static int identify(GDALOpenInfo* info);
    /// Null, with the reason as GDAL's error, when the set cannot be opened.
    static GDALDataset* open(GDALOpenInfo* info);

    /// Throws what the tool reports when the set cannot be opened. `options` are the driver's open
    /// options.
    SetDataset(SetName name, CSLConstList options);
    SetDataset(const SetDataset&) = delete;
    SetDataset& operator=(const SetDataset&) = delete;
    ~SetDataset() override;

    CPLErr GetGeoTransform(double* transform) override;
    const OGRSpatialReference* GetSpatialRef() const override;
    char** GetFileList() override;
    int CloseDependentDatasets() override;

  private:
    void takePixelSize(const std::string& label);
    /// Chooses and orders bands as the options have it.
    void arrange(CSLConstList options);
    void addBands();
    void addDescription();
    void addParts(const std::vector<PixelSizeGroup>& groups);

    SetName name_;
    std::optional<Reader> reader_{std::in_place};
    std::optional<kestms::OpenedSet> set_;
    std::vector<kestms::Band> chosen_;  ///< those of the set that are bands here
    ComponentFiles files_;
    CommonLevels levels_;
    Grid grid_;
    OGRSpatialReference system_;
};

}  // namespace kestgdal
