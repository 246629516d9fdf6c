#include "tool/scene/BandLabels.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "host/Text.h"
#include "tool/scene/PathParts.h"

namespace kestms {
namespace {

constexpr std::string_view kSeparators = "_-. ";

bool isSeparator(char c) {
    return kSeparators.find(c) != kSeparators.npos;
}

/// The length of the beginning that all names share, up to the end of a separator.
std::size_t commonStart(const std::vector<std::string>& names) {
    std::size_t length = names.front().size();
    for (const std::string& name : names) {
        const auto end = std::mismatch(name.begin(), name.end(), names.front().begin(),
                                       names.front().begin() + static_cast<std::ptrdiff_t>(length));
        length = static_cast<std::size_t>(end.first - name.begin());
    }
    while (length > 0 && !isSeparator(names.front()[length - 1])) {
        --length;
    }
    return length;
}

void dropStart(std::vector<std::string>& names) {
    const std::size_t length = commonStart(names);
    for (std::string& name : names) {
        name.erase(0, length);
    }
}

void reverseAll(std::vector<std::string>& names) {
    for (std::string& name : names) {
        std::reverse(name.begin(), name.end());
    }
}

/// "Layer_1", "Band 2": default names that formats write.
bool isCount(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789";
    const std::size_t word = text.find_first_of(" _0123456789");
    const std::string lower = Pyxis::lowerCase(std::string(text.substr(0, word)));
    const std::size_t number = text.find_first_of(kDigits);
    return (lower == "band" || lower == "layer") && number != text.npos &&
           number <= lower.size() + 1 && text.find_first_not_of(kDigits, number) == text.npos;
}

/// The component's own name for the band; empty without one.
std::string ownLabel(const Band& band) {
    const auto isName = [](const std::string& label) { return !label.empty() && !isCount(label); };
    return isName(band.label)             ? band.label
           : isName(band.sideDescription) ? band.sideDescription
                                          : std::string();
}

}  // namespace

std::vector<std::string> distinguishingParts(const std::vector<std::string>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const std::string& path : paths) {
        names.emplace_back(stemOf(path));
    }
    if (names.empty() || std::all_of(names.begin(), names.end(), [&names](const std::string& name) {
            return name == names.front();
        })) {
        return std::vector<std::string>(names.size());
    }
    dropStart(names);
    reverseAll(names);
    dropStart(names);
    reverseAll(names);
    return names;
}

void labelBands(const std::vector<Band*>& bands, const std::vector<std::string>& paths,
                bool byFileName) {
    if (bands.empty()) {
        return;
    }
    struct File {
        std::string part;
        int bands = 0;
    };
    std::unordered_map<std::string_view, File> files;
    const std::vector<std::string> parts = distinguishingParts(paths);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        File& file = files[paths[i]];
        file.part = parts[i];
        ++file.bands;
    }
    for (Band* band : bands) {
        const File& file = files[band->componentPath];
        const std::string own = ownLabel(*band);
        if (!own.empty()) {
            band->name = own;
        } else if (byFileName && !file.part.empty()) {
            band->name = file.part + (file.bands > 1 ? " #" + std::to_string(band->componentFrame)
                                                     : std::string());
        }
    }
}

}  // namespace kestms
