#include "properties/KestMultispectralPropertySetIterator.h"

#include "pyxis/NoThrow.h"

#include <new>

using PropertySet = KestMultispectralPropertySetIterator;

PropertySet::KestMultispectralPropertySetIterator() = default;
PropertySet::KestMultispectralPropertySetIterator(const PropertySet& other)
    : FormatCodecPropertySetIterator(other) {
    requireProperties(other.numProperties());
}
PropertySet::~KestMultispectralPropertySetIterator() = default;

void PropertySet::appendProperty(const Pyxis::FormatCodecPropertyInterface* property) {
    const int wanted = numProperties() + (property == nullptr ? 0 : 1);
    FormatCodecPropertySetIterator::appendProperty(property);
    requireProperties(wanted);
}

/// The host's list passes over a property whose clone is null, which is one for want of memory.
void PropertySet::requireProperties(int count) const {
    if (FormatCodecPropertySetIterator::numProperties() != count) {
        throw std::bad_alloc();
    }
}

void PropertySet::appendProperties(Pyxis::FormatCodecPropertySetIterator* source) {
    if (source == nullptr) {
        return;
    }
    for (source->start(); !source->endOfList(); source->step()) {
        const Pyxis::FormatCodecPropertyInterface* property = source->openProperty();
        // The source takes its property back even when there is no memory for a copy.
        Pyxis::attempt([this, property] { appendProperty(property); });
        source->closeProperty();
    }
}
