#include "properties/KestMultispectralBucketProperty.h"

#include "codec/strings/StringIds.h"
#include "codec/strings/StringResources.h"
#include "pyxis/NoThrow.h"

KestMultispectralBucketProperty::KestMultispectralBucketProperty(
    int bucketNum, int numBuckets, const Pyxis::StringBuffer& bucketName)
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

KestMultispectralBucketProperty::KestMultispectralBucketProperty(
    const KestMultispectralBucketProperty& other) = default;
KestMultispectralBucketProperty::~KestMultispectralBucketProperty() = default;

Pyxis::FormatCodecPropertyInterface* KestMultispectralBucketProperty::clone() const {
    return Pyxis::makeOrNull<KestMultispectralBucketProperty>(
        [this] { return new KestMultispectralBucketProperty(*this); });
}

int KestMultispectralBucketProperty::getBucketNum() const {
    return bucketNum_;
}
int KestMultispectralBucketProperty::getNumBuckets() const {
    return numBuckets_;
}
void KestMultispectralBucketProperty::getBucketName(Pyxis::StringBuffer& out) const {
    Pyxis::attempt([&] { out = bucketName_; });
}
