#pragma once

// Describes plain TIFF files from their first bytes.
//
// Opening a file and loading its georeference with GDAL takes far longer than reading the few facts
// that a list of files needs, and nearly all files in such lists are alike: one band, GeoTIFF keys
// of a registered system, a tie point and a pixel scale. The reader handles those.
//
// Invariant: every fact is the one that GDAL would find, or is left out. GDAL stays the authority,
// so nothing here repairs, guesses or warns. A field of unexpected type or count, a duplicate tag,
// keys out of order, values past the end of the file: all are left to GDAL. The fuzz target
// tiffagainstgdal checks this.
//
// Decided against: further directories (overviews, masks) and rare sample types, which GDAL reads
// well; libtiff, whose leniency differs from GDAL's where GDAL adds its own; and memory mapping, as
// the head of the file has been read already and holds most values.

#include <string>

#include "host/file/FileHead.h"
#include "host/tiff/KnownFacts.h"

namespace Pyxis {

/// Reads the first directory of the TIFF file at `path`, which begins with `head`. Uncertain facts
/// keep their defaults; in a damaged file all do. Never fails.
KnownFacts tiffFacts(const std::string& path, const FileHead& head);

}  // namespace Pyxis
