#pragma once

#include <cstdint>

#include "pyxis/FileSpecifier.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/Geometry.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/StringBuffer.h"

// The rules by which a component belongs to a set: readable, the same pixel layout, the same
// coordinate system, and corners within a tolerance of the first component's.

namespace kest {

/// The part of the first component's extent by which another's corners may be off.
inline constexpr double kToleranceFactor = 0.05;

/// The measurements of one component.
struct InclusionData {
    std::int32_t pixelBits = 0;
    std::int32_t pixelModel = 0;
    Pyxis::Point2d upperLeft;
    Pyxis::Point2d upperRight;
    Pyxis::Point2d lowerLeft;
    Pyxis::Point2d lowerRight;
    std::int32_t coordinateSystemCode = 0;  ///< 0 when the component has none
    Pyxis::StringBuffer coordinateSystem;
};

/// Why a component could not be measured.
enum class MeasureFault {
    None,
    CannotOpenFile,
    NoSuchFrame,
    PixelLayoutRefused,
    NoProperties,
    NoGeoreference,
};

/// Fills the corners and the coordinate system of `data`.
void measureGeoreference(const Pyxis::FormatCodecGeoCorrelation& geo, InclusionData& data);

/// Opens the component through its codec, measures it and closes it again.
MeasureFault measureComponent(const Pyxis::FileSpecifier& file, int frame,
                              const Pyxis::ImageFormatCodec* codec, InclusionData& data);

enum class MembershipFault { None, PixelLayoutDiffers, CoordinateSystemDiffers, CornerOff };

enum class Corner { UpperLeft, UpperRight, LowerLeft, LowerRight };
enum class Axis { X, Y };

/// How a measured component compares with the criteria. The corner fields are meaningful for
/// CornerOff only.
struct MembershipFinding {
    MembershipFault fault = MembershipFault::None;
    Corner corner = Corner::UpperLeft;
    Axis axis = Axis::X;
    double difference = 0.0;  ///< world units, absolute
    double tolerance = 0.0;   ///< world units
};

/// Compares in the order layout, coordinate system, corners, and reports the first fault.
/// `toleranceFactor` is the part of the criteria's extent by which a corner may be off.
MembershipFinding compareWithCriteria(const InclusionData& candidate, const InclusionData& criteria,
                                      double toleranceFactor);

}  // namespace kest
