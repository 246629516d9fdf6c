#include "host/file/WorldFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "host/Text.h"
#include "host/file/FileHead.h"

namespace Pyxis {
namespace {

/// Whatever the locale: in Turkish, the capital of "i" is another letter.
std::string capitals(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    return text;
}

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    text.remove_prefix(line.size());
    const bool isPair = text.starts_with("\r\n");
    text.remove_prefix(std::min<std::size_t>(isPair ? 2 : 1, text.size()));
    return line;
}

/// The number at the start of a line. Some writers use a decimal comma.
std::optional<double> numberIn(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (line.starts_with('+')) {
        line.remove_prefix(1);
    }
    std::string digits(line.substr(0, line.find_first_of(" \t")));
    std::replace(digits.begin(), digits.end(), ',', '.');
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    return error == std::errc() && stop == end && std::isfinite(number) ? std::optional(number)
                                                                        : std::nullopt;
}

}  // namespace

std::vector<std::string> worldFilesOf(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) {
        return {};
    }
    const std::string extension = lowerCase(path.substr(dot + 1));
    std::vector<std::string> extensions;
    if (extension.size() > 2) {
        extensions = {std::string{extension.front(), extension.back(), 'w'}, extension + "w"};
    }
    extensions.emplace_back("wld");
    std::vector<std::string> names;
    for (const std::string& each : extensions) {
        names.push_back(path.substr(0, dot + 1) + each);
        names.push_back(path.substr(0, dot + 1) + capitals(each));
        names.push_back(path.substr(0, dot + 1) + capitals(each.substr(0, 1)) + each.substr(1));
    }
    return names;
}

std::optional<GeoTransform> worldFileTransform(std::string_view text) {
    // In the order of the lines.
    enum { XColumn, YColumn, XRow, YRow, X, Y };
    std::array<double, 6> line{};
    for (double& number : line) {
        const std::optional<double> read = numberIn(takeLine(text));
        if (!read) {
            return std::nullopt;
        }
        number = *read;
    }
    const bool isFlat =
        (line[XColumn] == 0 && line[XRow] == 0) || (line[YColumn] == 0 && line[YRow] == 0);
    if (isFlat) {
        return std::nullopt;
    }
    return GeoTransform{
        line[X] - 0.5 * line[XColumn] - 0.5 * line[XRow], line[XColumn], line[XRow],
        line[Y] - 0.5 * line[YColumn] - 0.5 * line[YRow], line[YColumn], line[YRow]};
}

std::optional<GeoTransform> readWorldFile(const std::string& rasterPath) {
    for (const std::string& name : worldFilesOf(rasterPath)) {
        const Expected<FileHead> head = readHead(name);
        if (head && head->bytes.size() == head->state.size) {
            if (const auto transform = worldFileTransform(head->bytes)) {
                return transform;
            }
        }
    }
    return std::nullopt;
}

}  // namespace Pyxis
