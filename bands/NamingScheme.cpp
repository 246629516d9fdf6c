#include "bands/NamingScheme.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "bands/AsciiText.h"
#include "bands/FileName.h"
#include "bands/Scheme.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "codec/strings/BufferText.h"

namespace kest {
namespace {

int trailingBandNumber(std::u16string_view name) {
    if (name.size() < 2) {
        return -1;
    }
    const char16_t tens = name[name.size() - 2];
    const char16_t ones = name.back();
    return isDigit(tens) && isDigit(ones) ? (tens - u'0') * 10 + (ones - u'0') : -1;
}

int kindOf(const Pyxis::FileSpecifier& file, const platform::PathName& name) {
    for (const Scheme* scheme : schemes()) {
        if (scheme->matches != nullptr && scheme->matches(file, name)) {
            return scheme->number;
        }
    }
    return SchemeGeneric;
}

/// A missing number counts as a number: two names without one are not distinct.
bool haveDistinctNumbers(const std::vector<ComponentKind>& kinds) {
    std::array<bool, 101> seen{};
    return std::all_of(kinds.begin(), kinds.end(), [&seen](const ComponentKind& kind) {
        const int place = kind.trailingBandNumber + 1;
        return !std::exchange(seen.at(static_cast<std::size_t>(place)), true);
    });
}

}  // namespace

std::vector<ComponentKind> classifyComponents(const ComponentList& components) {
    std::vector<ComponentKind> kinds(static_cast<std::size_t>(components.count()));
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const Pyxis::FileSpecifier file = components.at(static_cast<int>(i)).file;
        const platform::PathName path = fileNameOf(file);
        kinds[i] = {kindOf(file, path), trailingBandNumber(path.name)};
    }
    return kinds;
}

int namingSchemeOf(const std::vector<ComponentKind>& kinds) {
    if (kinds.empty()) {
        return SchemeNone;
    }
    const int first = kinds.front().kind;
    const bool agreed = std::all_of(kinds.begin(), kinds.end(), [first](const ComponentKind& kind) {
        return kind.kind == first;
    });
    if (agreed && first != SchemeGeneric) {
        return first;
    }
    return haveDistinctNumbers(kinds) ? SchemeNumbered : SchemeGeneric;
}

SetNaming nameSet(const ComponentList& components, const Pyxis::ImageFormatCodec* codec,
                  Pyxis::FindFileInterface* finder) {
    const int scheme = namingSchemeOf(classifyComponents(components));
    const auto catalogue = currentCatalogue();
    if (catalogue == nullptr || (scheme != SchemeGeneric && scheme != SchemeNumbered)) {
        return {scheme, nullptr};
    }
    std::vector<std::u16string> paths;
    paths.reserve(static_cast<std::size_t>(components.count()));
    for (int i = 0; i < components.count(); ++i) {
        paths.push_back(wideText(components.at(i).file.string()));
    }
    auto product = catalogue->productOf(paths, codec, finder);
    return {product ? int{SchemeCatalogue} : scheme, std::move(product)};
}

int getNamingScheme(const Pyxis::FileSpecifier& componentList) {
    return nameSet(ComponentList(componentList), nullptr, nullptr).scheme;
}

}  // namespace kest
