#include "codec/KestMultispectralFormatCodecApiVersion.h"

#include <cstdlib>

#include "codec/ApiVersion.h"

KestMultispectralFormatCodecApiVersion::~KestMultispectralFormatCodecApiVersion() = default;

int KestMultispectralFormatCodecApiVersion::majorVersion() const {
    return std::atoi(kest::kApiMajorVersion);
}

int KestMultispectralFormatCodecApiVersion::minorVersion() const {
    return std::atoi(kest::kApiMinorVersion);
}
