#include "properties/FramePropertySet.h"

#include <utility>

#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBandTypeProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralReferenceNameProperty.h"
#include "pyxis/NoThrow.h"

namespace kest {
namespace {

template <typename Property, typename... Arguments>
void append(KestMultispectralPropertySetIterator& set, Arguments&&... arguments) {
    Pyxis::attempt([&] {
        const Property property(std::forward<Arguments>(arguments)...);
        set.appendProperty(&property);
    });
}

}  // namespace

std::unique_ptr<KestMultispectralPropertySetIterator> buildFramePropertySet(
    Pyxis::ReadImageFileFrameInterface* componentFrame,
    KestMultispectralPropertySetIterator& setProperties, const BandFacts& band) {
    auto set = std::make_unique<KestMultispectralPropertySetIterator>();
    if (componentFrame != nullptr) {
        const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> ofComponent(
            componentFrame->getProperties());
        set->appendProperties(ofComponent.get());
    }
    set->appendProperties(&setProperties);
    append<KestMultispectralReferenceNameProperty>(*set, band.referenceName);
    append<KestMultispectralBandNameProperty>(*set, band.indexInBucket, band.component,
                                              band.frameNumber, band.bandName);
    append<KestMultispectralBandTypeProperty>(*set, band.bandType, band.bandAssignment);
    append<KestMultispectralBucketProperty>(*set, band.bucketIndex, band.numBuckets,
                                            band.bucketName);
    return set;
}

}  // namespace kest
