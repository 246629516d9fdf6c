#include "bands/BandIdentification.h"

#include "bands/FileName.h"
#include "bands/IntegerPattern.h"
#include "bands/Scheme.h"
#include "codec/strings/BufferText.h"
#include "codec/strings/StringResources.h"

namespace kest {
namespace {

BandDetails detailsOf(const BandRow& row) {
    const std::string_view name = row.commonName.empty() ? commonNameOf(row.type) : row.commonName;
    BandDetails details;
    details.commonName = name;
    details.spectrum = row.spectrum;
    return details;
}

std::optional<Identity> identify(const SetNaming& naming, const Pyxis::FileSpecifier& file,
                                 int frame, int ordinal) {
    const Scheme* row = schemeOf(naming.scheme);
    return row == nullptr ? std::nullopt
                          : row->identify({file, frame, ordinal, naming.product.get()});
}

void write(const Name& name, Pyxis::StringBuffer& out) {
    if (name.text) {
        out = nameBuffer(*name.text);
    } else if (name.argument) {
        Pyxis::StringBuffer pattern;
        loadResourceString(name.id, pattern);
        out = nameBuffer(formatInteger(wideText(pattern), *name.argument));
    } else {
        loadResourceString(name.id, out);
    }
}

}  // namespace

Identity::Identity(const BandRow& band, const BucketRow& bucket)
    : bandName{band.nameId, {}, {}},
      type(band.type),
      assignment(band.assignment),
      bandNumber(band.number),
      details(detailsOf(band)),
      bucketName{bucket.nameId, {}, {}},
      bucketNumber(bucket.number) {}

void getBandTypeInfo(int scheme, int bandOrdinal, const Pyxis::FileSpecifier& component, int frame,
                     BandTypeInfo& out) {
    BandDetails details;
    identifyBand({scheme, nullptr}, bandOrdinal, component, frame, out, details);
}

void identifyBand(const SetNaming& naming, int bandOrdinal, const Pyxis::FileSpecifier& component,
                  int frame, BandTypeInfo& out, BandDetails& details) {
    const Pyxis::FileSpecifier file = componentAt(component, bandOrdinal);
    const std::optional<Identity> identity = identify(naming, file, frame, bandOrdinal);
    if (identity) {
        out.bandType = identity->type;
        out.bandAssignment = identity->assignment;
        out.bandNumber = identity->bandNumber;
        write(identity->bandName, out.bandName);
        details = identity->details;
    }
}

void getBucketInfo(int scheme, int bucketOrdinal, const Pyxis::FileSpecifier& component, int frame,
                   double /*vectorX*/, double /*vectorY*/, Pyxis::StringBuffer& bucketName,
                   int& bucketNumber) {
    identifyBucket({scheme, nullptr}, bucketOrdinal, component, frame, bucketName, bucketNumber);
}

void identifyBucket(const SetNaming& naming, int bucketOrdinal,
                    const Pyxis::FileSpecifier& component, int frame,
                    Pyxis::StringBuffer& bucketName, int& bucketNumber) {
    const Pyxis::FileSpecifier file = componentAt(component, 0);
    const std::optional<Identity> identity = identify(naming, file, frame, bucketOrdinal);
    if (identity) {
        write(identity->bucketName, bucketName);
        bucketNumber = identity->bucketNumber;
    }
}

}  // namespace kest
