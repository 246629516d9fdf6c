#include "bands/ReferenceName.h"

#include "bands/AsciiText.h"
#include "bands/FileName.h"
#include "bands/NamingScheme.h"

namespace kest {
namespace {

/// Cuts the two digits of the band number off, and the "_" or "_B" before them as long as a
/// character is left before it.
std::u16string_view withoutBandNumber(std::u16string_view name) {
    if (name.size() <= 2) {
        return name;
    }
    std::u16string_view rest = name.substr(0, name.size() - 2);
    if (rest.size() >= 2 && rest.back() == u'_') {
        rest.remove_suffix(1);
    } else if (rest.size() >= 3 && equalIgnoringCase(rest.substr(rest.size() - 2), u"_B")) {
        rest.remove_suffix(2);
    }
    return rest;
}

}  // namespace

void getReferenceName(int scheme, const Pyxis::FileSpecifier& componentList,
                      Pyxis::StringBuffer& out) {
    getReferenceNameOfComponent(scheme, componentAt(componentList, 0), out);
}

void getReferenceNameOfComponent(int scheme, const Pyxis::FileSpecifier& component,
                                 Pyxis::StringBuffer& out) {
    const std::u16string name = fileNameOf(component).name;
    const std::u16string_view view = name;
    switch (scheme) {
        case SchemeGeneric:
        case SchemeQuickBird:
        case SchemeNitf:
            out = nameBuffer(view);
            break;
        case SchemeNumbered:
            out = nameBuffer(withoutBandNumber(view));
            break;
        case SchemePoProduct:
        case SchemePoProductNitf:
            out = nameBuffer(upperCase(view.substr(0, poOrderNumberEnd(view))));
            break;
        case SchemeLandsat7:
        case SchemeLandsat7Fast:
            out = nameBuffer(upperCase(view.substr(0, kLandsat7SceneLength)));
            break;
        default:
            break;
    }
}

}  // namespace kest
