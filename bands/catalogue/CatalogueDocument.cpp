#include "bands/catalogue/CatalogueDocument.h"

#include <algorithm>
#include <utility>

#include "bands/AsciiText.h"
#include "bands/catalogue/BandTables.h"
#include "bands/catalogue/ElementReader.h"
#include "bands/catalogue/WellFormed.h"
#include "sets/xml/XmlDocument.h"
#include "sets/xml/XmlUtf16.h"

namespace kest {
namespace {

using xml::Document;
using xml::Element;

// Documents within these bounds are read quickly.
constexpr std::size_t kMaxProducts = 500;
constexpr std::size_t kMaxFilePatterns = 50;
constexpr std::size_t kMaxFolders = 8;
constexpr double kMaxNoData = 1e9;

class Reader {
  public:
    Reader(const Document& document, std::vector<std::shared_ptr<const Product>>& products,
           std::size_t& codeCount)
        : document_(document), products_(products), codeCount_(codeCount) {}

    void read() {
        const Element& root = *document_.root();
        if (root.name() != "catalogue") {
            xml_.fail("is not a catalogue");
        }
        xml_.allow(root, {"version"});
        if (xml_.attribute(root, "version").value_or("") != "1") {
            xml_.fail("is a catalogue of another version than 1");
        }
        for (const Element* each = root.child(); each != nullptr; each = each->ordered()) {
            if (each->name() == "term") {
                tables_.readTerm(*each);
            } else if (each->name() == "bands") {
                tables_.readTable(*each);
            } else if (each->name() == "product") {
                readProduct(*each);
            } else {
                xml_.failAt(*each, "is not known here");
            }
        }
    }

  private:
    void readProduct(const Element& element) {
        Product product;
        product.id = xml_.required(element, "id");
        xml_.enter("product " + quoted(product.id));
        xml_.allow(element, {"id", "bands", "no-data"});
        if (products_.size() == kMaxProducts ||
            std::any_of(products_.begin(), products_.end(),
                        [&product](const auto& each) { return each->id == product.id; })) {
            xml_.fail(products_.size() == kMaxProducts ? "is one too many"
                                                       : "is there for the second time");
        }
        BandTable table = tables_.tableOf(element);
        std::vector<const Element*> files;
        for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
            if (each->name() == "name") {
                xml_.addName(*each, product.name);
            } else if (each->name() == "source") {
                product.source = xml_.text(*each);
            } else if (each->name() == "witness") {
                product.witnesses.push_back(wide(xml_.text(*each)));
            } else if (each->name() == "file") {
                files.push_back(each);
            } else if (!tables_.readChild(*each, table)) {
                xml_.failAt(*each, "is not known here");
            }
        }
        if (xml_.attribute(element, "no-data")) {
            const double noData = xml_.number(element, "no-data", kMaxNoData, -kMaxNoData);
            for (CatalogueBand& band : table.bands) {
                band.details.productNoData = noData;
            }
        }
        finish(product, table, files);
        products_.push_back(std::make_shared<const Product>(std::move(product)));
        xml_.enter("");
    }

    void finish(Product& product, BandTable& table, const std::vector<const Element*>& files) {
        product.buckets = std::move(table.buckets);
        product.bands = std::move(table.bands);
        for (CatalogueBand& layer : table.layers) {
            layer.order = kFirstLayerOrder + static_cast<int>(product.bands.size());
            product.bands.push_back(std::move(layer));
        }
        if (product.bands.empty() || product.buckets.empty() || files.empty() ||
            product.name.texts.empty()) {
            xml_.fail("needs a <name>, a <file>, a <bucket> and a <band>");
        }
        if (files.size() > kMaxFilePatterns) {
            xml_.fail("has too many file names");
        }
        std::vector<std::u16string> codes;
        for (std::size_t band = 0; band < product.bands.size(); ++band) {
            for (const std::u16string& code : product.bands[band].codes) {
                codes.push_back(upperCase(code));
                product.bandOfCode.push_back(band);
            }
        }
        codeCount_ += codes.size() * files.size();
        if (codeCount_ > kMaxCodes) {
            xml_.fail("has too many bands");
        }
        for (const Element* file : files) {
            product.files.push_back(readFile(*file, codes, product.buckets));
        }
    }

    FilePattern readFile(const Element& element, const std::vector<std::u16string>& codes,
                         const std::vector<CatalogueBucket>& buckets) const {
        xml_.allow(element, {"bucket"});
        const std::string_view pattern = xml_.text(element);
        std::string fault;
        std::optional<NamePattern> compiled = NamePattern::compile(wide(pattern), codes, fault);
        if (!compiled || compiled->folders() > kMaxFolders) {
            xml_.failAt(element,
                        quoted(pattern) + " " + (compiled ? "has too many folders" : fault));
        }
        FilePattern file{std::string(pattern), std::move(*compiled), {}};
        if (xml_.attribute(element, "bucket")) {
            file.bucket = tables_.bucketOf(element, buckets);
        }
        return file;
    }

    const Document& document_;
    std::vector<std::shared_ptr<const Product>>& products_;
    std::size_t& codeCount_;
    ElementReader xml_{document_};
    BandTables tables_{xml_};
};

}  // namespace

std::string readCatalogue(std::string_view document,
                          std::vector<std::shared_ptr<const Product>>& products,
                          std::size_t& codeCount) {
    if (document.size() > kMaxCatalogueDocument) {
        return "is larger than a catalogue may be";
    }
    const std::string text =
        xml::isUtf16(document) ? xml::utf16ToUtf8(document) : std::string(document);
    // No document type: entities could make a small document large, and no catalogue needs them.
    if (std::string reason = whyNotWellFormed(text); !reason.empty()) {
        return reason;
    }
    const std::unique_ptr<Document> parsed = Document::parse(text);
    if (!parsed->isComplete()) {
        return "is not a whole XML document";
    }
    try {
        Reader(*parsed, products, codeCount).read();
    } catch (const DocumentFault& fault) {
        return fault.reason;
    }
    return {};
}

}  // namespace kest
