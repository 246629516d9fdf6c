#include "properties/KestMultispectralReferenceNameProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

using Property = KestMultispectralReferenceNameProperty;

Property::KestMultispectralReferenceNameProperty(const Pyxis::StringBuffer& referenceName)
    : FormatCodecStringProperty(referenceName, 0),
      KestMultispectralProperty(kest::MultispectralPropertyId::ReferenceName) {
    kest::loadResourceString(kest::string_id::kReferenceNameName, nameText());
    kest::loadResourceString(kest::string_id::kReferenceNameDescription, descriptionText());
    setUsage(PropertyUsage::Informative);
    setIdentifier(PropertyIdentifier::Custom);
    setLevel(PropertyLevel::Image);
}

Property::KestMultispectralReferenceNameProperty(const Property& other) = default;
Property::~KestMultispectralReferenceNameProperty() = default;

Pyxis::FormatCodecPropertyInterface* Property::clone() const {
    return Pyxis::makeOrNull<Property>([this] { return new Property(*this); });
}
