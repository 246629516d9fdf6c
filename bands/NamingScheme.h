#pragma once

#include <memory>
#include <vector>

#include "pyxis/FileSpecifier.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/ImageFormatCodec.h"
#include "sets/ComponentList.h"

namespace kest {

/// How the bands of a set are named; also the kind of a single component (never Numbered there).
enum NamingScheme : int {
    SchemeNone = 0,           ///< the list is empty
    SchemeGeneric = 1,        ///< no common convention
    SchemeNumbered = 2,       ///< no common convention, but different trailing band numbers
    SchemePoProduct = 3,      ///< "po_" product names
    SchemePoProductNitf = 4,  ///< "po_" product names with the extension ".NTF"
    SchemeLandsat7 = 5,       ///< "L7" names
    SchemeLandsat7Fast = 6,   ///< "L7" names with the extension ".FST"
    SchemeQuickBird = 7,      ///< QuickBird TIFF files
    SchemeNitf = 8,           ///< NITF files
    SchemeCatalogue = 9,      ///< files of one scene of a product that the catalogue knows
};

/// Input of the scheme decision for one component.
struct ComponentKind {
    int kind = SchemeGeneric;
    int trailingBandNumber = -1;  ///< value of the name's last two digits; -1 without them
};

/// The kind of every component, in list order.
std::vector<ComponentKind> classifyComponents(const ComponentList& components);
/// The scheme that a set of such components follows; never that of a catalogue.
int namingSchemeOf(const std::vector<ComponentKind>& kinds);

struct Product;

/// How the bands of a set are named.
struct SetNaming {
    int scheme = SchemeNone;
    std::shared_ptr<const Product> product;  ///< of SchemeCatalogue
};

/// The naming of a set. Products that need a witness beside their files are tried only with a
/// `finder`, which gets `codec`.
SetNaming nameSet(const ComponentList& components, const Pyxis::ImageFormatCodec* codec,
                  Pyxis::FindFileInterface* finder);

/// The scheme of the set that a compound specifier lists, without a finder.
int getNamingScheme(const Pyxis::FileSpecifier& componentList);

/// "po_", digits, "_", a band code, "_", digits.
bool isPoProductName(const Pyxis::FileSpecifier& file);
/// "L7", 7 digits, "_", 11 digits, "_", a band code.
bool isLandsat7Name(const Pyxis::FileSpecifier& file);
/// Whether the host reads the file as QuickBird TIFF, or as TIFF with a band list.
bool isQuickBirdFile(const Pyxis::FileSpecifier& file);
/// Whether the host reads the file as NITF.
bool isNitfFile(const Pyxis::FileSpecifier& file);

}  // namespace kest
