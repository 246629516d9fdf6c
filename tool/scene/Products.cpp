#include "tool/scene/Products.h"

#include "host/Text.h"
#include "sets/ComponentList.h"
#include "tool/scene/Resources.h"
#include "tool/terminal/Failure.h"

namespace kestms {

void useProducts(KestMultispectralCodec& codec, const ProductChoice& choice) {
    kest::ComponentListBuilder documents;
    for (const std::string& file : choice.files) {
        documents.append(Pyxis::fileSpecifier(file), 0);
    }
    if (const std::string shipped = choice.shipped ? catalogueFile() : std::string();
        !shipped.empty()) {
        documents.append(Pyxis::fileSpecifier(shipped), 0);
    }
    Pyxis::StringBuffer reason;
    if (!codec.setProductCatalogue(documents.specifier(), &reason)) {
        throw Failure(ExitCode::CannotRead, Pyxis::toUtf8(reason));
    }
}

}  // namespace kestms
