#pragma once

#include "codec/strings/KestExport.h"
#include "pyxis/FormatCodecApiVersionInterface.h"

/// The version of the host interfaces that this module was built for.
class KestMultispectralFormatCodecApiVersion : public Pyxis::FormatCodecApiVersionInterface {
  public:
    ~KestMultispectralFormatCodecApiVersion() override;
    int majorVersion() const override;
    int minorVersion() const override;
};

/// The one version object, owned by the module.
extern "C" KEST_API Pyxis::FormatCodecApiVersionInterface* KestMultispectralCodecApiVersion();
