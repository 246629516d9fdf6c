#pragma once

#include <string>
#include <string_view>

#include "bands/BandTypes.h"
#include "pyxis/ReadImageFile.h"

// The tool's words for the numbers that codecs answer with. JSON output uses the same words: they
// are stable.

namespace kestms {

/// Of a kest::NamingScheme: a stable word ("landsat-7") and what it means.
std::string_view schemeWord(int scheme);
std::string_view schemeMeaning(int scheme);

/// "near-infrared"; "unknown" for a band that no rule knows.
std::string_view bandTypeWord(kest::BandType type);

/// "red", "green", "blue", or "none".
std::string_view channelWord(kest::BandAssignment assignment);

/// "single channel", "palette", "RGB", "RGB with alpha".
std::string_view pixelModelWord(Pyxis::PixelModel model);

/// "unsigned integer", "signed integer", "complex", "floating point".
std::string_view sampleFormatWord(Pyxis::SampleFormat format);

/// "uint8", "int16", "float32", "complex64"; empty for a format that is not known.
std::string sampleTypeWord(Pyxis::SampleFormat format, int bits);

/// The name of a coordinate system: "EPSG:32632" by its code, else the name in its WKT, else
/// "none".
std::string systemName(int epsg, std::string_view wkt);

}  // namespace kestms
