#include "sets/SetMembership.h"

#include <cmath>
#include <memory>

#include "pyxis/FormatCodecGeoCorrelation.h"
#include "sets/PropertyCloser.h"

namespace kest {
namespace {

using Pyxis::FormatCodecGeoCorrelation;
using Pyxis::Point2d;

// Pixel layouts that no set accepts, as the frame's operations number them.
constexpr std::int32_t kSingleChannel = 0;
constexpr std::int32_t kRefusedBits = 32;
constexpr std::int32_t kFloatingPoint = 4;
constexpr std::int32_t kRefusedFloatBits = 16;

bool isLayoutRefused(std::int32_t pixelModel, std::int32_t pixelBits, std::int32_t format) {
    return pixelModel == kSingleChannel &&
           (pixelBits == kRefusedBits ||
            (format == kFloatingPoint && pixelBits == kRefusedFloatBits));
}

void cornersByMapping(const FormatCodecGeoCorrelation& geo, InclusionData& data) {
    Pyxis::Point3d origin;
    Pyxis::Vector2d unitScale;
    Pyxis::Vector2d pixelSize;
    double rotation = 0.0;
    std::int32_t columns = 0;
    std::int32_t rows = 0;
    geo.getOrigin(origin);
    geo.getImageSize(columns, rows);
    geo.getUnitScale(unitScale);
    geo.getPixelSize(pixelSize);
    geo.getRotation(rotation);
    const double scaleX = pixelSize.x * unitScale.x;
    const double scaleY = pixelSize.y * unitScale.y;
    const double cosine = std::cos(rotation);
    const double sine = std::sin(rotation);
    // Scaled after the rotation, each axis by its own factor (compatibility.md, 13).
    const auto map = [&](double u, double v) {
        return Point2d{origin.x + scaleX * cosine * u - scaleX * sine * v,
                       origin.y + scaleY * sine * u + scaleY * cosine * v};
    };
    const double width = columns;
    const double height = rows;
    data.lowerLeft = {origin.x, origin.y};
    data.upperLeft = map(0, height);
    data.upperRight = map(width, height);
    data.lowerRight = map(width, 0);
}

/// Measures the first georeference among the properties; false when there is none.
bool measureProperties(Pyxis::FormatCodecPropertySetIterator& properties, InclusionData& data) {
    for (properties.start(); !properties.endOfList(); properties.step()) {
        const auto* geo = dynamic_cast<const FormatCodecGeoCorrelation*>(properties.openProperty());
        const PropertyCloser closer(properties);
        if (geo != nullptr) {
            measureGeoreference(*geo, data);
            return true;
        }
    }
    return false;
}

}  // namespace

void measureGeoreference(const FormatCodecGeoCorrelation& geo, InclusionData& data) {
    geo.getCoordinateSystem(data.coordinateSystem);
    data.coordinateSystemCode = 0;
    if (geo.hasCoordinateSystemCode()) {
        int code = 0;
        geo.getCoordinateSystemCode(code);
        data.coordinateSystemCode = code;
    }
    if (const auto* exact = dynamic_cast<const GeoTiffCorrelation*>(&geo)) {
        data.lowerLeft = exact->getLowerLeft();
        data.upperLeft = exact->getUpperLeft();
        data.upperRight = exact->getUpperRight();
        data.lowerRight = exact->getLowerRight();
    } else {
        cornersByMapping(geo, data);
    }
}

Verdict measureComponent(const Component& component, const Pyxis::ImageFormatCodec& codec,
                         InclusionData& data) {
    std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&component.file));
    if (!image) {
        return Verdict::CannotOpen;
    }
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(
        image->openFrame(component.frame));
    if (!frame) {
        return Verdict::NoSuchFrame;
    }
    data.pixelModel = frame->frameOp4();
    data.pixelBits = frame->frameOp6();
    if (isLayoutRefused(data.pixelModel, data.pixelBits, frame->frameOp7())) {
        // Only the frame is closed; the host closes the image with its codec (compatibility.md,
        // 12).
        static_cast<void>(image.release());
        return Verdict::LayoutRefused;
    }
    const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties(frame->getProperties());
    return properties && measureProperties(*properties, data) ? Verdict::Accepted
                                                              : Verdict::NoGeoreference;
}

Verdict compareWithCriteria(const InclusionData& candidate, const InclusionData& criteria,
                            double toleranceFactor, CornerDeviation& off) {
    if (candidate.pixelModel != criteria.pixelModel || candidate.pixelBits != criteria.pixelBits) {
        return Verdict::LayoutDiffers;
    }
    const bool sameCode = criteria.coordinateSystemCode > 0 &&
                          criteria.coordinateSystemCode == candidate.coordinateSystemCode;
    if (!sameCode && !(criteria.coordinateSystem == candidate.coordinateSystem)) {
        return Verdict::SystemDiffers;
    }
    const double toleranceX =
        std::abs((criteria.upperRight.x - criteria.upperLeft.x) * toleranceFactor);
    const double toleranceY =
        std::abs((criteria.upperLeft.y - criteria.lowerLeft.y) * toleranceFactor);
    struct CornerPair {
        Corner corner;
        const Point2d& candidate;
        const Point2d& criteria;
    };
    const CornerPair corners[] = {
        {Corner::UpperLeft, candidate.upperLeft, criteria.upperLeft},
        {Corner::UpperRight, candidate.upperRight, criteria.upperRight},
        {Corner::LowerLeft, candidate.lowerLeft, criteria.lowerLeft},
        {Corner::LowerRight, candidate.lowerRight, criteria.lowerRight},
    };
    for (const CornerPair& pair : corners) {
        const double offX = std::abs(pair.candidate.x - pair.criteria.x);
        const double offY = std::abs(pair.candidate.y - pair.criteria.y);
        // Negated so that NaN counts as off.
        if (!(offX <= toleranceX)) {
            off = {pair.corner, Axis::X, offX, toleranceX};
            return Verdict::CornerOff;
        }
        if (!(offY <= toleranceY)) {
            off = {pair.corner, Axis::Y, offY, toleranceY};
            return Verdict::CornerOff;
        }
    }
    return Verdict::Accepted;
}

}  // namespace kest
