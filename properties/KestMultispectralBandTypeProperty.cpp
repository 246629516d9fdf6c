#include "properties/KestMultispectralBandTypeProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

KestMultispectralBandTypeProperty::KestMultispectralBandTypeProperty(BandType type,
                                                                     BandAssignment assignment)
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

KestMultispectralBandTypeProperty::KestMultispectralBandTypeProperty(
    const KestMultispectralBandTypeProperty& other) = default;
KestMultispectralBandTypeProperty::~KestMultispectralBandTypeProperty() = default;

Pyxis::FormatCodecPropertyInterface* KestMultispectralBandTypeProperty::clone() const {
    return Pyxis::makeOrNull<KestMultispectralBandTypeProperty>(
        [this] { return new KestMultispectralBandTypeProperty(*this); });
}

KestMultispectralBandTypeProperty::BandType KestMultispectralBandTypeProperty::bandType() const {
    return bandType_;
}
KestMultispectralBandTypeProperty::BandAssignment
KestMultispectralBandTypeProperty::bandAssignment() const {
    return bandAssignment_;
}
