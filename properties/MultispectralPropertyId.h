#pragma once

namespace kest {

/// The plug-in's properties.
enum class MultispectralPropertyId : int {
    ReferenceName = 0,
    Bucket = 1,
    BandName = 2,
    BandType = 3,
    MetadataTextFile = 4,
};

}  // namespace kest
