// Entry point of the module.

#include "codec/KestMultispectralFormatCodecApiVersion.h"

namespace {

/// Lives as long as the module is loaded.
KestMultispectralFormatCodecApiVersion apiVersion;

}  // namespace

Pyxis::FormatCodecApiVersionInterface* KestMultispectralCodecApiVersion() {
    return &apiVersion;
}
