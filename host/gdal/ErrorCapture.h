#pragma once

#include <string>

#include "host/file/Export.h"

namespace Pyxis {

/// Captures GDAL's messages on this thread for its lifetime, so that nothing is printed, and keeps
/// the last error and the last warning. Captures nest and end in reverse order.
class PYXIS_CODECS_API ErrorCapture {
  public:
    ErrorCapture();
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;
    ~ErrorCapture();

    /// The last error's message; empty when there was none. Warnings do not count.
    const std::string& message() const { return last_.error; }
    /// The last warning; empty when there was none.
    const std::string& warning() const { return last_.warning; }

    struct Messages {
        std::string error;
        std::string warning;
    };

  private:
    Messages last_;
};

}  // namespace Pyxis
