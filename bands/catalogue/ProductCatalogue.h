#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bands/catalogue/Product.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/ImageFormatCodec.h"

namespace kest {

/// The products that a host or the tool knows, in the order of trial. To find the scene that a
/// file belongs to:
///
///     for (const ProductFile& file : catalogue.filesNamed(path)) {
///         if (isWitnessed(file, finder, codec)) {
///             // file.product->id, file.scene, file.date, file.band->details.role, ...
///         }
///     }
///
/// Files with the same product and the same `sceneKey` are one scene.
class ProductCatalogue {
  public:
    /// Why a document cannot be used; an empty reason is none.
    struct Fault {
        std::string reason;
    };

    /// Adds the products of a document behind those that are there. A document with a fault adds
    /// none.
    Fault add(std::string_view document);
    /// Adds the documents that `files` names: one, or several of a compound specifier. At the first
    /// fault it stops, and the reason names the document.
    Fault addFiles(const Pyxis::FileSpecifier& files);

    const std::vector<std::shared_ptr<const Product>>& products() const { return products_; }

    /// What the products make of a path (absolute or not; the file need not exist), the first
    /// product first. Witnesses are not looked for.
    std::vector<ProductFile> filesNamed(std::u16string_view path) const;

    /// The first product that every path fits as files of one scene; null without one. A product
    /// that asks for a witness must have it: none is found without a `finder`.
    std::shared_ptr<const Product> productOf(const std::vector<std::u16string>& paths,
                                             const Pyxis::ImageFormatCodec* codec,
                                             Pyxis::FindFileInterface* finder) const;

  private:
    std::vector<std::shared_ptr<const Product>> products_;
    std::size_t bandCount_ = 0;
};

/// Whether a witness of the file's product is there, or the product asks for none. `codec` is
/// handed on to the finder and may be null.
bool isWitnessed(const ProductFile& file, Pyxis::FindFileInterface* finder,
                 const Pyxis::ImageFormatCodec* codec);

/// The catalogue that sets are named by; null when there is none. Process-wide, like the texts, and
/// like them not guarded by a lock.
std::shared_ptr<const ProductCatalogue> currentCatalogue();
/// Makes the documents that `files` names the current catalogue (see `addFiles`); an empty
/// specifier ends its use, and so does a fault.
ProductCatalogue::Fault setProductCatalogue(const Pyxis::FileSpecifier& files);

}  // namespace kest
