#include "codec/KestMultispectralFormatCodecApiVersion.h"

#include <cstdlib>

#include "codec/ApiVersion.h"

using ApiVersion = KestMultispectralFormatCodecApiVersion;

ApiVersion::~KestMultispectralFormatCodecApiVersion() = default;

int ApiVersion::majorVersion() const {
    return std::atoi(kest::kApiMajorVersion);
}

int ApiVersion::minorVersion() const {
    return std::atoi(kest::kApiMinorVersion);
}
