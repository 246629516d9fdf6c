#include "tool/scene/BandLabels.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

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

}  // namespace

std::vector<std::string> distinguishingParts(const std::vector<std::string>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const std::string& path : paths) {
        names.push_back(std::filesystem::path(path).stem().string());
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

}  // namespace kestms
