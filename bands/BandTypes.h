#pragma once

#include <cstdint>

#include "pyxis/StringBuffer.h"

namespace kest {

/// What a band shows. The values are published to hosts; 1 and 7 are not in use.
enum class BandType : std::int32_t {
    Unknown = 0,
    Blue = 2,
    Green = 3,
    Red = 4,
    NearInfrared = 5,
    MidInfrared = 6,
    ThermalLowGain = 8,
    ThermalHighGain = 9,
    Panchromatic = 10,
};

/// Which display channel of a colour composite a band feeds.
enum class BandAssignment : std::int32_t {
    NotAssigned = 0,
    RedChannel = 1,
    GreenChannel = 2,
    BlueChannel = 3,
};

/// Number of a band or bucket that no rule recognises: it sorts last.
inline constexpr std::int32_t kUnrecognisedNumber = 9999;

/// What band identification tells of one band.
struct BandTypeInfo {
    BandType bandType = BandType::Unknown;
    BandAssignment bandAssignment = BandAssignment::NotAssigned;
    std::int32_t bandNumber = 0;  ///< sort key within the set
    Pyxis::StringBuffer bandName;
};

}  // namespace kest
