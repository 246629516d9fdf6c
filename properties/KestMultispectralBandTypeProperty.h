#pragma once

#include "bands/BandTypes.h"
#include "codec/strings/KestExport.h"
#include "properties/KestMultispectralProperty.h"
#include "pyxis/FormatCodecProperty.h"

/// What a band shows, and the display channel that it feeds.
class KEST_API KestMultispectralBandTypeProperty : public Pyxis::FormatCodecPropertyInterface,
                                                   public KestMultispectralProperty {
  public:
    using BandType = kest::BandType;
    using BandAssignment = kest::BandAssignment;

    KestMultispectralBandTypeProperty(BandType type, BandAssignment assignment);
    ~KestMultispectralBandTypeProperty() override;
    Pyxis::FormatCodecPropertyInterface* clone() const override;

    /// What the band shows.
    BandType bandType() const;
    /// The display channel that the band feeds.
    BandAssignment bandAssignment() const;

  private:
    KestMultispectralBandTypeProperty(const KestMultispectralBandTypeProperty& other);

    BandType bandType_;
    BandAssignment bandAssignment_;
};
