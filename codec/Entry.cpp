// What a host asks a newly loaded module first.

#include "codec/KestMultispectralFormatCodecApiVersion.h"

namespace {

/// Lives from loading to unloading.
KestMultispectralFormatCodecApiVersion apiVersion;

}  // namespace

Pyxis::FormatCodecApiVersionInterface* KestMultispectralCodecApiVersion() {
    return &apiVersion;
}
