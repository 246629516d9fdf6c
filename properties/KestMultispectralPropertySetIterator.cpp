#include "properties/KestMultispectralPropertySetIterator.h"

#include "pyxis/NoThrow.h"

#include <new>

KestMultispectralPropertySetIterator::KestMultispectralPropertySetIterator() = default;
KestMultispectralPropertySetIterator::KestMultispectralPropertySetIterator(
    const KestMultispectralPropertySetIterator& other)
    : FormatCodecPropertySetIterator(other) {
    requireProperties(other.numProperties());
}
KestMultispectralPropertySetIterator::~KestMultispectralPropertySetIterator() = default;

void KestMultispectralPropertySetIterator::appendProperty(
    const Pyxis::FormatCodecPropertyInterface* property) {
    const int wanted = numProperties() + (property == nullptr ? 0 : 1);
    FormatCodecPropertySetIterator::appendProperty(property);
    requireProperties(wanted);
}

/// The host's list skips a property whose clone is null: its allocation failed.
void KestMultispectralPropertySetIterator::requireProperties(int count) const {
    if (FormatCodecPropertySetIterator::numProperties() != count) {
        throw std::bad_alloc();
    }
}

void KestMultispectralPropertySetIterator::appendProperties(
    Pyxis::FormatCodecPropertySetIterator* source) {
    if (source == nullptr) {
        return;
    }
    for (source->start(); !source->endOfList(); source->step()) {
        const Pyxis::FormatCodecPropertyInterface* property = source->openProperty();
        // The property is returned to the source even when the copy fails.
        Pyxis::attempt([this, property] { appendProperty(property); });
        source->closeProperty();
    }
}
