#include "bands/FileName.h"
#include "bands/schemes/Schemes.h"

namespace kest {

Identity Identity::generic(int ordinal) {
    Identity identity;
    identity.bandName = {string_id::kGenericBandPattern, ordinal, {}};
    identity.bandNumber = ordinal;
    identity.bucketName = {string_id::kGenericBucketPattern, ordinal, {}};
    identity.bucketNumber = ordinal;
    return identity;
}

std::optional<std::u16string> fileNameAsReference(const BandFile& first) {
    return fileNameOf(first.file).name;
}

constexpr Scheme kGenericScheme{
    SchemeGeneric,
    "generic",
    "no common naming convention",
    nullptr,
    [](const BandFile& band) { return std::optional(Identity::generic(band.ordinal)); },
    fileNameAsReference,
};

}  // namespace kest
