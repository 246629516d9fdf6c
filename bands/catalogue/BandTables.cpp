#include "bands/catalogue/BandTables.h"

#include <algorithm>
#include <utility>

#include "bands/AsciiText.h"
#include "bands/BandWords.h"

namespace kest {
namespace {

using xml::Element;

constexpr std::size_t kMaxBuckets = 50;
constexpr double kMaxMicrometres = 1000.0;

/// The place of the bucket; behind the last without one of that name.
std::size_t placeOf(const std::vector<CatalogueBucket>& buckets, std::string_view id) {
    const auto found = std::find_if(buckets.begin(), buckets.end(),
                                    [id](const auto& each) { return each.id == id; });
    return static_cast<std::size_t>(found - buckets.begin());
}

}  // namespace

void BandTables::readTerm(const Element& element) {
    xml_.allow(element, {"id"});
    const std::string id(xml_.required(element, "id"));
    if (!terms_.emplace(id, xml_.names(element)).second) {
        xml_.failAt(element, quoted(id) + " is there for the second time");
    }
}

/// The names of the term that an attribute refers to; none without the attribute.
LocalText BandTables::term(const Element& element) const {
    const auto id = xml_.attribute(element, "term");
    const auto found = terms_.find(id.value_or(""));
    if (id && found == terms_.end()) {
        xml_.failAt(element, "needs a <term> above it named " + quoted(*id));
    }
    return id ? found->second : LocalText();
}

std::size_t BandTables::bucketOf(const Element& element,
                                 const std::vector<CatalogueBucket>& buckets) const {
    const auto id = xml_.attribute(element, "bucket");
    const std::size_t index = id ? placeOf(buckets, *id) : 0;
    if (id && index == buckets.size()) {
        xml_.failAt(element, "needs a <bucket> above it named " + quoted(*id));
    }
    return index;
}

void BandTables::readBucket(const Element& element, BandTable& table) const {
    xml_.allow(element, {"id", "number", "term"});
    if (table.buckets.size() == kMaxBuckets) {
        xml_.failAt(element, "is one too many");
    }
    const std::string id(xml_.required(element, "id"));
    if (placeOf(table.buckets, id) < table.buckets.size()) {
        xml_.failAt(element, "has an \"id\" for the second time");
    }
    LocalText name = xml_.names(element);
    table.buckets.push_back({id, xml_.number(element, "number", 9999),
                             name.texts.empty() ? term(element) : std::move(name)});
}

CatalogueBand BandTables::readCommon(const Element& element, BandTable& table) const {
    CatalogueBand band;
    band.codes = split(wide(xml_.required(element, "code")), u'|');
    for (const std::u16string& code : band.codes) {
        if (code.empty() || !table.codes.insert(upperCase(code)).second) {
            xml_.failAt(element, "has a \"code\" that is empty or there for the second time");
        }
    }
    band.name = xml_.names(element);
    if (band.name.texts.empty()) {
        band.name = term(element);
        for (auto& [language, name] : band.name.texts) {
            name += u" (" + band.codes.front() + u")";
        }
    }
    if (band.name.texts.empty()) {
        band.name.texts.emplace_back("en", band.codes.front());
    }
    band.bucket = bucketOf(element, table.buckets);
    return band;
}

void BandTables::readBand(const Element& element, BandTable& table) const {
    xml_.allow(element,
               {"code", "term", "order", "type", "channel", "common", "centre", "width", "bucket"});
    CatalogueBand band = readCommon(element, table);
    band.type = xml_.word(element, "type", kBandTypeWords);
    if (xml_.attribute(element, "channel")) {
        band.assignment = xml_.word(element, "channel", kChannelWords);
    }
    band.order = xml_.attribute(element, "order")
                     ? xml_.number(element, "order", kFirstLayerOrder - 1)
                     : std::min(static_cast<int>(table.bands.size()), kFirstLayerOrder - 1);
    band.details.commonName = xml_.attribute(element, "common").value_or(commonNameOf(band.type));
    if (xml_.attribute(element, "centre") || xml_.attribute(element, "width")) {
        band.details.spectrum = Spectrum{xml_.number(element, "centre", kMaxMicrometres),
                                         xml_.number(element, "width", kMaxMicrometres)};
    }
    table.bands.push_back(std::move(band));
}

void BandTables::readLayer(const Element& element, BandTable& table) const {
    xml_.allow(element, {"code", "term", "role", "bucket"});
    CatalogueBand layer = readCommon(element, table);
    layer.details.role = xml_.word(element, "role", kRoleWords);
    if (layer.details.role == BandRole::Band) {
        xml_.failAt(element, "cannot be a band");
    }
    table.layers.push_back(std::move(layer));
}

bool BandTables::readChild(const Element& element, BandTable& table) const {
    if (table.bands.size() + table.layers.size() > kMaxCodes) {
        xml_.failAt(element, "is one too many");
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

void BandTables::readTable(const Element& element) {
    xml_.allow(element, {"id"});
    const std::string id(xml_.required(element, "id"));
    xml_.enter("band table " + quoted(id));
    BandTable table;
    for (const Element* each = element.child(); each != nullptr; each = each->ordered()) {
        if (!readChild(*each, table)) {
            xml_.failAt(*each, "is not known here");
        }
    }
    if (!tables_.emplace(id, std::move(table)).second) {
        xml_.fail("is there for the second time");
    }
    xml_.enter("");
}

BandTable BandTables::tableOf(const Element& element) const {
    BandTable whole;
    std::string_view ids = xml_.attribute(element, "bands").value_or("");
    while (!(ids = trimmed(ids)).empty()) {
        const std::string_view id = ids.substr(0, ids.find(' '));
        ids.remove_prefix(id.size());
        const auto found = tables_.find(id);
        if (found == tables_.end()) {
            xml_.failAt(element, "needs a band table above it named " + quoted(id));
        }
        join(element, whole, found->second);
    }
    return whole;
}

void BandTables::join(const Element& element, BandTable& whole, const BandTable& part) const {
    const std::size_t codes = whole.codes.size() + part.codes.size();
    whole.codes.insert(part.codes.begin(), part.codes.end());
    if (whole.codes.size() != codes || !(whole.buckets.empty() || part.buckets.empty())) {
        xml_.failAt(element, "names band tables that share a code, or two with buckets");
    }
    const auto append = [](auto& target, const auto& more) {
        target.insert(target.end(), more.begin(), more.end());
    };
    append(whole.buckets, part.buckets);
    append(whole.bands, part.bands);
    append(whole.layers, part.layers);
}

}  // namespace kest
