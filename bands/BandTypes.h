#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "pyxis/StringBuffer.h"

namespace kest {

/// What a band shows. The values are published to hosts; 1 and 7 are unused (compatibility.md, 24).
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

/// Number of a band or bucket that no rule recognises, so that it sorts last (compatibility.md,
/// 23).
inline constexpr std::int32_t kUnrecognisedNumber = 9999;

/// The part of the spectrum that a band records, in micrometres.
struct Spectrum {
    double centre = 0.0;
    double width = 0.0;  ///< full width at half maximum

    /// From the limits in nanometres.
    static constexpr Spectrum between(int from, int to) {
        constexpr double kNanometres = 1000.0;
        return {(from + to) / (2 * kNanometres), (to - from) / kNanometres};
    }
};

/// The role of a frame in the scene. Bands sort before all others.
enum class BandRole : std::int32_t { Band, Quality, Mask, Angle, Ancillary, Preview, Metadata };

/// Details of a band beyond its published properties.
struct BandDetails {
    /// In the vocabulary of the STAC extension for electro-optical data (stac-extensions/eo,
    /// version 1.1); empty for a band without one.
    std::string commonName;
    std::optional<Spectrum> spectrum;  ///< nothing if the sensor is unknown
    BandRole role = BandRole::Band;
    /// What marks pixels without data in all files of the product, which may not say so themselves.
    std::optional<double> productNoData;
    /// Sort keys within the set, known once it is opened.
    std::int32_t number = kUnrecognisedNumber;
    std::int32_t bucketNumber = kUnrecognisedNumber;
};

/// The common name of bands of a type; empty if the type does not determine it.
constexpr std::string_view commonNameOf(BandType type) {
    switch (type) {
        case BandType::Blue:
            return "blue";
        case BandType::Green:
            return "green";
        case BandType::Red:
            return "red";
        case BandType::NearInfrared:
            return "nir";
        case BandType::ThermalLowGain:
        case BandType::ThermalHighGain:
            return "lwir";
        case BandType::Panchromatic:
            return "pan";
        case BandType::MidInfrared:
        case BandType::Unknown:
            break;
    }
    return {};
}

/// The result of band identification.
struct BandTypeInfo {
    BandType bandType = BandType::Unknown;
    BandAssignment bandAssignment = BandAssignment::NotAssigned;
    std::int32_t bandNumber = 0;  ///< sort key within the set
    Pyxis::StringBuffer bandName;
};

}  // namespace kest
