#pragma once

#include <string>
#include <string_view>

#include "bands/BandTypes.h"
#include "pyxis/ReadImageFile.h"

// The tool's words for the codecs' numbers. JSON output uses the same words, so they are stable.

namespace kestms {

/// A stable word for a kest::NamingScheme ("landsat-7"), and its meaning.
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

/// "uint8", "int16", "float32", "complex64"; empty for an unknown format.
std::string sampleTypeWord(Pyxis::SampleFormat format, int bits);

/// The name of a coordinate system: "EPSG:32632" if it has a code, else the name in its WKT, else
/// "none".
std::string systemName(int epsg, std::string_view wkt);

}  // namespace kestms
