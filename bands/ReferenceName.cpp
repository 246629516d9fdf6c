#include "bands/ReferenceName.h"

#include "bands/FileName.h"
#include "bands/Scheme.h"

namespace kest {

void getReferenceName(int scheme, const Pyxis::FileSpecifier& componentList,
                      Pyxis::StringBuffer& out) {
    getReferenceNameOfComponent(scheme, componentAt(componentList, 0), out);
}

void getReferenceNameOfComponent(int scheme, const Pyxis::FileSpecifier& component,
                                 Pyxis::StringBuffer& out) {
    if (const Scheme* row = schemeOf(scheme)) {
        out = nameBuffer(row->referenceName(fileNameOf(component).name));
    }
}

}  // namespace kest
