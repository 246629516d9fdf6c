#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tool/scene/Band.h"

// Which bands a person means.

namespace kestms {

/// The bands that words name, in the order given and each once. A word is
///  - a band's name or common name ("Red", "nir"), in any case;
///  - a band's number, as `kestms info` shows it;
///  - "#N", the band in frame N of the set;
///  - a file's name, with or without directory and extension;
///  - a glob for any of the names ("swir*", "*_B4*").
/// Words without a match of their own are taken apart at commas. Points into `bands`. Throws a
/// Failure with ExitCode::Usage for a word that names no band.
std::vector<const Band*> selectBands(const std::vector<Band>& bands,
                                     const std::vector<std::string>& words);

/// The one band that a word names. Throws a Failure with ExitCode::Usage when it names none, or
/// several.
const Band& selectBand(const std::vector<Band>& bands, const std::string& word);

}  // namespace kestms
