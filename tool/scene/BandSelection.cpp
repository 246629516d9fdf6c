#include "tool/scene/BandSelection.h"

#include <fnmatch.h>
#include <strings.h>

#include <algorithm>
#include <filesystem>

#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// Everything by which a person may call the band, the frame's "#N" included.
std::vector<std::string> namesOf(const Band& band) {
    const std::filesystem::path file(band.componentPath);
    std::vector<std::string> names = {band.name,
                                      band.commonName,
                                      std::to_string(band.number),
                                      "#" + std::to_string(band.frame),
                                      band.componentPath,
                                      file.filename().string(),
                                      file.stem().string()};
    std::erase(names, std::string());
    return names;
}

template <typename Matches>
std::vector<const Band*> bandsWithName(const std::vector<Band>& bands, Matches matches) {
    std::vector<const Band*> found;
    for (const Band& band : bands) {
        const std::vector<std::string> names = namesOf(band);
        if (std::any_of(names.begin(), names.end(), matches)) {
            found.push_back(&band);
        }
    }
    return found;
}

/// A name that is written out goes before a glob: "[1]" may be part of a file's name.
std::vector<const Band*> named(const std::vector<Band>& bands, const std::string& word) {
    auto found = bandsWithName(bands, [&word](const std::string& name) {
        return strcasecmp(name.c_str(), word.c_str()) == 0;
    });
    if (found.empty() && word.find_first_of("*?[") != std::string::npos) {
        found = bandsWithName(bands, [&word](const std::string& name) {
            return fnmatch(word.c_str(), name.c_str(), FNM_CASEFOLD) == 0;
        });
    }
    return found;
}

[[noreturn]] void failUnknown(const std::vector<Band>& bands, const std::string& word) {
    constexpr std::size_t kMostListed = 20;
    std::string names;
    for (std::size_t i = 0; i < std::min(bands.size(), kMostListed); ++i) {
        names += (i == 0 ? "" : ", ") + bands[i].name;
    }
    throw Failure(
        ExitCode::Usage, word,
        "no such band; there are " + names + (bands.size() > kMostListed ? " and others" : ""));
}

std::vector<std::string> splitAtCommas(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        parts.emplace_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

}  // namespace

std::vector<const Band*> selectBands(const std::vector<Band>& bands,
                                     const std::vector<std::string>& words) {
    std::vector<const Band*> selected;
    const auto add = [&](const std::vector<const Band*>& found) {
        for (const Band* band : found) {
            if (std::find(selected.begin(), selected.end(), band) == selected.end()) {
                selected.push_back(band);
            }
        }
    };
    for (const std::string& word : words) {
        if (const auto whole = named(bands, word); !whole.empty()) {
            add(whole);
            continue;
        }
        for (const std::string& part : splitAtCommas(word)) {
            const auto found = named(bands, part);
            if (found.empty()) {
                failUnknown(bands, part);
            }
            add(found);
        }
    }
    return selected;
}

const Band& selectBand(const std::vector<Band>& bands, const std::string& word) {
    const std::vector<const Band*> found = named(bands, word);
    if (found.empty()) {
        failUnknown(bands, word);
    }
    if (found.size() > 1) {
        throw Failure(ExitCode::Usage, word,
                      "names several bands: " + found[0]->name + ", " + found[1]->name +
                          (found.size() > 2 ? " and others" : ""));
    }
    return *found.front();
}

}  // namespace kestms
