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

constexpr Scheme kGenericScheme{
    SchemeGeneric,
    "generic",
    "no common naming convention",
    nullptr,
    [](const BandFile& band) { return std::optional(Identity::generic(band.ordinal)); },
    [](std::u16string_view name) { return std::u16string(name); },
};

}  // namespace kest
