#include <algorithm>
#include <array>

#include "bands/AsciiText.h"
#include "bands/FileName.h"
#include "bands/MetadataTextFile.h"
#include "bands/schemes/Schemes.h"

namespace kest {
namespace {

using enum BandType;
using enum BandAssignment;
using namespace string_id;

constexpr BucketRow kMultispectral{kProductMultispectral, 1};

/// Numbered from blue 1, after panchromatic 0 (compatibility.md, 22).
constexpr std::array kBands{
    ProductBand{u"RED", {kProductRed, Red, RedChannel, 3}, kMultispectral},
    ProductBand{u"GRN", {kProductGreen, Green, GreenChannel, 2}, kMultispectral},
    ProductBand{u"BLU", {kProductBlue, Blue, BlueChannel, 1}, kMultispectral},
    ProductBand{u"NIR", {kProductNearInfrared, NearInfrared, NotAssigned, 4}, kMultispectral},
    ProductBand{u"PAN",
                {kProductPanchromatic, Panchromatic, NotAssigned, 0},
                {kProductPanchromaticBucket, 0}},
};

constexpr std::u16string_view kPrefix = u"po_";

/// The end of the digits from `start` on.
std::size_t digitsEnd(std::u16string_view name, std::size_t start) {
    while (start < name.size() && isDigit(name[start])) {
        ++start;
    }
    return std::min(start, name.size());
}

/// Where the order number after "po_" ends.
std::size_t orderNumberEnd(std::u16string_view name) {
    return digitsEnd(name, kPrefix.size());
}

/// The place of the code between two underscores; both ends are npos without it.
struct CodePlace {
    std::size_t start = std::u16string_view::npos;
    std::size_t end = std::u16string_view::npos;
};

CodePlace findCode(std::u16string_view name) {
    const std::size_t start = orderNumberEnd(name) + 1;
    const bool isOpened = start <= name.size() && name[start - 1] == u'_';
    const std::size_t end = isOpened ? name.find(u'_', start) : name.npos;
    return end == name.npos ? CodePlace() : CodePlace{start, end};
}

/// The upper-cased code; empty when there is none.
std::u16string codeOf(std::u16string_view name) {
    const auto [start, end] = findCode(name);
    return end == name.npos ? std::u16string() : upperCase(name.substr(start, end - start));
}

bool hasPrefix(std::u16string_view name) {
    return equalIgnoringCase(name.substr(0, kPrefix.size()), kPrefix);
}

/// "po_", digits, "_", a band code, "_", digits; either digit run may be empty.
bool isProduct(std::u16string_view name) {
    return hasPrefix(name) && findBand(kBands, codeOf(name)) != nullptr &&
           digitsEnd(name, findCode(name).end + 1) == name.size();
}

bool isNitf(const platform::PathName& name) {
    return equalIgnoringCase(name.extension, u".NTF");
}

std::optional<Identity> identify(const BandFile& band) {
    return identityIn(kBands, codeOf(fileNameOf(band.file).name));
}

std::optional<std::u16string> referenceName(const BandFile& first) {
    const std::u16string name = fileNameOf(first.file).name;
    return upperCase(std::u16string_view(name).substr(0, orderNumberEnd(name)));
}

}  // namespace

constexpr Scheme kPoProductScheme{
    SchemePoProduct,
    "po-product",
    "\"po_\" product names",
    [](const Pyxis::FileSpecifier&, const platform::PathName& name) {
        return isProduct(name.name) && !isNitf(name);
    },
    identify,
    referenceName,
};

constexpr Scheme kPoProductNitfScheme{
    SchemePoProductNitf,
    "po-product-nitf",
    "\"po_\" product names, NITF files",
    [](const Pyxis::FileSpecifier&, const platform::PathName& name) {
        return isProduct(name.name) && isNitf(name);
    },
    identify,
    referenceName,
};

bool isPoProductName(const Pyxis::FileSpecifier& file) {
    return isProduct(fileNameOf(file).name);
}

void getMetadataTextFile(const Pyxis::FileSpecifier& componentList, Pyxis::FileSpecifier& out) {
    std::u16string name = fileNameOf(componentAt(componentList, 0)).name;
    const std::size_t end = orderNumberEnd(name);
    if (!hasPrefix(name) || end == name.size()) {
        return;
    }
    name.resize(end + 1);
    name += u"metadata.txt";
    name.resize(std::min(name.size(), platform::kMaxNamePart));
    out.set(nameBuffer(name), Pyxis::FileSpecifier::Type::PlainFile);
}

}  // namespace kest
