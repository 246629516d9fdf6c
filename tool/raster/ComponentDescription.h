#pragma once

#include <gdal_priv.h>

#include <memory>
#include <string>
#include <string_view>

#include "tool/raster/OutputGrid.h"
#include "tool/scene/AuxiliaryFile.h"

namespace kestms {

/// A component's description of a band besides pixels and georeference, for programs that read the
/// output raster. Texts are unchanged.
struct ComponentDescription {
    std::string unit;
    double scale = 1;
    double offset = 0;
    GDALColorInterp colour = GCI_Undefined;
    std::vector<std::string> categories;
    std::unique_ptr<GDALColorTable> colourTable;  ///< may be null
    MetadataDomains domains;                      ///< of the band
    MetadataDomains fileDomains;                  ///< of the whole file
    GDALDataType type = GDT_Unknown;
    Pyxis::Size block;
    bool hasMask = false;  ///< in the file itself, or an alpha band
    std::string maskFile;  ///< beside it; GDAL could open it as any format, so nobody reads it
};

/// Whether metadata of a domain apply to a copy: not those about storage or other files.
bool isCarried(const std::string& domain);

/// Whether an item of the default domain is a statistic of the band's pixels.
inline bool isStatistic(std::string_view key) {
    return key.starts_with("STATISTICS_");
}

/// The file that GDAL would read as the mask of a component; empty without one.
std::string maskFileOf(const std::string& path);

/// Completes what the component says of the band with what the set knows: its colour, its
/// wavelengths.
void addSetFacts(const Band& band, ComponentDescription& facts);

/// Reads components, and the descriptions that GDAL keeps in their auxiliary files (".aux.xml").
/// Nothing else beside a component is opened. The last file stays open: bands of one file are
/// asked for in turn.
class ComponentReader {
  public:
    ComponentReader();
    ComponentReader(const ComponentReader&) = delete;
    ComponentReader& operator=(const ComponentReader&) = delete;
    ~ComponentReader();

    /// Throws a Failure with ExitCode::CannotRead.
    ComponentDescription describe(const std::string& path, const Pyxis::RasterSource& source);
    ComponentDescription describe(const OutputBand& band) {
        return describe(band.band.componentPath, band.source);
    }

    /// Closes the last file.
    void close();

  private:
    class File;
    std::unique_ptr<File> file_;
};

}  // namespace kestms
