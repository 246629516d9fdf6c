#pragma once

#include <string>

#include "host/gdal/Export.h"

namespace Pyxis {

/// Catches what GDAL says on this thread for as long as the object lives, so that nothing is
/// printed, and keeps the last error's words. Captures nest; they end in reverse order.
class PYXIS_CODECS_API ErrorCapture {
  public:
    ErrorCapture();
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;
    ~ErrorCapture();

    /// The last error's words; empty when there was none. Warnings do not count.
    const std::string& message() const { return message_; }

  private:
    std::string message_;
};

}  // namespace Pyxis
