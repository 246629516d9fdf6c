#pragma once

#include <string>
#include <vector>

#include "tool/scene/Band.h"

namespace kestms {

/// The words, those apart that are lists with commas between names; a name may hold commas itself.
std::vector<std::string> wordsOf(const std::vector<Band>& bands,
                                 const std::vector<std::string>& lists);

struct SelectedBands {
    std::vector<Band> bands;            ///< in the order of the words and each once
    std::vector<std::string> repeated;  ///< words, no patterns, of bands that came before
};

/// The bands that the words (see `wordsOf`) name. A word is a band's name, its common name ("nir"),
/// the colour of a band that has none, its number, "#" and its frame in the set, or a pattern with
/// "*" and "?" for names and file names; case is ignored. Without words all bands. Throws a Failure
/// with ExitCode::Usage that names a word of no band, and as `assignDisplayChannels` does.
SelectedBands selectBands(std::vector<Band> bands, const std::vector<std::string>& words);

/// Gives bands names of the user's, each as "BAND=TEXT". Throws as `selectBands` does.
void renameBands(std::vector<Band>& bands, const std::vector<std::string>& names);

}  // namespace kestms
