#pragma once

#include <string>

#include "host/file/Export.h"

namespace Pyxis {

/// Captures GDAL's messages on this thread for its lifetime, so that nothing is printed, and keeps
/// the last error. Captures nest and end in reverse order.
class PYXIS_CODECS_API ErrorCapture {
  public:
    ErrorCapture();
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;
    ~ErrorCapture();

    /// The last error's message; empty when there was none. Warnings do not count.
    const std::string& message() const { return message_; }

  private:
    std::string message_;
};

}  // namespace Pyxis
