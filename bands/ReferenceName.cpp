#include "bands/ReferenceName.h"

#include "bands/FileName.h"
#include "bands/Scheme.h"

namespace kest {

void getReferenceName(int scheme, const Pyxis::FileSpecifier& componentList,
                      Pyxis::StringBuffer& out) {
    getReferenceNameOfComponent({scheme, nullptr}, componentAt(componentList, 0), out);
}

void getReferenceNameOfComponent(const SetNaming& naming, const Pyxis::FileSpecifier& component,
                                 Pyxis::StringBuffer& out) {
    const Scheme* row = schemeOf(naming.scheme);
    const auto name =
        row == nullptr ? std::nullopt : row->referenceName({component, 0, 1, naming.product.get()});
    if (name) {
        out = nameBuffer(*name);
    }
}

}  // namespace kest
