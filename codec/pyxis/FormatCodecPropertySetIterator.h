#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "pyxis/Export.h"
#include "pyxis/FormatCodecProperty.h"

namespace Pyxis {

/// A list of properties with a cursor. It owns clones of what was appended, also while they are
/// open.
class PYXIS_API FormatCodecPropertySetIterator {
  public:
    virtual ~FormatCodecPropertySetIterator();  // slot 0
    /// Puts the cursor on the first property.
    virtual void start();  // slot 1
    /// Advances by one; does nothing at the end.
    virtual void step();                // slot 2
    virtual bool endOfList() const;     // slot 3
    virtual int numProperties() const;  // slot 4
    /// Slot 5: the first property with that identifier, or null; the cursor goes there.
    /// Slot 6: the property at the cursor, or null at the end.
    /// The caller returns either with `closeProperty` and never deletes it.
    PYXIS_OVERLOADS_IN_SLOT_ORDER(virtual FormatCodecPropertyInterface* openProperty(
                                      FormatCodecPropertyInterface::PropertyIdentifier identifier),
                                  virtual FormatCodecPropertyInterface* openProperty());
    /// Returns the property that was opened last.
    virtual void closeProperty();  // slot 7

    FormatCodecPropertySetIterator& operator=(const FormatCodecPropertySetIterator&) = delete;

  protected:
    FormatCodecPropertySetIterator();
    /// Clones every property; the cursor starts at the first.
    FormatCodecPropertySetIterator(const FormatCodecPropertySetIterator& other);
    /// Appends a clone of `property`, which stays the caller's. Null, or a property that cannot be
    /// cloned, is left out.
    void appendProperty(const FormatCodecPropertyInterface* property);

  private:
    std::vector<std::unique_ptr<FormatCodecPropertyInterface>> properties_;
    std::size_t cursor_ = 0;
};

}  // namespace Pyxis
