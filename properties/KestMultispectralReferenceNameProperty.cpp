#include "properties/KestMultispectralReferenceNameProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

KestMultispectralReferenceNameProperty::KestMultispectralReferenceNameProperty(
    const Pyxis::StringBuffer& referenceName)
    : FormatCodecStringProperty(referenceName, 0),
      KestMultispectralProperty(kest::MultispectralPropertyId::ReferenceName) {
    kest::loadResourceString(kest::string_id::kReferenceNameName, nameText());
    kest::loadResourceString(kest::string_id::kReferenceNameDescription, descriptionText());
    setUsage(PropertyUsage::Informative);
    setIdentifier(PropertyIdentifier::Custom);
    setLevel(PropertyLevel::Image);
}

KestMultispectralReferenceNameProperty::KestMultispectralReferenceNameProperty(
    const KestMultispectralReferenceNameProperty& other) = default;
KestMultispectralReferenceNameProperty::~KestMultispectralReferenceNameProperty() = default;

Pyxis::FormatCodecPropertyInterface* KestMultispectralReferenceNameProperty::clone() const {
    return Pyxis::makeOrNull<KestMultispectralReferenceNameProperty>(
        [this] { return new KestMultispectralReferenceNameProperty(*this); });
}
