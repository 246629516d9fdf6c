#pragma once

#include <optional>
#include <string>

#include "pyxis/FileSpecifier.h"
#include "pyxis/ImageFormatCodec.h"

// What a component's own codec tells of its band, asked through the host.

namespace kest {

/// The codec by which the host reads the file, the host's own; null when it has none. Exceptions
/// of the host pass.
const Pyxis::ImageFormatCodec* findCodec(const Pyxis::FileSpecifier& file);

/// The image description of a file that a TIFF codec reads, when it begins with a QuickBird band
/// list's header; nothing otherwise, and when the host throws.
std::optional<std::string> readBandListText(const Pyxis::FileSpecifier& file,
                                            const Pyxis::ImageFormatCodec* codec);

/// The band's representation in a NITF file. Nothing when no NITF codec reads the file or the
/// frame tells none; an empty text when the host throws.
std::optional<std::u16string> readNitfBandLetter(const Pyxis::FileSpecifier& file, int frame);

}  // namespace kest
