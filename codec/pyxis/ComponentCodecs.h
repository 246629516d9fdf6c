#pragma once

#include "pyxis/Export.h"
#include "pyxis/FormatCodecProperty.h"
#include "pyxis/ImageFormatCodec.h"

// The component codecs of the host, which other codecs recognise by a checked cast. Each adds one
// operation: the name of a property that it publishes, by number.

/// Reads TIFF and GeoTIFF files. Property 9 is the image description.
class PYXIS_API TiffFormatCodec : public Pyxis::ImageFormatCodec {
  public:
    ~TiffFormatCodec() override;
    /// The name of property `number`; `name` becomes empty for an unknown number.
    virtual void getPropertyName(int number, Pyxis::StringBuffer& name) const = 0;  // slot 21
};

/// Reads QuickBird TIFF files, whose image description holds a band list. Property 9 is the image
/// description.
class PYXIS_API QBTiffFormatCodec : public Pyxis::ImageFormatCodec {
  public:
    ~QBTiffFormatCodec() override;
    virtual void getPropertyName(int number, Pyxis::StringBuffer& name) const = 0;  // slot 21
};

/// Reads NITF files. Property 10 is the band's representation letter.
class PYXIS_API NITFFormatCodec : public Pyxis::ImageFormatCodec {
  public:
    ~NITFFormatCodec() override;
    virtual void getPropertyName(int number, Pyxis::StringBuffer& name) const = 0;  // slot 21
};

/// Reads FAST headers (".FST") and the band files that they name.
class PYXIS_API FASTFormatCodec : public Pyxis::ImageFormatCodec {
  public:
    ~FASTFormatCodec() override;
};

/// The name of the band file behind a frame of a FAST image.
class PYXIS_API FASTBandFilenameProperty : public Pyxis::FormatCodecStringProperty {
  public:
    ~FASTBandFilenameProperty() override;

  protected:
    explicit FASTBandFilenameProperty(const Pyxis::StringBuffer& fileName);
    FASTBandFilenameProperty(const FASTBandFilenameProperty& other);
};
