#include "host/tiff/GdalFields.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMinimum = "MINIMUM";
constexpr std::string_view kMaximum = "MAXIMUM";
/// In the order in which GDAL writes them.
constexpr std::string_view kNames[] = {"APPROXIMATE", kMaximum, "MEAN",
                                       kMinimum,      "STDDEV", "VALID_PERCENT"};

bool take(std::string_view& text, std::string_view start) {
    if (!text.starts_with(start)) {
        return false;
    }
    text.remove_prefix(start.size());
    return true;
}

/// The text up to `end`, which is taken too; empty when there is no such end.
std::string_view takeUntil(std::string_view& text, std::string_view end) {
    const std::size_t size = text.find(end);
    if (size == std::string_view::npos) {
        return {};
    }
    const std::string_view taken = text.substr(0, size);
    text.remove_prefix(size + end.size());
    return taken;
}

}  // namespace

std::optional<double> numberIn(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && text.find_first_not_of("0123456789+-.eE") == text.npos ? std::optional(number)
                                                                             : std::nullopt;
}

std::optional<TiffStatistics> statisticsIn(std::string_view metadata) {
    TiffStatistics found;
    const auto* next = std::begin(kNames);
    if (!take(metadata, "<GDALMetadata>\n")) {
        return std::nullopt;
    }
    while (take(metadata, "  <Item name=\"STATISTICS_")) {
        const std::string_view name = takeUntil(metadata, "\" sample=\"0\">");
        const std::string_view value = takeUntil(metadata, "</Item>\n");
        next = std::find(next, std::end(kNames), name);
        // A terminator would end the text for GDAL.
        if (next == std::end(kNames) || value.find_first_of("<&\0"sv) != value.npos) {
            return std::nullopt;
        }
        ++next;
        if (name == kMinimum || name == kMaximum) {
            const std::optional<double> number = numberIn(value);
            if (!number) {
                return std::nullopt;
            }
            (name == kMinimum ? found.minimum : found.maximum) = number;
        }
    }
    return metadata == "</GDALMetadata>\n\0"sv ? std::optional(found) : std::nullopt;
}

}  // namespace Pyxis
