#include "properties/KestMultispectralBandNameProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

using Property = KestMultispectralBandNameProperty;

Property::KestMultispectralBandNameProperty(int bandIndex, const Pyxis::FileSpecifier& file,
                                            int frame, const Pyxis::StringBuffer& bandName)
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

Property::KestMultispectralBandNameProperty(const Property& other) = default;
Property::~KestMultispectralBandNameProperty() = default;

Pyxis::FormatCodecPropertyInterface* Property::clone() const {
    return Pyxis::makeOrNull<Property>([this] { return new Property(*this); });
}

int Property::getBandIndex() const {
    return bandIndex_;
}
int Property::getFrame() const {
    return frame_;
}
void Property::getFile(Pyxis::FileSpecifier& out) const {
    Pyxis::attempt([&] { out.assign(file_); });
}
void Property::getBandName(Pyxis::StringBuffer& out) const {
    Pyxis::attempt([&] { out = bandName_; });
}
