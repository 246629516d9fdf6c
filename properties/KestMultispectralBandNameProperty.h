#pragma once

#include "codec/strings/KestExport.h"
#include "properties/KestMultispectralProperty.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FormatCodecProperty.h"

/// A band's name, its place in its bucket, and the file and frame that hold it. On allocation
/// failure outputs are unchanged.
class KEST_API KestMultispectralBandNameProperty : public Pyxis::FormatCodecPropertyInterface,
                                                   public KestMultispectralProperty {
  public:
    KestMultispectralBandNameProperty(int bandIndex, const Pyxis::FileSpecifier& file, int frame,
                                      const Pyxis::StringBuffer& bandName);
    ~KestMultispectralBandNameProperty() override;
    Pyxis::FormatCodecPropertyInterface* clone() const override;

    /// The band's index in its bucket, 0 for the first.
    int getBandIndex() const;
    /// The frame of the component file that holds the band, 0 for the first.
    int getFrame() const;
    /// The component file that holds the band.
    void getFile(Pyxis::FileSpecifier& out) const;
    /// The name to show.
    void getBandName(Pyxis::StringBuffer& out) const;

  private:
    KestMultispectralBandNameProperty(const KestMultispectralBandNameProperty& other);

    int bandIndex_;
    int frame_;
    Pyxis::FileSpecifier file_;
    Pyxis::StringBuffer bandName_;
};
