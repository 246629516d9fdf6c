#include "tool/raster/BandSelection.h"

#include <fnmatch.h>

#include <algorithm>
#include <array>
#include <utility>

#include "bands/BandWords.h"
#include "tool/raster/DisplayChannels.h"
#include "tool/scene/PathParts.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

bool matches(const std::string& text, const std::string& pattern) {
    return !text.empty() && fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD) == 0;
}

/// Escapes "*", "?" and "[".
std::string literally(const std::string& word) {
    std::string pattern;
    for (const char c : word) {
        if (std::string_view("*?[\\").find(c) != std::string_view::npos) {
            pattern += '\\';
        }
        pattern += c;
    }
    return pattern;
}

std::string trimmed(const std::string& text) {
    const std::size_t start = text.find_first_not_of(' ');
    return start == text.npos ? "" : text.substr(start, text.find_last_not_of(' ') + 1 - start);
}

/// The number in a product's code for a band, with what follows it: "4" for "B4", "SR_B04", "4" or
/// "band 4", "8A" for "B8A". Empty for other texts.
std::string numberInCode(const std::string& code) {
    const std::size_t digit = code.find_first_of("0123456789");
    const std::string before = code.substr(0, digit);
    constexpr std::array kBefore = {"B", "Band", "Band ", "SR_B", "ST_B"};
    if (digit == code.npos ||
        (!before.empty() && std::none_of(kBefore.begin(), kBefore.end(), [&](const char* each) {
            return matches(before, each);
        }))) {
        return {};
    }
    return code.substr(std::min(code.find_first_not_of('0', digit), code.size() - 1));
}

/// The code that ends a band's name, "B4" of "Red (B4)", or is the name.
std::string codeIn(const std::string& name) {
    const std::size_t start = name.rfind('(');
    if (start == name.npos || !name.ends_with(')')) {
        return numberInCode(name).empty() ? "" : name;
    }
    return name.substr(start + 1, name.size() - start - 2);
}

/// People know bands by the numbers of the product.
bool hasCode(const Band& band, const std::string& word) {
    const std::string number = numberInCode(codeIn(band.name));
    return matches(number, literally(numberInCode(word)));
}

/// "6" for the bands 6L and 6H.
bool hasCodeBeforeLetter(const Band& band, const std::string& word) {
    const std::string number = numberInCode(codeIn(band.name));
    return matches(number.substr(0, number.find_first_not_of("0123456789")),
                   literally(numberInCode(word)));
}

/// What a code with "*" and "?" finds: "B?" the bands 1 to 9.
bool hasCodeLike(const Band& band, const std::string& pattern) {
    const std::string code = codeIn(band.name);
    const std::string number = numberInCode(code);
    return matches(code, pattern) || (!number.empty() && matches("B" + number, pattern));
}

/// "B61" or "SR_B?" for what ends the file's name after an underscore.
bool endsFileName(const Band& band, const std::string& pattern) {
    const std::string name = "_" + std::string(stemOf(band.componentPath));
    return !pattern.empty() && matches(name, "*_" + pattern);
}

/// "61" for a file that ends with "_B61".
bool endsFileNameWithNumber(const Band& band, const std::string& word) {
    const std::string name = "_" + std::string(stemOf(band.componentPath));
    return matches(numberInCode(name.substr(name.rfind('_') + 1)), literally(numberInCode(word)));
}

/// "red" for a band of an unknown product whose file says that it is shown in red.
bool hasColour(const Band& band, const std::string& word) {
    return band.commonName.empty() && band.assignment != kest::BandAssignment::NotAssigned &&
           matches(std::string(kest::wordOf(kest::kChannelWords, band.assignment)),
                   literally(word));
}

using Matcher = bool (*)(const Band& band, const std::string& word);

/// From the strictest to the loosest; the first that finds bands decides.
constexpr Matcher kMatchers[] = {
    [](const Band& band, const std::string& word) { return matches(band.name, literally(word)); },
    [](const Band& band, const std::string& word) {
        return matches(band.commonName, literally(word));
    },
    [](const Band& band, const std::string& word) {
        // "nir" for "nir08", if no band has exactly that name.
        const std::size_t end = band.commonName.find_first_of("0123456789");
        return matches(band.commonName.substr(0, end), literally(word));
    },
    hasColour,
    hasCode,
    hasCodeBeforeLetter,
    [](const Band& band, const std::string& word) {
        return codeIn(band.name).empty() && word == std::to_string(band.number);
    },
    [](const Band& band, const std::string& word) {
        return word == "#" + std::to_string(band.frame);
    },
    [](const Band& band, const std::string& word) { return endsFileName(band, literally(word)); },
    endsFileNameWithNumber,
    [](const Band& band, const std::string& word) {
        return hasCodeLike(band, word) || endsFileName(band, word) || matches(band.name, word) ||
               matches(band.commonName, word) ||
               matches(std::string(nameOf(band.componentPath)), word);
    },
};

/// Positions in `bands`; none if no band matches.
std::vector<std::size_t> find(const std::vector<Band>& bands, const std::string& word) {
    std::vector<std::size_t> found;
    for (const Matcher matcher : kMatchers) {
        for (std::size_t i = 0; i < bands.size(); ++i) {
            if (matcher(bands[i], word)) {
                found.push_back(i);
            }
        }
        if (!found.empty()) {
            break;
        }
    }
    return found;
}

std::vector<std::size_t> findOrFail(const std::vector<Band>& bands, const std::string& word) {
    std::vector<std::size_t> found = find(bands, word);
    if (found.empty()) {
        std::string names;
        for (const Band& band : bands) {
            names += (names.empty() ? "" : ", ") + band.name;
            names += band.commonName.empty() ? "" : " = " + band.commonName;
        }
        throw Failure(ExitCode::Usage, word, "no band is called that; there are " + names);
    }
    return found;
}

}  // namespace

std::vector<std::string> wordsOf(const std::vector<Band>& bands,
                                 const std::vector<std::string>& lists) {
    std::vector<std::string> words;
    for (const std::string& list : lists) {
        if (!find(bands, list).empty()) {
            words.push_back(list);
            continue;
        }
        std::size_t start = 0;
        for (std::size_t comma = 0; comma != std::string::npos; start = comma + 1) {
            comma = list.find(',', start);
            words.push_back(trimmed(list.substr(start, comma - start)));
        }
    }
    return words;
}

SelectedBands selectBands(std::vector<Band> bands, const std::vector<std::string>& words) {
    if (words.empty()) {
        return {std::move(bands), {}};
    }
    assignDisplayChannels(bands);
    SelectedBands selected;
    std::vector<bool> isThere(bands.size());
    for (const std::string& word : wordsOf(bands, words)) {
        const std::size_t before = selected.bands.size();
        for (const std::size_t index : findOrFail(bands, word)) {
            if (!isThere[index]) {
                isThere[index] = true;
                selected.bands.push_back(bands[index]);
            }
        }
        if (selected.bands.size() == before && word.find_first_of("*?[") == word.npos) {
            selected.repeated.push_back(word);
        }
    }
    return selected;
}

void renameBands(std::vector<Band>& bands, const std::vector<std::string>& names) {
    // All words refer to the set's names.
    const std::vector<Band> before = bands;
    for (const std::string& name : names) {
        const std::size_t mark = name.find('=');
        if (mark == std::string::npos) {
            throw Failure(ExitCode::Usage, "--name " + name, "wants BAND=TEXT");
        }
        for (const std::size_t index : findOrFail(before, name.substr(0, mark))) {
            bands[index].name = name.substr(mark + 1);
        }
    }
}

}  // namespace kestms
