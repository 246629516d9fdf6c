#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "bands/BandWords.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "host/Text.h"
#include "tool/commands/Commands.h"
#include "tool/terminal/Json.h"
#include "tool/terminal/NumberText.h"
#include "tool/terminal/TerminalText.h"
#include "tool/terminal/TextTable.h"

namespace kestms {
namespace {

using Align = TextTable::Align;
using Fit = TextTable::Fit;
using kest::CatalogueBand;
using kest::Product;
using Products = std::vector<std::shared_ptr<const Product>>;

struct ProductsOptions {
    std::string id;
    std::string check;
    bool json = false;
};

bool isBand(const CatalogueBand& band) {
    return band.details.role == kest::BandRole::Band;
}

std::string roleOf(const CatalogueBand& band) {
    return std::string(kest::wordOf(kest::kRoleWords, band.details.role));
}

std::string codesOf(const CatalogueBand& band) {
    std::string codes;
    for (const std::u16string& code : band.codes) {
        codes += (codes.empty() ? "" : "|") + Pyxis::wideToUtf8(code);
    }
    return codes;
}

/// Writes products in the words of one language.
class ProductWriter {
  public:
    /// `columns` is the width of tables.
    ProductWriter(std::string language, std::size_t columns)
        : language_(std::move(language)), columns_(columns) {}

    std::string list(const Products& products) const {
        TextTable table({{"Product", Align::Left},
                         {"Bands", Align::Right},
                         {"Name", Align::Left, Fit::KeepStart}});
        for (const auto& product : products) {
            const auto bands = std::count_if(product->bands.begin(), product->bands.end(), isBand);
            table.addRow({product->id, std::to_string(bands), text(product->name)});
        }
        return table.text(columns_);
    }

    std::string describe(const Product& product) const {
        std::string lines = "Product:      " + printable(product.id) + "\n";
        lines += "Name:         " + printable(text(product.name)) + "\n";
        if (!product.source.empty()) {
            lines += "Source:       " + printable(product.source) + "\n";
        }
        for (const kest::FilePattern& file : product.files) {
            lines += "File name:    " + printable(file.text) + "\n";
        }
        for (const std::u16string& witness : product.witnesses) {
            lines += "Witness:      " + printable(Pyxis::wideToUtf8(witness)) + "\n";
        }
        if (const auto noData = product.bands.front().details.productNoData) {
            lines += "No-data:      " + numberText(*noData) + "\n";
        }
        return lines + "\n" + bands(product) + layers(product);
    }

    Json json(const Product& product) const {
        Json files = Json::array();
        for (const kest::FilePattern& file : product.files) {
            files.push_back(file.text);
        }
        Json witnesses = Json::array();
        for (const std::u16string& witness : product.witnesses) {
            witnesses.push_back(Pyxis::wideToUtf8(witness));
        }
        Json bands = Json::array();
        for (const CatalogueBand& band : product.bands) {
            bands.push_back(json(product, band));
        }
        return {{"id", product.id},         {"name", text(product.name)},
                {"source", product.source}, {"fileNames", std::move(files)},
                {"witnesses", witnesses},   {"bands", std::move(bands)}};
    }

  private:
    std::string text(const kest::LocalText& name) const {
        return Pyxis::wideToUtf8(name.in(language_));
    }

    Json json(const Product& product, const CatalogueBand& band) const {
        Json json = {{"code", Pyxis::wideToUtf8(band.codes.front())},
                     {"name", text(band.name)},
                     {"role", roleOf(band)},
                     {"type", kest::wordOf(kest::kBandTypeWords, band.type)},
                     {"displayChannel", kest::wordOf(kest::kChannelWords, band.assignment)},
                     {"commonName", textOrNull(band.details.commonName)},
                     {"bucket", text(product.buckets[band.bucket].name)}};
        if (band.details.spectrum) {
            json["centreWavelength"] = band.details.spectrum->centre;
            json["width"] = band.details.spectrum->width;
        }
        if (band.details.productNoData) {
            json["noData"] = *band.details.productNoData;
        }
        return json;
    }

    std::string bands(const Product& product) const {
        TextTable table({{"Band", Align::Left},
                         {"Name", Align::Left, Fit::KeepStart},
                         {"Type", Align::Left, Fit::LeaveOut},
                         {"Channel", Align::Left, Fit::LeaveOut},
                         {"Common name", Align::Left},
                         {"Centre", Align::Right},
                         {"Width", Align::Right},
                         {"Bucket", Align::Left, Fit::KeepStart}});
        for (const CatalogueBand& band : product.bands) {
            const auto& spectrum = band.details.spectrum;
            if (isBand(band)) {
                table.addRow({codesOf(band), text(band.name),
                              std::string(kest::wordOf(kest::kBandTypeWords, band.type)),
                              std::string(kest::wordOf(kest::kChannelWords, band.assignment)),
                              band.details.commonName, spectrum ? numberText(spectrum->centre) : "",
                              spectrum ? numberText(spectrum->width) : "",
                              text(product.buckets[band.bucket].name)});
            }
        }
        return table.text(columns_);
    }

    std::string layers(const Product& product) const {
        if (std::all_of(product.bands.begin(), product.bands.end(), isBand)) {
            return {};
        }
        TextTable table({{"Layer", Align::Left, Fit::KeepStart},
                         {"Role", Align::Left},
                         {"Name", Align::Left, Fit::KeepStart}});
        for (const CatalogueBand& band : product.bands) {
            if (!isBand(band)) {
                table.addRow({codesOf(band), roleOf(band), text(band.name)});
            }
        }
        return "\n" + table.text(columns_);
    }

    std::string language_;
    std::size_t columns_;
};

const Product& productNamed(const Products& products, const std::string& id) {
    const auto found = std::find_if(products.begin(), products.end(),
                                    [&id](const auto& each) { return each->id == id; });
    if (found == products.end()) {
        throw Failure(ExitCode::Usage, id, "no such product; see kestms products");
    }
    return **found;
}

Products productsOf(Context& context, const ProductsOptions& options) {
    if (!options.check.empty()) {
        kest::ProductCatalogue catalogue;
        const auto fault = catalogue.addFiles(Pyxis::fileSpecifier(options.check));
        if (!fault.reason.empty()) {
            throw Failure(ExitCode::CannotRead, fault.reason);
        }
        return catalogue.products();
    }
    context.session();
    const auto catalogue = kest::currentCatalogue();
    return catalogue ? catalogue->products() : Products();
}

ExitCode products(Context& context, const ProductsOptions& options) {
    const Products known = productsOf(context, options);
    const ProductWriter writer(context.session().language(), context.tableColumns());
    const Product* const one = options.id.empty() ? nullptr : &productNamed(known, options.id);
    if (options.json) {
        Json document = documentOf("kestms products", 1);
        Json& listed = document["products"] = Json::array();
        for (const auto& product : known) {
            if (one == nullptr || product.get() == one) {
                listed.push_back(writer.json(*product));
            }
        }
        writeJson(context.out, document);
    } else {
        context.out << (one == nullptr ? writer.list(known) : writer.describe(*one));
    }
    return ExitCode::Success;
}

}  // namespace

void addProductsCommand(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("products", "Show the products that are known");
    auto options = std::make_shared<ProductsOptions>();
    command->add_option("PRODUCT", options->id, "Show the file names and bands of this one");
    command
        ->add_option("--check", options->check,
                     "Read this catalogue alone, and fail with the reason when it has a fault")
        ->check([](const std::string& file) { return file.empty() ? "names no file" : ""; });
    command->add_flag("--json", options->json, "Write JSON");
    command->footer(
        "Examples:\n"
        "  kestms products\n"
        "  kestms products sentinel-2-l2a\n"
        "  kestms products --check mine.xml\n"
        "  kestms --products mine.xml products --json");
    runWhenChosen(*command, context, products, options);
}

}  // namespace kestms
