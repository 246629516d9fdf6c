#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

// The file names of components, and what product names hold. All names here are without directory
// and extension.

namespace kest {

/// Name and extension of a component's file.
platform::PathName fileNameOf(const Pyxis::FileSpecifier& file);

/// Component `index` (0 first) of a compound specifier, an empty one when there is none; any other
/// specifier as it is.
Pyxis::FileSpecifier componentAt(const Pyxis::FileSpecifier& spec, int index);

/// The text in the host's default character type, terminator included.
Pyxis::StringBuffer nameBuffer(std::u16string_view text);

/// "po_", digits, "_", a band code, "_", digits; either digit run may be empty.
bool isPoProduct(std::u16string_view name);
/// The upper-cased text between the underscores that enclose the band code; empty without them.
std::u16string poBandCode(std::u16string_view name);
/// Whether the name begins with "po_", in any case.
bool hasPoPrefix(std::u16string_view name);
/// Where the digits after "po_" end, at most the name's length.
std::size_t poOrderNumberEnd(std::u16string_view name);

/// Length of "L7", path and row, "_", and dates, which every file of an "L7" scene begins with.
inline constexpr std::size_t kLandsat7SceneLength = 21;

/// "L7", 7 digits, "_", 11 digits, "_", a band code.
bool isLandsat7(std::u16string_view name);
/// The upper-cased text after the scene's name and "_"; empty when the name is too short.
std::u16string landsat7BandCode(std::u16string_view name);

}  // namespace kest
