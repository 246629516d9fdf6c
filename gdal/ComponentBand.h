#pragma once

#include <cpl_string.h>

#include <memory>
#include <optional>
#include <vector>

#include "gdal/CommonLevels.h"
#include "gdal/PlacedBand.h"

namespace kestgdal {

/// One band of a set on the grid of its dataset, with what the set and the component know of it.
/// Facts that only the component's file has are read when they are asked for.
class ComponentBand final : public PlacedBand {
  public:
    /// `band` and `files` live as long as the dataset. `levels` are those of the band; null for an
    /// overview, which has none.
    ComponentBand(GDALDataset* dataset, int number, const kestms::Band& band, ComponentFiles& files,
                  std::shared_ptr<PixelSource> samples, const Sampling& sampling,
                  CommonLevels* levels);

    void close() override;

    GDALColorInterp GetColorInterpretation() override;
    GDALColorTable* GetColorTable() override;
    double GetNoDataValue(int* success) override;
    double GetOffset(int* success) override;
    double GetScale(int* success) override;
    const char* GetUnitType() override;
    char** GetCategoryNames() override;
    char** GetMetadataDomainList() override;
    char** GetMetadata(const char* domain) override;
    const char* GetMetadataItem(const char* name, const char* domain) override;
    int GetOverviewCount() override;
    GDALRasterBand* GetOverview(int index) override;
    int GetMaskFlags() override;
    GDALRasterBand* GetMaskBand() override;

  private:
    /// Of component and set together, read at the first use.
    const kestms::ComponentDescription& facts() const;
    PlacedBand* ownMask();
    void addOverviews();
    /// Passes all metadata to the base class, at the first call.
    void addMetadata();

    const kestms::Band& band_;
    ComponentFiles& files_;
    CommonLevels* levels_;  ///< null once the overviews are there
    std::vector<std::unique_ptr<ComponentBand>> overviews_;
    std::optional<std::unique_ptr<PlacedBand>> mask_;  ///< of null: the component has no own one
    mutable std::optional<kestms::ComponentDescription> facts_;
    std::optional<CPLStringList> categories_;
    bool hasMetadata_ = false;
};

}  // namespace kestgdal
