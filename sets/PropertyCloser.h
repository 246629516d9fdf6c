#pragma once

#include "pyxis/FormatCodecPropertySetIterator.h"

namespace kest {

/// Gives the property that a set has handed out back to it at the end of a scope, also when the
/// scope is left by an exception.
class PropertyCloser {
  public:
    explicit PropertyCloser(Pyxis::FormatCodecPropertySetIterator& set) : set_(set) {}
    PropertyCloser(const PropertyCloser&) = delete;
    PropertyCloser& operator=(const PropertyCloser&) = delete;
    ~PropertyCloser() {
        try {
            set_.closeProperty();
        } catch (...) {  // NOLINT(bugprone-empty-catch): what was read is read all the same
        }
    }

  private:
    Pyxis::FormatCodecPropertySetIterator& set_;
};

}  // namespace kest
