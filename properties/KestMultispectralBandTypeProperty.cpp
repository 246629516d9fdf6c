#include "properties/KestMultispectralBandTypeProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

using Property = KestMultispectralBandTypeProperty;

Property::KestMultispectralBandTypeProperty(BandType type, BandAssignment assignment)
    : KestMultispectralProperty(kest::MultispectralPropertyId::BandType),
      bandType_(type),
      bandAssignment_(assignment) {
    kest::loadResourceString(kest::string_id::kBandTypeName, nameText());
    kest::loadResourceString(kest::string_id::kBandTypeDescription, descriptionText());
    setUsage(PropertyUsage::Informative);
    setIdentifier(PropertyIdentifier::Custom);
    setDataType(PropertyDataType::Opaque);
    setLevel(PropertyLevel::Frame);
}

Property::KestMultispectralBandTypeProperty(const Property& other) = default;
Property::~KestMultispectralBandTypeProperty() = default;

Pyxis::FormatCodecPropertyInterface* Property::clone() const {
    return Pyxis::makeOrNull<Property>([this] { return new Property(*this); });
}

Property::BandType Property::bandType() const {
    return bandType_;
}
Property::BandAssignment Property::bandAssignment() const {
    return bandAssignment_;
}
