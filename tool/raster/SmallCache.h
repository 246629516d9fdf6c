#pragma once

#include <cpl_conv.h>
#include <gdal_priv.h>

#include <algorithm>

namespace kestms {

/// Keeps GDAL's cache of blocks small for its lifetime, unless the user has set its size. Outputs
/// read each block once.
class SmallCache {
  public:
    SmallCache() {
        if (CPLGetConfigOption("GDAL_CACHEMAX", nullptr) == nullptr) {
            GDALSetCacheMax64(std::min(before_, kMostBytes));
        }
    }
    SmallCache(const SmallCache&) = delete;
    SmallCache& operator=(const SmallCache&) = delete;
    ~SmallCache() { GDALSetCacheMax64(before_); }

  private:
    static constexpr GIntBig kMostBytes = 64 << 20;

    GIntBig before_ = GDALGetCacheMax64();
};

}  // namespace kestms
