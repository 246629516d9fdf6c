#pragma once

#include "pyxis/FormatCodecPropertySetIterator.h"

namespace kest {

/// Returns an opened property to its set at the end of a scope, also after an exception.
class PropertyCloser {
  public:
    explicit PropertyCloser(Pyxis::FormatCodecPropertySetIterator& set) : set_(set) {}
    PropertyCloser(const PropertyCloser&) = delete;
    PropertyCloser& operator=(const PropertyCloser&) = delete;
    ~PropertyCloser() {
        try {
            set_.closeProperty();
        } catch (...) {  // NOLINT(bugprone-empty-catch): the value has been read already
        }
    }

  private:
    Pyxis::FormatCodecPropertySetIterator& set_;
};

}  // namespace kest
