#include "bands/catalogue/ProductCatalogue.h"

#include <algorithm>

#include "bands/FileName.h"
#include "bands/catalogue/CatalogueDocument.h"
#include "codec/strings/BufferText.h"
#include "platform/Platform.h"
#include "sets/ComponentList.h"

namespace kest {
namespace {

std::shared_ptr<const ProductCatalogue>& current() {
    // Never destroyed: a host's codec object may outlive the module's statics.
    static auto& catalogue = *new std::shared_ptr<const ProductCatalogue>();
    return catalogue;
}

/// Whether all paths are files of one scene of the product.
bool isOneScene(const Product& product, const std::vector<std::u16string>& paths,
                Witnesses& witnesses) {
    std::vector<ProductFile> files;
    files.reserve(paths.size());
    for (const std::u16string& path : paths) {
        std::optional<ProductFile> file = product.match(path);
        if (!file || (!files.empty() && file->sceneKey != files.front().sceneKey)) {
            return false;
        }
        files.push_back(std::move(*file));
    }
    return !files.empty() &&
           std::all_of(files.begin(), files.end(),
                       [&witnesses](const ProductFile& file) { return witnesses.confirm(file); });
}

/// The bytes of a document, of one too large only as many as tell; nothing when it cannot be
/// opened.
std::optional<std::string> readDocument(const Pyxis::FileSpecifier& file) {
    const auto opened = platform::PlainFile::open(file.string());
    if (!opened) {
        return std::nullopt;
    }
    const auto most = std::min<std::uint64_t>(opened->size(), kMaxCatalogueDocument + 1);
    std::string bytes(static_cast<std::size_t>(most), '\0');
    bytes.resize(opened->readFromStart(bytes.data(), static_cast<std::uint32_t>(most)));
    return bytes;
}

}  // namespace

ProductCatalogue::Fault ProductCatalogue::add(std::string_view document) {
    std::vector<std::shared_ptr<const Product>> products = products_;
    std::size_t codeCount = codeCount_;
    std::string reason = readCatalogue(document, products, codeCount);
    if (reason.empty()) {
        products_ = std::move(products);
        codeCount_ = codeCount;
    }
    return {std::move(reason)};
}

ProductCatalogue::Fault ProductCatalogue::addFiles(const Pyxis::FileSpecifier& files) {
    for (int i = 0; i < countComponents(files); ++i) {
        const Pyxis::FileSpecifier file = componentAt(files, i);
        const std::optional<std::string> document = readDocument(file);
        const std::string reason = document ? add(*document).reason : "cannot be opened";
        if (!reason.empty()) {
            return {narrowText(file.string()) + ": " + reason};
        }
    }
    return {};
}

std::vector<ProductFile> ProductCatalogue::filesNamed(std::u16string_view path) const {
    const ProductPath whole(path);
    std::vector<ProductFile> files;
    for (const auto& product : products_) {
        if (std::optional<ProductFile> file = product->match(whole)) {
            files.push_back(std::move(*file));
        }
    }
    return files;
}

std::shared_ptr<const Product> ProductCatalogue::productOf(const std::vector<std::u16string>& paths,
                                                           const Pyxis::ImageFormatCodec* codec,
                                                           Pyxis::FindFileInterface* finder) const {
    Witnesses witnesses(finder, codec);
    for (const auto& product : products_) {
        if (isOneScene(*product, paths, witnesses)) {
            return product;
        }
    }
    return nullptr;
}

bool Witnesses::confirm(const ProductFile& file) {
    if (file.product->witnesses.empty() || finder_ == nullptr) {
        return file.product->witnesses.empty();
    }
    const auto [known, isNew] =
        answers_.try_emplace({file.product, std::u16string(file.witnessFolder())}, false);
    if (isNew) {
        known->second = exists(file);
    }
    return known->second;
}

bool Witnesses::exists(const ProductFile& file) const {
    const auto plain = [](std::u16string_view path) {
        return Pyxis::FileSpecifier(wideBuffer(path), Pyxis::FileSpecifier::Type::PlainFile);
    };
    const Pyxis::FileSpecifier base = plain(file.witnessBase);
    const auto& names = file.product->witnesses;
    return std::any_of(names.begin(), names.end(), [&](const std::u16string& name) {
        Pyxis::FileSpecifier found = plain(name);
        return finder_->findFile(codec_, base, found, found);
    });
}

std::shared_ptr<const ProductCatalogue> currentCatalogue() {
    return current();
}

ProductCatalogue::Fault setProductCatalogue(const Pyxis::FileSpecifier& files) {
    current().reset();
    auto catalogue = std::make_shared<ProductCatalogue>();
    ProductCatalogue::Fault fault = catalogue->addFiles(files);
    if (fault.reason.empty() && !catalogue->products().empty()) {
        current() = std::move(catalogue);
    }
    return fault;
}

}  // namespace kest
