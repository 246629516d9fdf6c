#include "properties/KestMultispectralBucketProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

using Property = KestMultispectralBucketProperty;

Property::KestMultispectralBucketProperty(int bucketNum, int numBuckets,
                                          const Pyxis::StringBuffer& bucketName)
    : KestMultispectralProperty(kest::MultispectralPropertyId::Bucket),
      bucketNum_(bucketNum),
      numBuckets_(numBuckets),
      bucketName_(bucketName) {
    kest::loadResourceString(kest::string_id::kBucketName, nameText());
    kest::loadResourceString(kest::string_id::kBucketDescription, descriptionText());
    setIdentifier(PropertyIdentifier::Custom);
    setDataType(PropertyDataType::Opaque);
    setLevel(PropertyLevel::FrameGroup);
    setUsage(PropertyUsage::Informative);
}

Property::KestMultispectralBucketProperty(const Property& other) = default;
Property::~KestMultispectralBucketProperty() = default;

Pyxis::FormatCodecPropertyInterface* Property::clone() const {
    return Pyxis::makeOrNull<Property>([this] { return new Property(*this); });
}

int Property::getBucketNum() const {
    return bucketNum_;
}
int Property::getNumBuckets() const {
    return numBuckets_;
}
void Property::getBucketName(Pyxis::StringBuffer& out) const {
    Pyxis::attempt([&] { out = bucketName_; });
}
