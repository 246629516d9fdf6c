#include "properties/KestMultispectralPropertySetIterator.h"

#include "properties/HostBoundary.h"

using PropertySet = KestMultispectralPropertySetIterator;

PropertySet::KestMultispectralPropertySetIterator() = default;
PropertySet::KestMultispectralPropertySetIterator(const PropertySet& other) = default;
PropertySet::~KestMultispectralPropertySetIterator() = default;

void PropertySet::appendProperty(const Pyxis::FormatCodecPropertyInterface* property) {
    FormatCodecPropertySetIterator::appendProperty(property);
}

void PropertySet::appendProperties(Pyxis::FormatCodecPropertySetIterator* source) {
    if (source == nullptr) {
        return;
    }
    for (source->start(); !source->endOfList(); source->step()) {
        const Pyxis::FormatCodecPropertyInterface* property = source->openProperty();
        // The source takes its property back even when there is no memory for a copy.
        kest::attempt([this, property] { appendProperty(property); });
        source->closeProperty();
    }
}
