#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bands/catalogue/Product.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/ImageFormatCodec.h"

namespace kest {

/// All known products, in the order of trial. To find the scene that a file belongs to:
///
///     for (const ProductFile& file : catalogue.filesNamed(path)) {
///         if (witnesses.confirm(file)) {
///             // file.product->id, file.scene, file.date, file.band->details.role, ...
///         }
///     }
///
/// Files with the same product and the same `sceneKey` are one scene.
class ProductCatalogue {
  public:
    /// Why a document cannot be used; no fault when the reason is empty.
    struct Fault {
        std::string reason;
    };

    /// Appends the products of a document. A document with a fault adds none.
    Fault add(std::string_view document);
    /// Adds the documents that `files` names: one, or several of a compound specifier. Stops at the
    /// first fault; the reason names the document.
    Fault addFiles(const Pyxis::FileSpecifier& files);

    const std::vector<std::shared_ptr<const Product>>& products() const { return products_; }

    /// The matches of a path (absolute or not; the file need not exist), in product order.
    /// Witnesses are not checked.
    std::vector<ProductFile> filesNamed(std::u16string_view path) const;

    /// The first product that all paths match as files of one scene; null without one. A product
    /// with witnesses needs one beside every file; without a `finder` none is found.
    std::shared_ptr<const Product> productOf(const std::vector<std::u16string>& paths,
                                             const Pyxis::ImageFormatCodec* codec,
                                             Pyxis::FindFileInterface* finder) const;

  private:
    std::vector<std::shared_ptr<const Product>> products_;
    std::size_t codeCount_ = 0;
};

/// Looks for the witnesses of products, once in each folder.
class Witnesses {
  public:
    /// `finder` and `codec`, which is passed to it, may be null.
    Witnesses(Pyxis::FindFileInterface* finder, const Pyxis::ImageFormatCodec* codec)
        : finder_(finder), codec_(codec) {}

    /// Whether the file has a witness, or its product needs none.
    bool confirm(const ProductFile& file);

  private:
    bool exists(const ProductFile& file) const;

    Pyxis::FindFileInterface* finder_;
    const Pyxis::ImageFormatCodec* codec_;
    std::map<std::pair<const Product*, std::u16string>, bool> answers_;  ///< by folder
};

/// The catalogue in use; null when there is none. Process-wide and without a lock, like the texts.
std::shared_ptr<const ProductCatalogue> currentCatalogue();
/// Makes the documents that `files` names the current catalogue (see `addFiles`); after a fault, or
/// with an empty specifier, there is none.
ProductCatalogue::Fault setProductCatalogue(const Pyxis::FileSpecifier& files);

}  // namespace kest
