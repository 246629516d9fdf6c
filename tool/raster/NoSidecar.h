#pragma once

#include <cpl_conv.h>

namespace kestms {

/// Keeps GDAL, on this thread, from describing a file that it writes in another one beside it.
class NoSidecar {
  public:
    NoSidecar() { CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", "NO"); }
    NoSidecar(const NoSidecar&) = delete;
    NoSidecar& operator=(const NoSidecar&) = delete;
    ~NoSidecar() { CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", nullptr); }
};

}  // namespace kestms
