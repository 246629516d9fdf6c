#pragma once

// Describes plain TIFF files from their first bytes.
//
// Loading GDAL's georeferencing and opening a file take far longer than everything that a list of
// files needs to know of it, and nearly all files in such lists are alike: one band, GeoTIFF keys
// of a registered system, a tie point and a pixel scale. The reader knows those.
//
// What must hold: every fact is the one that GDAL would find, or is left out. GDAL stays the
// authority, so nothing here repairs, guesses or warns. A field of another type or count than its
// definition says, a tag that stands twice, keys out of order, values past the end of the file:
// all are left to GDAL. The fuzz target tiffagainstgdal holds the reader to that.
//
// Decided against: further directories (overviews, masks) and the many kinds of samples, which
// GDAL reads well and seldom; libtiff, whose leniency differs from GDAL's where GDAL adds its own;
// and memory mapping, as the head of the file has been read already and holds most values.

#include <string>

#include "host/file/FileHead.h"
#include "host/tiff/KnownFacts.h"

namespace Pyxis {

/// Reads the first directory of the TIFF file at `path`, which begins with `head`. Facts that are
/// not sure keep their defaults, which know nothing; in a damaged file those are all. Never fails.
KnownFacts tiffFacts(const std::string& path, const FileHead& head);

}  // namespace Pyxis
