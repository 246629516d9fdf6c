#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/formats/Format.h"

namespace Pyxis {

/// All component formats, in the order in which their codecs are asked.
const std::vector<const Format*>& formats();

/// The format of a file that begins with these bytes and has this absolute path; null when none
/// recognises it. Skips formats that are subsets of another one.
const Format* formatOf(std::string_view head, const std::string& path);

const Format& quickBirdFormat();
const Format& tiffFormat();
const Format& nitfFormat();
const Format& fastFormat();
const Format& jpeg2000Format();
const Format& erdasFormat();
const Format& pngFormat();
const Format& jpegFormat();
const Format& enviFormat();
const Format& virtualRasterFormat();

}  // namespace Pyxis
