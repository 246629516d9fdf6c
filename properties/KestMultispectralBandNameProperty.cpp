#include "properties/KestMultispectralBandNameProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

KestMultispectralBandNameProperty::KestMultispectralBandNameProperty(
    int bandIndex, const Pyxis::FileSpecifier& file, int frame, const Pyxis::StringBuffer& bandName)
    : KestMultispectralProperty(kest::MultispectralPropertyId::BandName),
      bandIndex_(bandIndex),
      frame_(frame),
      file_(file),
      bandName_(bandName) {
    kest::loadResourceString(kest::string_id::kBandNameName, nameText());
    kest::loadResourceString(kest::string_id::kBandNameDescription, descriptionText());
    setUsage(PropertyUsage::Informative);
    setIdentifier(PropertyIdentifier::Custom);
    setDataType(PropertyDataType::Opaque);
    setLevel(PropertyLevel::Frame);
}

KestMultispectralBandNameProperty::KestMultispectralBandNameProperty(
    const KestMultispectralBandNameProperty& other) = default;
KestMultispectralBandNameProperty::~KestMultispectralBandNameProperty() = default;

Pyxis::FormatCodecPropertyInterface* KestMultispectralBandNameProperty::clone() const {
    return Pyxis::makeOrNull<KestMultispectralBandNameProperty>(
        [this] { return new KestMultispectralBandNameProperty(*this); });
}

int KestMultispectralBandNameProperty::getBandIndex() const {
    return bandIndex_;
}
int KestMultispectralBandNameProperty::getFrame() const {
    return frame_;
}
void KestMultispectralBandNameProperty::getFile(Pyxis::FileSpecifier& out) const {
    Pyxis::attempt([&] { out.assign(file_); });
}
void KestMultispectralBandNameProperty::getBandName(Pyxis::StringBuffer& out) const {
    Pyxis::attempt([&] { out = bandName_; });
}
