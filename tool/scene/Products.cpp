#include "tool/scene/Products.h"

#include <new>

#include "bands/catalogue/ProductCatalogue.h"
#include "host/Text.h"
#include "sets/ComponentList.h"
#include "tool/scene/Resources.h"
#include "tool/terminal/Failure.h"

namespace kestms {
namespace {

/// The fault of the first document of the user's that cannot be used beside the shipped catalogue,
/// which is tried last but is not to blame; empty when there is none.
std::string faultBeside(const std::string& shipped, const std::vector<std::string>& files) {
    kest::ProductCatalogue catalogue;
    if (!catalogue.addFiles(Pyxis::fileSpecifier(shipped)).reason.empty()) {
        return {};
    }
    for (const std::string& file : files) {
        std::string reason = catalogue.addFiles(Pyxis::fileSpecifier(file)).reason;
        if (!reason.empty()) {
            return reason + " with the shipped catalogue (--no-products leaves that out)";
        }
    }
    return {};
}

}  // namespace

void useProducts(KestMultispectralCodec& codec, const ProductChoice& choice) {
    kest::ComponentListBuilder documents;
    for (const std::string& file : choice.files) {
        documents.append(Pyxis::fileSpecifier(file), 0);
    }
    const std::string shipped = choice.shipped ? catalogueFile() : std::string();
    if (!shipped.empty()) {
        documents.append(Pyxis::fileSpecifier(shipped), 0);
    }
    Pyxis::StringBuffer reason;
    if (codec.setProductCatalogue(documents.specifier(), &reason)) {
        return;
    }
    const std::string fault = Pyxis::toUtf8(reason);
    if (fault.empty()) {
        throw std::bad_alloc();
    }
    const bool isOfShipped = !shipped.empty() && fault.starts_with(shipped + ": ");
    const std::string own = isOfShipped ? faultBeside(shipped, choice.files) : std::string();
    throw Failure(ExitCode::CannotRead, own.empty() ? fault : own);
}

}  // namespace kestms
