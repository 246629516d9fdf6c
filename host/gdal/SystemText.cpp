#include "host/gdal/SystemText.h"

#include <cpl_conv.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "host/Text.h"

namespace Pyxis {
namespace {

/// The EPSG code of the system as a whole; 0 when it has none.
int epsgCode(const OGRSpatialReference& system) {
    const char* authority = system.GetAuthorityName(nullptr);
    const char* code = system.GetAuthorityCode(nullptr);
    if (authority == nullptr || code == nullptr || !EQUAL(authority, "EPSG")) {
        return 0;
    }
    return static_cast<int>(std::clamp(std::strtol(code, nullptr, 10), 0L, 0x7fffffffL));
}

/// Formats that describe a system without a code or a name still mean a registered one.
OGRSpatialReference identified(const OGRSpatialReference& system) {
    OGRSpatialReference known(system);
    if (epsgCode(system) != 0 || known.AutoIdentifyEPSG() != OGRERR_NONE ||
        known.importFromEPSG(epsgCode(known)) != OGRERR_NONE) {
        return system;
    }
    return known;
}

/// One form for all, so that equal systems give equal texts.
std::string wktOf(const OGRSpatialReference& system) {
    const char* const options[] = {"FORMAT=WKT2_2018", "MULTILINE=NO", nullptr};
    char* text = nullptr;
    std::string wkt;
    if (system.exportToWkt(&text, options) == OGRERR_NONE && text != nullptr) {
        wkt = text;
    }
    CPLFree(text);
    return wkt;
}

CoordinateSystem described(const OGRSpatialReference& system) {
    const OGRSpatialReference known = identified(system);
    return {toWideBuffer(wktOf(known)), epsgCode(known)};
}

}  // namespace

/// GDAL keeps the system separately when it treats the tie points of a file as ground control
/// points, as it does when the georeference is in a world file that it does not see.
CoordinateSystem systemOf(GDALDataset& dataset) {
    const OGRSpatialReference* system =
        dataset.GetGCPCount() > 0 ? dataset.GetGCPSpatialRef() : dataset.GetSpatialRef();
    return system != nullptr && !system->IsEmpty() ? described(*system)
                                                   : CoordinateSystem{toWideBuffer(""), 0};
}

CoordinateSystem systemIn(const std::string& text) {
    OGRSpatialReference system;
    return system.SetFromUserInput(text.c_str(),
                                   OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) ==
                   OGRERR_NONE
               ? described(system)
               : CoordinateSystem{toWideBuffer(""), 0};
}

}  // namespace Pyxis
