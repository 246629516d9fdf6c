#include "host/formats/FastHeader.h"

#include <algorithm>

namespace Pyxis {
namespace {

constexpr std::string_view kFileName = "FILENAME";
constexpr std::size_t kFileNameWidth = 29;
constexpr std::size_t kMaxBands = 7;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

std::vector<std::string> fastBandFileNames(std::string_view header) {
    header = header.substr(0, header.find('\0'));
    std::vector<std::string> names;
    for (std::size_t at = header.find(kFileName);
         at != std::string_view::npos && names.size() < kMaxBands; at = header.find(kFileName)) {
        header.remove_prefix(at + kFileName.size());
        header.remove_prefix(std::min(header.find_first_not_of(' '), header.size()));
        header.remove_prefix(std::min(header.find_first_not_of('='), header.size()));
        names.emplace_back(trimmed(header.substr(0, kFileNameWidth)));
    }
    return names;
}

bool isPlainFileName(std::string_view name) {
    return name.find_first_of("/\\") == std::string_view::npos && name != "." && name != "..";
}

bool looksLikeFastHeader(std::string_view head) {
    constexpr std::string_view kDate = "ACQUISITION DATE =";
    return head.size() >= 1024 &&
           (head.substr(52, kDate.size()) == kDate || head.substr(36, kDate.size()) == kDate);
}

}  // namespace Pyxis
