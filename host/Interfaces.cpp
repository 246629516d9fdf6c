#include "pyxis/ComponentCodecs.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/FormatCodecApiVersionInterface.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/Geometry.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/ReadImageFile.h"

// The destructors anchor each interface's type information in this library, so that checked casts
// agree across modules.

namespace Pyxis {

Vector2d::~Vector2d() = default;
FindFileInterface::~FindFileInterface() = default;
FormatCodecApiVersionInterface::~FormatCodecApiVersionInterface() = default;
ReadImageFileFrameInterface::~ReadImageFileFrameInterface() = default;
ReadImageFileInterface::~ReadImageFileInterface() = default;
ImageFormatCodec::~ImageFormatCodec() = default;

void FormatCodecGeoCorrelation::reserved11() {}
void FormatCodecGeoCorrelation::reserved13() {}
void FormatCodecGeoCorrelation::reserved15() {}
void FormatCodecGeoCorrelation::reserved17() {}
void FormatCodecGeoCorrelation::reserved18() {}
void FormatCodecGeoCorrelation::reserved19() {}
void FormatCodecGeoCorrelation::reserved20() {}
void FormatCodecGeoCorrelation::reserved22() {}
void FormatCodecGeoCorrelation::reserved23() {}
void FormatCodecGeoCorrelation::reserved24() {}
void FormatCodecGeoCorrelation::reserved27() {}
void FormatCodecGeoCorrelation::reserved28() {}
void FormatCodecGeoCorrelation::reserved29() {}
void FormatCodecGeoCorrelation::reserved30() {}
void FormatCodecGeoCorrelation::reserved32() {}
void FormatCodecGeoCorrelation::reserved33() {}
void FormatCodecGeoCorrelation::reserved34() {}
void FormatCodecGeoCorrelation::reserved35() {}
void FormatCodecGeoCorrelation::reserved36() {}
void FormatCodecGeoCorrelation::reserved37() {}
void FormatCodecGeoCorrelation::reserved38() {}
void FormatCodecGeoCorrelation::reserved39() {}
void FormatCodecGeoCorrelation::reserved40() {}
void FormatCodecGeoCorrelation::reserved41() {}

}  // namespace Pyxis

GeoTiffCorrelation::~GeoTiffCorrelation() = default;
TiffFormatCodec::~TiffFormatCodec() = default;
QBTiffFormatCodec::~QBTiffFormatCodec() = default;
NITFFormatCodec::~NITFFormatCodec() = default;
FASTFormatCodec::~FASTFormatCodec() = default;

FASTBandFilenameProperty::FASTBandFilenameProperty(const Pyxis::StringBuffer& fileName)
    : FormatCodecStringProperty(fileName, 0) {}
FASTBandFilenameProperty::FASTBandFilenameProperty(const FASTBandFilenameProperty& other) = default;
FASTBandFilenameProperty::~FASTBandFilenameProperty() = default;
