#include "tool/scene/AuxiliaryFile.h"

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "host/codecs/Places.h"
#include "sets/xml/XmlDocument.h"

namespace kestms {
namespace {

using kest::xml::Document;
using kest::xml::Element;

/// Histograms make them long.
constexpr std::size_t kLargestFile = 16 << 20;

/// GDAL compares each item with all others of its domain, and each domain with all others.
constexpr std::size_t kMostItems = 4096;
constexpr std::size_t kMostDomains = 64;

template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\r\n+");
    text.remove_prefix(start == text.npos ? text.size() : start);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// The number whose bytes are written in hexadecimal digits, the least significant one first. GDAL
/// adds them where its decimal digits are not enough.
std::optional<double> numberOfBytes(std::string_view digits) {
    constexpr int kBase = 16;
    std::uint64_t bits = 0;
    if (digits.size() != 2 * sizeof bits) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < sizeof bits; ++i) {
        std::uint8_t byte = 0;
        const char* const start = digits.data() + 2 * i;
        const auto [end, error] = std::from_chars(start, start + 2, byte, kBase);
        if (error != std::errc() || end != start + 2) {
            return std::nullopt;
        }
        bits |= std::uint64_t{byte} << (8 * i);
    }
    return std::bit_cast<double>(bits);
}

std::vector<std::string> categoriesIn(const Element& names) {
    std::vector<std::string> categories;
    for (const Element* each = names.child(); each != nullptr; each = each->ordered()) {
        categories.emplace_back(each->text());
    }
    return categories;
}

void readItems(const Document& document, const Element& metadata, MetadataDomains& domains) {
    const std::string domain(document.attribute(&metadata, "domain").value_or(""));
    if (domains.size() == kMostDomains && !domains.contains(domain)) {
        return;
    }
    MetadataItems& items = domains[domain];
    for (const Element* each = document.child(&metadata, "MDI");
         each != nullptr && items.size() < kMostItems; each = each->next()) {
        if (const auto key = document.attribute(each, "key")) {
            items[std::string(*key)] = each->text();
        }
    }
}

AuxiliaryBand bandIn(const Document& document, const Element& element) {
    AuxiliaryBand band;
    for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
        if (each->name() == "Description") {
            band.description = each->text();
        } else if (each->name() == "UnitType") {
            band.unit = each->text();
        } else if (each->name() == "Scale") {
            band.scale = numberIn<double>(each->text());
        } else if (each->name() == "Offset") {
            band.offset = numberIn<double>(each->text());
        } else if (each->name() == "NoDataValue") {
            const auto bytes = document.attribute(each, "le_hex_equiv");
            band.noData = bytes ? numberOfBytes(*bytes) : std::nullopt;
            if (!band.noData) {
                band.noData = numberIn<double>(each->text());
            }
        } else if (each->name() == "ColorInterp") {
            band.colour = each->text();
        } else if (each->name() == "CategoryNames") {
            band.categories = categoriesIn(*each);
        } else if (each->name() == "Metadata") {
            readItems(document, *each, band.domains);
        }
    }
    return band;
}

}  // namespace

AuxiliaryFile readAuxiliaryFile(const std::string& rasterPath) {
    const auto text = Pyxis::contentOfSideFile(rasterPath + ".aux.xml", kLargestFile);
    if (!text) {
        return {};
    }
    const std::unique_ptr<Document> document = Document::parse(*text);
    AuxiliaryFile content;
    if (document->root()->name() != "PAMDataset") {
        return content;
    }
    for (const Element* each = document->child(document->root(), "Metadata"); each != nullptr;
         each = each->next()) {
        readItems(*document, *each, content.domains);
    }
    for (const Element* each = document->child(document->root(), "PAMRasterBand"); each != nullptr;
         each = each->next()) {
        const std::string_view number = document->attribute(each, "band").value_or("");
        content.bands.emplace(numberIn<int>(number).value_or(0), bandIn(*document, *each));
    }
    return content;
}

}  // namespace kestms
