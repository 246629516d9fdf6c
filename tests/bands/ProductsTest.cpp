#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "bands/BandWords.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "host/Text.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Paths.h"
#include "tests/fakes/Products.h"

namespace {

/// The catalogue that ships with the program.
kest::ProductCatalogue shippedCatalogue() {
    kest::ProductCatalogue catalogue;
    const auto fault = catalogue.addFiles(
        Pyxis::fileSpecifier(std::string(fakes::kResources) + "/../products/catalogue.xml"));
    EXPECT_EQ(fault.reason, "");
    return catalogue;
}

/// "code common bucket" of the bands in their order, then "code role" of all layers.
std::string describe(const kest::Product& product, const std::vector<std::u16string>& paths) {
    std::vector<kest::ProductFile> files;
    for (const std::u16string& path : paths) {
        files.push_back(product.match(path).value());
    }
    std::stable_sort(files.begin(), files.end(), [](const auto& left, const auto& right) {
        return left.band->order < right.band->order;
    });
    std::string text;
    for (const kest::ProductFile& file : files) {
        const auto& details = file.band->details;
        text += (text.empty() ? "" : ", ") + Pyxis::wideToUtf8(file.band->codes.front()) + " ";
        text += details.role == kest::BandRole::Band
                    ? details.commonName + " " + file.bucket->id
                    : std::string(kest::wordOf(kest::kRoleWords, details.role));
    }
    return text;
}

TEST(ProductsTest, FilesOfEveryProductBecomeItsBands) {
    const kest::ProductCatalogue catalogue = shippedCatalogue();
    fakes::World world;
    fakes::Finder finder(world, "/witness");
    std::set<std::string> tried;
    for (const fakes::ProductCase& test : fakes::kProductCases) {
        SCOPED_TRACE(test.product);
        tried.insert(test.product);
        std::vector<std::u16string> paths;
        for (const std::string& file : test.fileNames()) {
            paths.push_back(Pyxis::utf8ToWide(file));
        }
        const auto product = catalogue.productOf(paths, nullptr, &finder);
        ASSERT_NE(product, nullptr);
        EXPECT_EQ(product->id, test.product);
        EXPECT_EQ(describe(*product, paths), test.bands);
        const kest::ProductFile file = product->match(paths.front()).value();
        EXPECT_EQ(Pyxis::wideToUtf8(file.scene), test.scene);
        EXPECT_EQ(file.date, test.date);
        // Ambiguous names count only with a witness.
        EXPECT_EQ(catalogue.productOf(paths, nullptr, nullptr) == nullptr,
                  !product->witnesses.empty());
    }
    EXPECT_EQ(tried.size(), catalogue.products().size());
    EXPECT_EQ(catalogue.filesNamed(u"/d/scene_B04.tif").size(), 0U);
}

TEST(ProductsTest, BandsHaveANameInEveryLanguageAndASpectrum) {
    const kest::ProductCatalogue catalogue = shippedCatalogue();
    for (const auto& product : catalogue.products()) {
        for (const kest::CatalogueBand& band : product->bands) {
            const std::string label = product->id + Pyxis::wideToUtf8(band.codes.front());
            if (band.details.role == kest::BandRole::Band) {
                EXPECT_EQ(band.name.texts.size(), 5U) << label;
                EXPECT_FALSE(band.details.commonName.empty()) << label;
                ASSERT_TRUE(band.details.spectrum) << label;
                EXPECT_TRUE(band.details.spectrum->centre > 0.4 &&
                            band.details.spectrum->centre < 13)
                    << label;
            }
        }
        for (const kest::CatalogueBucket& bucket : product->buckets) {
            EXPECT_EQ(bucket.name.texts.size(), 5U) << product->id << bucket.id;
        }
        EXPECT_FALSE(product->source.empty()) << product->id;
    }
}

}  // namespace
