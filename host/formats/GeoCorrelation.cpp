#include "host/formats/GeoCorrelation.h"

#include <utility>

#include "host/Guarded.h"

namespace Pyxis {

OriginCorrelation* OriginCorrelation::clone() const {
    return newOrNull<OriginCorrelation>(*this);
}

CornerCorrelation* CornerCorrelation::clone() const {
    return newOrNull<CornerCorrelation>(*this);
}

std::unique_ptr<FormatCodecGeoCorrelation> correlationOf(std::shared_ptr<const GeoFacts> facts) {
    if (!facts) {
        return nullptr;
    }
    if (facts->isToldByRotation()) {
        return std::make_unique<OriginCorrelation>(std::move(facts));
    }
    return std::make_unique<CornerCorrelation>(std::move(facts));
}

}  // namespace Pyxis
