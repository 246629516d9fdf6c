#pragma once

#include <cpl_conv.h>

#include <array>
#include <utility>

#include "host/gdal/ErrorCapture.h"

namespace kestms {

/// Keeps GDAL, on this thread, to the files that it is told to open and write: no auxiliary files
/// beside them, which could describe them otherwise or lead anywhere, and masks inside them. What
/// GDAL would print is kept from the terminal: it may quote the files.
class GdalSession {
  public:
    GdalSession() {
        for (const auto& [key, value] : kOptions) {
            CPLSetThreadLocalConfigOption(key, value);
        }
    }
    GdalSession(const GdalSession&) = delete;
    GdalSession& operator=(const GdalSession&) = delete;
    ~GdalSession() {
        for (const auto& [key, value] : kOptions) {
            CPLSetThreadLocalConfigOption(key, nullptr);
        }
    }

  private:
    static constexpr std::array<std::pair<const char*, const char*>, 3> kOptions = {{
        {"GDAL_PAM_ENABLED", "NO"},
        {"GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR"},
        {"GDAL_TIFF_INTERNAL_MASK", "YES"},
    }};

    Pyxis::ErrorCapture silent_;
};

}  // namespace kestms
