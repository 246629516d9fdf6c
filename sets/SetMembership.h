#pragma once

#include <cstdint>

#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/Geometry.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/StringBuffer.h"
#include "sets/ComponentList.h"

// The rules by which a component belongs to a set: readable, the same pixel layout, the same
// coordinate system, and corners within a tolerance of the first component's.

namespace kest {

/// Fraction of the first component's extent by which the corners of the others may be off.
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

/// The rule that a component breaks, in the order in which the rules are applied, or none.
enum class Verdict {
    Accepted,
    NoPath,      ///< the list names no file
    Unreadable,  ///< no codec reads it; it is skipped
    CannotOpen,
    NoSuchFrame,
    LayoutRefused,  ///< a pixel layout that no set accepts
    NoGeoreference,
    LayoutDiffers,
    SystemDiffers,
    CornerOff,
};

enum class Corner { UpperLeft, UpperRight, LowerLeft, LowerRight };
enum class Axis { X, Y };

/// The first corner out of tolerance.
struct CornerDeviation {
    Corner corner = Corner::UpperLeft;
    Axis axis = Axis::X;
    double difference = 0.0;  ///< world units, absolute
    double tolerance = 0.0;   ///< world units
};

/// Fills the corners and the coordinate system of `data`.
void measureGeoreference(const Pyxis::FormatCodecGeoCorrelation& geo, InclusionData& data);

/// Opens the component through its codec, measures it and closes it again. Accepted when `data` is
/// filled.
Verdict measureComponent(const Component& component, const Pyxis::ImageFormatCodec& codec,
                         InclusionData& data);

/// Compares in the order layout, coordinate system, corners; the verdict is the first rule broken.
/// `toleranceFactor` is the fraction of the criteria's extent by which a corner may be off; `off`
/// is written for CornerOff only.
Verdict compareWithCriteria(const InclusionData& candidate, const InclusionData& criteria,
                            double toleranceFactor, CornerDeviation& off);

}  // namespace kest
