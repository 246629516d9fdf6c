#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "bands/catalogue/ElementReader.h"
#include "bands/catalogue/Product.h"

namespace kest {

/// Of all products of a catalogue, for each of their file names; and of one band table.
inline constexpr std::size_t kMaxCodes = 20'000;

/// A band table: a shared one, or a product's with the product's additions.
struct BandTable {
    std::vector<CatalogueBucket> buckets;
    std::vector<CatalogueBand> bands;
    std::vector<CatalogueBand> layers;
    std::set<std::u16string> codes;  ///< of bands and layers, upper-case
};

/// The band tables of a catalogue, and the terms that name their bands. Throws as `ElementReader`
/// does.
class BandTables {
  public:
    /// `xml` must outlive the object.
    explicit BandTables(ElementReader& xml) : xml_(xml) {}

    /// Takes a <term>.
    void readTerm(const xml::Element& element);
    /// Takes a <bands>.
    void readTable(const xml::Element& element);

    /// Reads what may stand in a band table into one; false for other elements.
    bool readChild(const xml::Element& element, BandTable& table) const;
    /// The band tables that the attribute of a product names, merged.
    BandTable tableOf(const xml::Element& product) const;
    /// The bucket that an attribute names; the first without the attribute.
    std::size_t bucketOf(const xml::Element& element,
                         const std::vector<CatalogueBucket>& buckets) const;

  private:
    LocalText term(const xml::Element& element) const;
    void readBucket(const xml::Element& element, BandTable& table) const;
    CatalogueBand readCommon(const xml::Element& element, BandTable& table) const;
    void readBand(const xml::Element& element, BandTable& table) const;
    void readLayer(const xml::Element& element, BandTable& table) const;
    void join(const xml::Element& element, BandTable& whole, const BandTable& part) const;

    ElementReader& xml_;
    std::map<std::string, LocalText, std::less<>> terms_;
    std::map<std::string, BandTable, std::less<>> tables_;
};

}  // namespace kest
