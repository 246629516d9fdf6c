#include "bands/catalogue/CatalogueDocument.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <limits>
#include <map>
#include <set>

#include "bands/AsciiText.h"
#include "bands/BandWords.h"
#include "bands/catalogue/WellFormed.h"
#include "codec/strings/BufferText.h"
#include "sets/xml/XmlDocument.h"
#include "sets/xml/XmlUtf16.h"

namespace kest {
namespace {

using xml::Document;
using xml::Element;

// Documents within these bounds are read quickly.
constexpr std::size_t kMaxProducts = 500;
/// Of all products, for each of their file names; and of one band table.
constexpr std::size_t kMaxCodes = 20'000;
constexpr std::size_t kMaxFilePatterns = 50;
constexpr std::size_t kMaxLanguages = 30;
constexpr std::size_t kMaxBuckets = 50;
constexpr std::size_t kMaxFolders = 8;
constexpr std::size_t kMaxText = 255;
constexpr double kMaxMicrometres = 1000.0;
constexpr double kMaxNoData = 1e9;

/// Thrown at an error in a document; `reason` is for users.
struct DocumentFault {
    std::string reason;
};

[[noreturn]] void fail(const std::string& reason) {
    throw DocumentFault{reason};
}

std::string quoted(std::string_view text) {
    return "\"" + std::string(text.substr(0, kMaxText)) + "\"";
}

std::string tag(const Element& element) {
    return "<" + std::string(element.name().substr(0, kMaxText)) + ">";
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::u16string wide(std::string_view text) {
    return wideText(narrowBuffer(text));
}

/// A band table: a shared one, or a product's with the product's additions.
struct Table {
    std::vector<CatalogueBucket> buckets;
    std::vector<CatalogueBand> bands;
    std::vector<CatalogueBand> layers;
    std::set<std::u16string> codes;  ///< of bands and layers, upper-case
};

/// The codes between "|".
std::vector<std::u16string> codesOf(std::u16string_view text) {
    std::vector<std::u16string> codes;
    for (std::size_t bar = text.find(u'|'); bar != text.npos; bar = text.find(u'|')) {
        codes.emplace_back(text.substr(0, bar));
        text.remove_prefix(bar + 1);
    }
    codes.emplace_back(text);
    return codes;
}

class Reader {
  public:
    Reader(const Document& document, std::vector<std::shared_ptr<const Product>>& products,
           std::size_t& codeCount)
        : document_(document), products_(products), codeCount_(codeCount) {}

    void read() {
        const Element& root = *document_.root();
        if (root.name() != "catalogue") {
            fail("is not a catalogue");
        }
        allow(root, {"version"});
        if (attribute(root, "version").value_or("") != "1") {
            fail("is a catalogue of another version than 1");
        }
        for (const Element* each = root.child(); each != nullptr; each = each->ordered()) {
            if (each->name() == "term") {
                readTerm(*each);
            } else if (each->name() == "bands") {
                readTable(*each);
            } else if (each->name() == "product") {
                readProduct(*each);
            } else {
                failAt(*each, "is not known here");
            }
        }
    }

  private:
    /// Prefixes the reason with the current product or band table.
    [[noreturn]] void failAt(const Element& element, const std::string& what) const {
        fail((context_.empty() ? "" : context_ + ": ") + tag(element) + " " + what);
    }

    void allow(const Element& element, std::initializer_list<std::string_view> names) const {
        for (const xml::Attribute& each : element) {
            if (std::find(names.begin(), names.end(), each.name) == names.end()) {
                failAt(element, "has an unknown attribute " + quoted(each.name));
            }
            if (std::any_of(element.begin(), &each, [&each](const xml::Attribute& earlier) {
                    return earlier.name == each.name;
                })) {
                failAt(element, quoted(each.name) + " is there for the second time");
            }
        }
    }

    std::optional<std::string_view> attribute(const Element& element, std::string_view name) const {
        const auto value = document_.attribute(&element, name);
        if (value && value->size() > kMaxText) {
            failAt(element, "has too long a " + quoted(name));
        }
        return value;
    }

    std::string_view required(const Element& element, std::string_view name) const {
        const auto value = attribute(element, name);
        if (!value || value->empty()) {
            failAt(element, "lacks " + quoted(name));
        }
        return *value;
    }

    template <typename Number>
    Number number(const Element& element, std::string_view name, Number most,
                  Number least = 0) const {
        const std::string_view text = required(element, name);
        Number value{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || !(value >= least) ||
            !(value <= most)) {
            failAt(element, quoted(name) + " is not a number from " +
                                std::to_string(static_cast<int>(least)) + " to " +
                                std::to_string(static_cast<int>(most)));
        }
        return value;
    }

    template <typename Words>
    auto word(const Element& element, std::string_view name, const Words& words) const {
        const std::string_view text = required(element, name);
        const auto value = valueOf(words, text);
        if (!value) {
            failAt(element, quoted(name) + " cannot be " + quoted(text));
        }
        return *value;
    }

    std::string_view text(const Element& element) const {
        const std::string_view value = trimmed(element.text());
        if (value.empty() || value.size() > NamePattern::kMaxLength || element.child() != nullptr) {
            failAt(element, "needs a text of at most " + std::to_string(NamePattern::kMaxLength) +
                                " characters");
        }
        return value;
    }

    /// The texts of the <name> children; any other child is an error.
    LocalText names(const Element& element) const {
        LocalText names;
        for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
            if (each->name() != "name") {
                failAt(*each, "is not known in " + tag(element));
            }
            addName(*each, names);
        }
        return names;
    }

    void addName(const Element& element, LocalText& names) const {
        allow(element, {"language"});
        // All that refer to a term hold its names.
        if (names.texts.size() == kMaxLanguages) {
            failAt(element, "is one too many");
        }
        std::u16string name = wide(text(element));
        if (name.size() > kMaxText) {
            failAt(element, "is too long");
        }
        names.texts.emplace_back(attribute(element, "language").value_or("en"), std::move(name));
    }

    void readTerm(const Element& element) {
        allow(element, {"id"});
        const std::string id(required(element, "id"));
        if (!terms_.emplace(id, names(element)).second) {
            failAt(element, quoted(id) + " is there for the second time");
        }
    }

    /// The names of the term that an attribute refers to; none without the attribute.
    LocalText term(const Element& element) const {
        const auto id = attribute(element, "term");
        const auto found = terms_.find(id.value_or(""));
        if (id && found == terms_.end()) {
            failAt(element, "needs a <term> above it named " + quoted(*id));
        }
        return id ? found->second : LocalText();
    }

    static std::size_t bucketOf(const Table& table, std::string_view id) {
        const auto found = std::find_if(table.buckets.begin(), table.buckets.end(),
                                        [id](const auto& each) { return each.id == id; });
        return static_cast<std::size_t>(found - table.buckets.begin());
    }

    /// The bucket that an attribute names; the first without the attribute.
    std::size_t bucketOf(const Element& element, const Table& table) const {
        const auto id = attribute(element, "bucket");
        const std::size_t index = id ? bucketOf(table, *id) : 0;
        if (id && index == table.buckets.size()) {
            failAt(element, "needs a <bucket> above it named " + quoted(*id));
        }
        return index;
    }

    void readBucket(const Element& element, Table& table) const {
        allow(element, {"id", "number", "term"});
        if (table.buckets.size() == kMaxBuckets) {
            failAt(element, "is one too many");
        }
        const std::string id(required(element, "id"));
        if (bucketOf(table, id) < table.buckets.size()) {
            failAt(element, "has an \"id\" for the second time");
        }
        LocalText name = names(element);
        table.buckets.push_back({id, number(element, "number", 9999),
                                 name.texts.empty() ? term(element) : std::move(name)});
    }

    CatalogueBand readCommon(const Element& element, Table& table) const {
        CatalogueBand band;
        band.codes = codesOf(wide(required(element, "code")));
        for (const std::u16string& code : band.codes) {
            if (code.empty() || !table.codes.insert(upperCase(code)).second) {
                failAt(element, "has a \"code\" that is empty or there for the second time");
            }
        }
        band.name = names(element);
        if (band.name.texts.empty()) {
            band.name = term(element);
            for (auto& [language, name] : band.name.texts) {
                name += u" (" + band.codes.front() + u")";
            }
        }
        if (band.name.texts.empty()) {
            band.name.texts.emplace_back("en", band.codes.front());
        }
        band.bucket = bucketOf(element, table);
        return band;
    }

    void readBand(const Element& element, Table& table) const {
        allow(element,
              {"code", "term", "order", "type", "channel", "common", "centre", "width", "bucket"});
        CatalogueBand band = readCommon(element, table);
        band.type = word(element, "type", kBandTypeWords);
        if (attribute(element, "channel")) {
            band.assignment = word(element, "channel", kChannelWords);
        }
        band.order = attribute(element, "order")
                         ? number(element, "order", kFirstLayerOrder - 1)
                         : std::min(static_cast<int>(table.bands.size()), kFirstLayerOrder - 1);
        band.details.commonName = attribute(element, "common").value_or(commonNameOf(band.type));
        if (attribute(element, "centre") || attribute(element, "width")) {
            band.details.spectrum = Spectrum{number(element, "centre", kMaxMicrometres),
                                             number(element, "width", kMaxMicrometres)};
        }
        table.bands.push_back(std::move(band));
    }

    void readLayer(const Element& element, Table& table) const {
        allow(element, {"code", "term", "role", "bucket"});
        CatalogueBand layer = readCommon(element, table);
        layer.details.role = word(element, "role", kRoleWords);
        if (layer.details.role == BandRole::Band) {
            failAt(element, "cannot be a band");
        }
        table.layers.push_back(std::move(layer));
    }

    /// Reads what may stand in a band table; false for other elements.
    bool readTableChild(const Element& element, Table& table) const {
        if (table.bands.size() + table.layers.size() > kMaxCodes) {
            failAt(element, "is one too many");
        }
        if (element.name() == "bucket") {
            readBucket(element, table);
        } else if (element.name() == "band") {
            readBand(element, table);
        } else if (element.name() == "layer") {
            readLayer(element, table);
        } else {
            return false;
        }
        return true;
    }

    void readTable(const Element& element) {
        allow(element, {"id"});
        const std::string id(required(element, "id"));
        context_ = "band table " + quoted(id);
        Table table;
        for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
            if (!readTableChild(*each, table)) {
                failAt(*each, "is not known here");
            }
        }
        if (!tables_.emplace(id, std::move(table)).second) {
            fail(context_ + " is there for the second time");
        }
        context_.clear();
    }

    /// The band tables that an attribute names, merged.
    Table tableOf(const Element& element) const {
        Table whole;
        std::string_view ids = attribute(element, "bands").value_or("");
        while (!(ids = trimmed(ids)).empty()) {
            const std::string_view id = ids.substr(0, ids.find(' '));
            ids.remove_prefix(id.size());
            const auto found = tables_.find(id);
            if (found == tables_.end()) {
                failAt(element, "needs a band table above it named " + quoted(id));
            }
            join(element, whole, found->second);
        }
        return whole;
    }

    void join(const Element& element, Table& whole, const Table& part) const {
        const std::size_t codes = whole.codes.size() + part.codes.size();
        whole.codes.insert(part.codes.begin(), part.codes.end());
        if (whole.codes.size() != codes || !(whole.buckets.empty() || part.buckets.empty())) {
            failAt(element, "names band tables that share a code, or two with buckets");
        }
        const auto append = [](auto& target, const auto& more) {
            target.insert(target.end(), more.begin(), more.end());
        };
        append(whole.buckets, part.buckets);
        append(whole.bands, part.bands);
        append(whole.layers, part.layers);
    }

    void readProduct(const Element& element) {
        Product product;
        product.id = required(element, "id");
        context_ = "product " + quoted(product.id);
        allow(element, {"id", "bands", "no-data"});
        if (products_.size() == kMaxProducts ||
            std::any_of(products_.begin(), products_.end(),
                        [&product](const auto& each) { return each->id == product.id; })) {
            fail(context_ + (products_.size() == kMaxProducts ? " is one too many"
                                                              : " is there for the second time"));
        }
        Table table = tableOf(element);
        std::vector<const Element*> files;
        for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
            if (each->name() == "name") {
                addName(*each, product.name);
            } else if (each->name() == "source") {
                product.source = text(*each);
            } else if (each->name() == "witness") {
                product.witnesses.push_back(wide(text(*each)));
            } else if (each->name() == "file") {
                files.push_back(each);
            } else if (!readTableChild(*each, table)) {
                failAt(*each, "is not known here");
            }
        }
        if (attribute(element, "no-data")) {
            const double noData = number(element, "no-data", kMaxNoData, -kMaxNoData);
            for (CatalogueBand& band : table.bands) {
                band.details.productNoData = noData;
            }
        }
        finish(product, table, files);
        products_.push_back(std::make_shared<const Product>(std::move(product)));
        context_.clear();
    }

    void finish(Product& product, Table& table, const std::vector<const Element*>& files) {
        product.buckets = std::move(table.buckets);
        product.bands = std::move(table.bands);
        for (CatalogueBand& layer : table.layers) {
            layer.order = kFirstLayerOrder + static_cast<int>(product.bands.size());
            product.bands.push_back(std::move(layer));
        }
        if (product.bands.empty() || product.buckets.empty() || files.empty() ||
            product.name.texts.empty()) {
            fail(context_ + " needs a <name>, a <file>, a <bucket> and a <band>");
        }
        if (files.size() > kMaxFilePatterns) {
            fail(context_ + " has too many file names");
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
            fail(context_ + " has too many bands");
        }
        Table buckets;
        buckets.buckets = product.buckets;
        for (const Element* file : files) {
            product.files.push_back(readFile(*file, codes, buckets));
        }
    }

    FilePattern readFile(const Element& element, const std::vector<std::u16string>& codes,
                         const Table& table) const {
        allow(element, {"bucket"});
        const std::string_view pattern = text(element);
        std::string fault;
        std::optional<NamePattern> compiled = NamePattern::compile(wide(pattern), codes, fault);
        if (!compiled || compiled->folders() > kMaxFolders) {
            failAt(element, quoted(pattern) + " " + (compiled ? "has too many folders" : fault));
        }
        FilePattern file{std::string(pattern), std::move(*compiled), {}};
        if (attribute(element, "bucket")) {
            file.bucket = bucketOf(element, table);
        }
        return file;
    }

    const Document& document_;
    std::vector<std::shared_ptr<const Product>>& products_;
    std::size_t& codeCount_;
    std::map<std::string, LocalText, std::less<>> terms_;
    std::map<std::string, Table, std::less<>> tables_;
    std::string context_;  ///< the current product or band table
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
