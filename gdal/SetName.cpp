#include "gdal/SetName.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "host/Text.h"
#include "tool/scene/MetadataFile.h"

namespace fs = std::filesystem;

namespace kestgdal {
namespace {

constexpr std::string_view kPrefix = "KESTMS:";

bool startsWithPrefix(std::string_view text) {
    return text.size() > kPrefix.size() &&
           Pyxis::equalIgnoringCase(text.substr(0, kPrefix.size()), kPrefix);
}

/// Some programs, such as rasterio, drop the quotes in names.
SetName unquoted(std::string_view text) {
    std::error_code error;
    const std::size_t colon = text.rfind(':');
    const bool mayBeSize = colon != std::string_view::npos && colon + 1 < text.size() &&
                           std::isdigit(static_cast<unsigned char>(text[colon + 1])) &&
                           text.find('/', colon) == std::string_view::npos;
    if (!mayBeSize || fs::exists(fs::path(text), error)) {
        return {std::string(text), {}};
    }
    return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

/// The text from the first element on, after declaration, comments and document type.
std::string_view fromRootElement(std::string_view text) {
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        std::string_view end = ">";
        std::size_t from = 0;
        if (text.starts_with("<?")) {
            end = "?>";
        } else if (text.starts_with("<!--")) {
            end = "-->";
        } else if (text.starts_with("<!")) {
            const bool hasSubset = text.find('[') < text.find('>');
            from = hasSubset ? text.find(']') : 0;
        } else {
            return text;
        }
        const std::size_t at = text.find(end, from);
        text.remove_prefix(at == std::string_view::npos ? text.size() : at + end.size());
    }
}

}  // namespace

std::optional<SetName> parseSetName(std::string_view text) {
    if (!startsWithPrefix(text)) {
        return std::nullopt;
    }
    text.remove_prefix(kPrefix.size());
    if (text.front() != '"') {
        return unquoted(text);
    }
    const std::size_t end = text.rfind('"');
    const std::string_view rest = text.substr(end + 1);
    if (end < 2 || (!rest.empty() && rest.front() != ':')) {
        return std::nullopt;
    }
    return SetName{std::string(text.substr(1, end - 1)),
                   std::string(rest.empty() ? rest : rest.substr(1))};
}

std::string partName(const std::string& path, const std::string& grid) {
    return std::string(kPrefix) + '"' + path + "\":" + grid;
}

bool looksLikeComponentList(std::string_view head) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    constexpr std::string_view kRoot = "<storage";
    if (head.starts_with(kByteOrderMark)) {
        head.remove_prefix(kByteOrderMark.size());
    }
    const std::string_view root = fromRootElement(head);
    // Not "<storageArea".
    return root.starts_with(kRoot) &&
           root.find_first_of(" \t\r\n/>", kRoot.size()) == kRoot.size() &&
           root.find("<image") != std::string_view::npos;
}

std::string argumentFor(const std::string& path) {
    std::error_code error;
    // Metadata stand for their scene.
    const bool isList = fs::path(path).extension() == ".txt" && !kestms::isLandsatMetadata(path);
    return isList && fs::exists(path, error) ? "@" + path : path;
}

}  // namespace kestgdal
