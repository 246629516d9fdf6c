// The product catalogue: any document is read, or refused with a reason. Then paths, made from its
// patterns or taken from the input, are matched with it; what a match returns is part of the path.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "bands/AsciiText.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "fuzz/Input.h"

namespace {

using fuzz::require;
using kest::Product;
using kest::ProductFile;

/// A path close to what the pattern matches: its placeholders filled in, the rest unchanged.
std::u16string pathLike(const std::string& pattern, fuzz::Input& input) {
    std::string path;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char sign = pattern[i];
        if (sign == '#') {
            path += static_cast<char>('0' + input.below(10));
        } else if (sign == '@') {
            path += static_cast<char>('A' + input.below(26));
        } else if (sign == '{') {
            path += pattern.compare(i, 6, "{date}") == 0 ? "20180629" : std::string(input.bytes());
            i = std::min(pattern.find('}', i), pattern.size());
        } else if (std::string_view("[]+\\").find(sign) == std::string_view::npos) {
            path += sign;
        }
    }
    return {path.begin(), path.end()};
}

void checkFile(const ProductFile& file, std::u16string_view path) {
    const Product& product = *file.product;
    require(file.band >= product.bands.data() &&
                file.band < product.bands.data() + product.bands.size(),
            "the band is one of the product's");
    require(file.bucket >= product.buckets.data() &&
                file.bucket < product.buckets.data() + product.buckets.size(),
            "the bucket is one of the product's");
    require(path.find(file.scene) != path.npos, "the scene's name is part of the path");
    require(path.starts_with(file.witnessBase), "witnesses lie on the way to the file");
    require(file.date.empty() || file.date.size() == 10, "a date, or none");
    require(kest::upperCase(path).find(file.sceneKey) != path.npos, "the scene's key, too");
}

void checkPath(const kest::ProductCatalogue& catalogue, const std::u16string& path) {
    const std::vector<ProductFile> files = catalogue.filesNamed(path);
    for (const ProductFile& file : files) {
        checkFile(file, path);
    }
    const auto product = catalogue.productOf({path, path}, nullptr, nullptr);
    const auto first = std::find_if(files.begin(), files.end(), [](const ProductFile& file) {
        return file.product->witnesses.empty();
    });
    require(product.get() == (first == files.end() ? nullptr : first->product),
            "a set of one file twice follows the first product that needs no witness");
}

void checkProduct(const Product& product) {
    require(!product.bands.empty() && !product.files.empty() && !product.id.empty(),
            "a product has bands and files");
    for (const kest::CatalogueBand& band : product.bands) {
        require(
            (band.order >= kest::kFirstLayerOrder) == (band.details.role != kest::BandRole::Band),
            "what is no band sorts last");
        require(band.bucket < product.buckets.size(), "a band has a bucket");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    kest::ProductCatalogue catalogue;
    const auto fault = catalogue.add(input.text());
    require(fault.reason.empty() || catalogue.products().empty(), "all of a document, or nothing");
    require(fault.reason.size() < 2000, "a reason is a sentence");
    for (const auto& product : catalogue.products()) {
        checkProduct(*product);
        for (const kest::FilePattern& file : product->files) {
            checkPath(catalogue, pathLike(file.text, input));
        }
    }
    while (input.hasChoices()) {
        const std::string_view bytes = input.bytes();
        checkPath(catalogue, std::u16string(bytes.begin(), bytes.end()));
    }
    return 0;
}
