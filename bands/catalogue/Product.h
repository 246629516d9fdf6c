#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bands/BandTypes.h"
#include "bands/catalogue/NamePattern.h"

namespace kest {

/// A text in one or more languages ("en", "de").
struct LocalText {
    std::vector<std::pair<std::string, std::u16string>> texts;

    /// The text in that language, else in English, else the first; empty without any.
    std::u16string_view in(std::string_view language) const;
};

/// Bands of a product that have one pixel size.
struct CatalogueBucket {
    std::string id;
    int number = 0;
    LocalText name;
};

/// A band, or another raster or file that comes with the bands (see BandDetails::role).
struct CatalogueBand {
    /// As in file names, in the spelling of the document; the first one is shown.
    std::vector<std::u16string> codes;
    LocalText name;
    BandType type = BandType::Unknown;
    BandAssignment assignment = BandAssignment::NotAssigned;
    int order = 0;  ///< sort key; bands below kFirstLayerOrder, everything else from there on
    BandDetails details;
    std::size_t bucket = 0;  ///< index among the product's buckets
};

inline constexpr int kFirstLayerOrder = 1000;

/// A pattern for the file names of a product.
struct FilePattern {
    std::string text;
    NamePattern pattern;
    std::optional<std::size_t> bucket;  ///< overrides the band's
};

/// A file's path, prepared once for the patterns of all products. A compressed file ("/vsigzip/")
/// has the name of what is in it.
class ProductPath {
  public:
    /// `path` must outlive the object.
    explicit ProductPath(std::u16string_view path);

    std::u16string_view path() const { return path_; }
    /// The path without extension, in upper case, with "/" between folders; the same offsets.
    std::u16string_view comparable() const { return comparable_; }
    /// Where the file's name with so many folders before it starts in both; nothing when there are
    /// fewer.
    std::optional<std::size_t> startOf(std::size_t folders) const;

  private:
    std::u16string_view path_;
    std::u16string comparable_;
    std::vector<std::size_t> starts_;  ///< of the file's name, of its folder, and so on
};

struct Product;

/// A file's path matched by the catalogue. Points into the product.
struct ProductFile {
    const Product* product = nullptr;
    const CatalogueBand* band = nullptr;
    const CatalogueBucket* bucket = nullptr;
    /// The name of the scene as in the path: the marked part of the pattern, else the folder's
    /// name.
    std::u16string scene;
    /// Equal for two files of one product exactly if they belong to one scene.
    std::u16string sceneKey;
    std::string date;  ///< "2018-06-29"; empty when the name has none
    /// A path in the folder where a witness of the product would be.
    std::u16string witnessBase;

    /// The folder of `witnessBase`; empty for the current one.
    std::u16string_view witnessFolder() const;
};

/// A product of a satellite's ground segment, by the names of its files.
struct Product {
    std::string id;
    LocalText name;
    std::string source;  ///< where the band table comes from
    std::vector<FilePattern> files;
    std::vector<CatalogueBand> bands;     ///< the bands, then everything else
    std::vector<std::size_t> bandOfCode;  ///< by the index of the code in the patterns
    std::vector<CatalogueBucket> buckets;
    /// File names, one of which must exist because the bands' names alone are ambiguous.
    std::vector<std::u16string> witnesses;

    /// Matches a path with this product; nothing when its name does not fit. Extension and case do
    /// not matter. Takes time linear in the path.
    std::optional<ProductFile> match(std::u16string_view path) const {
        return match(ProductPath(path));
    }
    std::optional<ProductFile> match(const ProductPath& whole) const;
};

}  // namespace kest
