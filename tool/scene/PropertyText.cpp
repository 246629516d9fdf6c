#include "tool/scene/PropertyText.h"

#include "host/Text.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBandTypeProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "tool/scene/Words.h"
#include "tool/terminal/NumberText.h"

namespace kestms {
namespace {

using Pyxis::toUtf8;

std::string geoText(const Pyxis::FormatCodecGeoCorrelation& geo) {
    Pyxis::Point3d origin;
    Pyxis::Vector2d size;
    Pyxis::Vector2d scale;
    Pyxis::StringBuffer system;
    int code = 0;
    geo.getOrigin(origin);
    geo.getPixelSize(size);
    geo.getUnitScale(scale);
    geo.getCoordinateSystem(system);
    if (geo.hasCoordinateSystemCode()) {
        geo.getCoordinateSystemCode(code);
    }
    return systemName(code, toUtf8(system)) + ", lower left (" + numberText(origin.x) + ", " +
           numberText(origin.y) + "), pixels of " + numberText(size.x * scale.x) + " x " +
           numberText(size.y * scale.y);
}

std::string bandText(const KestMultispectralBandNameProperty& band) {
    Pyxis::StringBuffer name;
    Pyxis::FileSpecifier file;
    band.getBandName(name);
    band.getFile(file);
    return toUtf8(name) + ", number " + std::to_string(band.getBandIndex()) + " in its bucket, " +
           toUtf8(file.string()) + ", frame " + std::to_string(band.getFrame());
}

std::string bucketText(const KestMultispectralBucketProperty& bucket) {
    Pyxis::StringBuffer name;
    bucket.getBucketName(name);
    return toUtf8(name) + ", number " + std::to_string(bucket.getBucketNum()) + " of " +
           std::to_string(bucket.getNumBuckets());
}

}  // namespace

std::string valueText(const Pyxis::FormatCodecPropertyInterface& property) {
    if (const auto* text = dynamic_cast<const Pyxis::FormatCodecStringProperty*>(&property)) {
        Pyxis::StringBuffer value;
        text->getValue(value);
        return toUtf8(value);
    }
    if (const auto* geo = dynamic_cast<const Pyxis::FormatCodecGeoCorrelation*>(&property)) {
        return geoText(*geo);
    }
    if (const auto* band = dynamic_cast<const KestMultispectralBandNameProperty*>(&property)) {
        return bandText(*band);
    }
    if (const auto* type = dynamic_cast<const KestMultispectralBandTypeProperty*>(&property)) {
        return std::string(bandTypeWord(type->bandType())) + ", display channel " +
               std::string(channelWord(type->bandAssignment()));
    }
    if (const auto* bucket = dynamic_cast<const KestMultispectralBucketProperty*>(&property)) {
        return bucketText(*bucket);
    }
    return {};
}

std::vector<PropertyText> propertyTexts(Pyxis::ReadImageFileFrameInterface& frame) {
    std::vector<PropertyText> texts;
    forEachProperty(frame, [&texts](const auto& property) {
        texts.push_back({toUtf8(property.getName()), valueText(property)});
    });
    return texts;
}

}  // namespace kestms
