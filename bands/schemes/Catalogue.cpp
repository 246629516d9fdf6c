#include "bands/catalogue/ProductCatalogue.h"
#include "bands/schemes/Schemes.h"
#include "codec/strings/BufferText.h"
#include "codec/strings/StringResources.h"

namespace kest {
namespace {

/// The file matched with the set's product; without a set, with the first product that it fits.
std::optional<ProductFile> fileOf(const BandFile& band) {
    const std::u16string path = wideText(band.file.string());
    if (band.product != nullptr) {
        return band.product->match(path);
    }
    const auto catalogue = currentCatalogue();
    const auto files = catalogue ? catalogue->filesNamed(path) : std::vector<ProductFile>();
    return files.empty() ? std::nullopt : std::optional(files.front());
}

/// The language of the texts in use.
std::string textLanguage() {
    Pyxis::StringBuffer text;
    loadResourceString(string_id::kLanguage, text);
    return narrowText(text);
}

std::optional<Identity> identify(const BandFile& band) {
    const std::optional<ProductFile> file = fileOf(band);
    if (!file) {
        return std::nullopt;
    }
    const std::string language = textLanguage();
    Identity identity;
    identity.bandName.text = file->band->name.in(language);
    identity.type = file->band->type;
    identity.assignment = file->band->assignment;
    identity.bandNumber = file->band->order;
    identity.details = file->band->details;
    identity.bucketName.text = file->bucket->name.in(language);
    identity.bucketNumber = file->bucket->number;
    return identity;
}

std::optional<std::u16string> referenceName(const BandFile& band) {
    const std::optional<ProductFile> file = fileOf(band);
    if (!file) {
        return std::nullopt;
    }
    // A scene named after its folder has no name in a relative path.
    return file->scene.empty() ? wideText(narrowBuffer(file->product->id)) : file->scene;
}

}  // namespace

constexpr Scheme kCatalogueScheme{
    SchemeCatalogue, "catalogue", "file names of a product in the catalogue",
    nullptr,         identify,    referenceName,
};

}  // namespace kest
