#pragma once

#include "pyxis/FormatCodecPropertySetIterator.h"

/// A property set that can be filled. It keeps clones of what is appended.
class KestMultispectralPropertySetIterator : public Pyxis::FormatCodecPropertySetIterator {
  public:
    KestMultispectralPropertySetIterator();
    KestMultispectralPropertySetIterator(const KestMultispectralPropertySetIterator& other);
    ~KestMultispectralPropertySetIterator() override;

    /// Appends a clone; `property` stays the caller's. Throws std::bad_alloc when the clone cannot
    /// be made.
    void appendProperty(const Pyxis::FormatCodecPropertyInterface* property);
    /// Appends clones of all properties of `source`, which is left at its end; a null `source`
    /// adds nothing, and a property that cannot be cloned is left out.
    void appendProperties(Pyxis::FormatCodecPropertySetIterator* source);

  private:
    void requireProperties(int count) const;
};
