#include "tool/scene/Words.h"

#include <array>
#include <cstddef>

#include "bands/BandWords.h"
#include "bands/Scheme.h"

namespace kestms {
namespace {

constexpr std::array<std::string_view, 5> kModels = {
    "single channel", "palette", "RGB", "RGB with alpha", "floating-point single channel"};
constexpr std::array<std::string_view, 5> kFormats = {
    "unknown", "unsigned integer", "signed integer", "complex", "floating point"};

template <std::size_t N, typename Index>
std::string_view at(const std::array<std::string_view, N>& words, Index index) {
    const auto position = static_cast<std::size_t>(index);
    return position < N ? words[position] : "unknown";
}

}  // namespace

std::string_view schemeWord(int scheme) {
    const kest::Scheme* row = kest::schemeOf(scheme);
    return row != nullptr ? row->word : scheme == kest::SchemeNone ? "none" : "unknown";
}

std::string_view schemeMeaning(int scheme) {
    const kest::Scheme* row = kest::schemeOf(scheme);
    return row != nullptr ? row->meaning : scheme == kest::SchemeNone ? "no components" : "";
}

std::string_view bandTypeWord(kest::BandType type) {
    return kest::wordOf(kest::kBandTypeWords, type);
}

std::string_view channelWord(kest::BandAssignment assignment) {
    return kest::wordOf(kest::kChannelWords, assignment);
}

std::string_view pixelModelWord(Pyxis::PixelModel model) {
    return at(kModels, model);
}

std::string_view sampleFormatWord(Pyxis::SampleFormat format) {
    return at(kFormats, format);
}

std::string sampleTypeWord(Pyxis::SampleFormat format, int bits) {
    constexpr std::array<std::string_view, 5> kNames = {"", "uint", "int", "complex", "float"};
    const auto position = static_cast<std::size_t>(format);
    return position == 0 || position >= kNames.size()
               ? ""
               : std::string(kNames[position]) + std::to_string(bits);
}

std::string systemName(int epsg, std::string_view wkt) {
    if (epsg > 0) {
        return "EPSG:" + std::to_string(epsg);
    }
    const std::size_t start = wkt.find('"');
    const std::size_t end = start == std::string_view::npos ? start : wkt.find('"', start + 1);
    if (end == std::string_view::npos) {
        return wkt.empty() ? "none" : std::string(wkt.substr(0, 40));
    }
    return std::string(wkt.substr(start + 1, end - start - 1));
}

}  // namespace kestms
