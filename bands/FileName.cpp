#include "bands/FileName.h"

#include <algorithm>
#include <array>

#include "bands/AsciiText.h"
#include "bands/BandTables.h"
#include "codec/strings/BufferText.h"
#include "sets/ComponentList.h"

namespace kest {
namespace {

constexpr std::u16string_view kPoPrefix = u"po_";
/// Header and metadata files of a scene, which hold no band of their own.
constexpr std::array<std::u16string_view, 4> kLandsat7SideFiles{u"HPN", u"HRF", u"HTM", u"MTL"};

bool isLandsat7Code(std::u16string_view code) {
    return findBand(tables::kLandsat7Bands, code) != nullptr ||
           std::find(kLandsat7SideFiles.begin(), kLandsat7SideFiles.end(), code) !=
               kLandsat7SideFiles.end();
}

std::size_t digitsEnd(std::u16string_view name, std::size_t start) {
    start = std::min(start, name.size());
    while (start < name.size() && isDigit(name[start])) {
        ++start;
    }
    return start;
}

/// The two underscores that enclose the band code of a "po_" name.
struct PoBandCodePlace {
    std::size_t before = std::u16string_view::npos;
    std::size_t after = std::u16string_view::npos;
};

PoBandCodePlace findPoBandCode(std::u16string_view name) {
    PoBandCodePlace place;
    const std::size_t end = poOrderNumberEnd(name);
    if (end < name.size() && name[end] == u'_') {
        place.before = end;
        place.after = name.find(u'_', end + 1);
    }
    return place;
}

}  // namespace

platform::PathName fileNameOf(const Pyxis::FileSpecifier& file) {
    return platform::splitPathName(wideText(file.string()));
}

Pyxis::FileSpecifier componentAt(const Pyxis::FileSpecifier& spec, int index) {
    if (spec.type() != Pyxis::FileSpecifier::Type::Compound) {
        return spec;
    }
    Pyxis::FileSpecifier component;
    int frame = 0;
    getComponent(spec, index, component, frame);
    return component;
}

Pyxis::StringBuffer nameBuffer(std::u16string_view text) {
    Pyxis::StringBuffer buffer;
    Pyxis::StringBuffer::convertString(wideBuffer(text), buffer,
                                       Pyxis::StringBuffer::defaultCharacterType());
    return buffer;
}

bool isPoProduct(std::u16string_view name) {
    return hasPoPrefix(name) && findBand(tables::kPoBands, poBandCode(name)) != nullptr &&
           digitsEnd(name, findPoBandCode(name).after + 1) == name.size();
}

std::u16string poBandCode(std::u16string_view name) {
    const PoBandCodePlace place = findPoBandCode(name);
    if (place.after == std::u16string_view::npos) {
        return {};
    }
    return upperCase(name.substr(place.before + 1, place.after - place.before - 1));
}

bool hasPoPrefix(std::u16string_view name) {
    return equalIgnoringCase(name.substr(0, kPoPrefix.size()), kPoPrefix);
}

std::size_t poOrderNumberEnd(std::u16string_view name) {
    return digitsEnd(name, kPoPrefix.size());
}

bool isLandsat7(std::u16string_view name) {
    constexpr std::u16string_view kForm = u"L7#######_###########_";
    if (name.size() < kForm.size()) {
        return false;
    }
    const bool formed =
        std::equal(kForm.begin(), kForm.end(), name.begin(), [](char16_t form, char16_t actual) {
            return form == u'#' ? isDigit(actual) : form == toUpper(actual);
        });
    return formed && isLandsat7Code(landsat7BandCode(name));
}

std::u16string landsat7BandCode(std::u16string_view name) {
    return upperCase(name.substr(std::min(kLandsat7SceneLength + 1, name.size())));
}

}  // namespace kest
