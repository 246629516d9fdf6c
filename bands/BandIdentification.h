#pragma once

#include <memory>

#include "bands/BandTypes.h"
#include "bands/NamingScheme.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Fills `out` for one band of a set that follows `scheme`. `component` and `frame` hold the band;
/// of a compound specifier its component number `bandOrdinal` is taken. `bandOrdinal` is the
/// number of bands found so far plus one. Writes nothing for a scheme outside 1 to 9, for a NITF
/// file whose band letter cannot be read, and for a file that the catalogue does not know.
void getBandTypeInfo(int scheme, int bandOrdinal, const Pyxis::FileSpecifier& component, int frame,
                     BandTypeInfo& out);

/// The same by the naming of the set, with what is known of the band beyond that.
void identifyBand(const SetNaming& naming, int bandOrdinal, const Pyxis::FileSpecifier& component,
                  int frame, BandTypeInfo& out, BandDetails& details);

/// Names and numbers a new bucket by the band that opened it. `bucketOrdinal` is the number of
/// buckets so far plus one. Of a compound specifier the first component is taken; the vector is
/// not used by any scheme. Writes nothing where `getBandTypeInfo` would not.
void getBucketInfo(int scheme, int bucketOrdinal, const Pyxis::FileSpecifier& component, int frame,
                   double vectorX, double vectorY, Pyxis::StringBuffer& bucketName,
                   int& bucketNumber);

/// The same by the naming of the set.
void identifyBucket(const SetNaming& naming, int bucketOrdinal,
                    const Pyxis::FileSpecifier& component, int frame,
                    Pyxis::StringBuffer& bucketName, int& bucketNumber);

/// The digits of a QuickBird file's band list, four characters padded with blanks and a
/// terminator; null when it has none. More than four digits give a code that no table holds.
std::unique_ptr<char[]> getQuickBirdBandList(const Pyxis::FileSpecifier& component);

}  // namespace kest
