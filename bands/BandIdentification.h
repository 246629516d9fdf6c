#pragma once

#include <memory>

#include "bands/BandTypes.h"
#include "bands/NamingScheme.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Fills `out` for one band of a set that follows `scheme`. `component` and `frame` hold the band;
/// if `component` is compound, its component `bandOrdinal` does. `bandOrdinal` is the number of
/// bands found so far plus one. Writes nothing for a scheme outside 1 to 9, for a NITF file whose
/// band letter cannot be read, and for a file that the catalogue does not know.
void getBandTypeInfo(int scheme, int bandOrdinal, const Pyxis::FileSpecifier& component, int frame,
                     BandTypeInfo& out);

/// The same for a set with the given naming, with further details of the band.
void identifyBand(const SetNaming& naming, int bandOrdinal, const Pyxis::FileSpecifier& component,
                  int frame, BandTypeInfo& out, BandDetails& details);

/// Names and numbers a new bucket after its first band. `bucketOrdinal` is the number of buckets so
/// far plus one. If the specifier is compound, its first component counts; no scheme uses the
/// vector. Writes nothing where `getBandTypeInfo` would not.
void getBucketInfo(int scheme, int bucketOrdinal, const Pyxis::FileSpecifier& component, int frame,
                   double vectorX, double vectorY, Pyxis::StringBuffer& bucketName,
                   int& bucketNumber);

/// The same for a set with the given naming.
void identifyBucket(const SetNaming& naming, int bucketOrdinal,
                    const Pyxis::FileSpecifier& component, int frame,
                    Pyxis::StringBuffer& bucketName, int& bucketNumber);

/// The digits of a QuickBird file's band list, four characters padded with blanks and a
/// terminator; null when it has none. More than four digits give a code that no table holds.
std::unique_ptr<char[]> getQuickBirdBandList(const Pyxis::FileSpecifier& component);

}  // namespace kest
