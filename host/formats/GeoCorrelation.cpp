#include "host/formats/GeoCorrelation.h"

#include <utility>

#include "pyxis/NoThrow.h"

namespace Pyxis {

const GeoCorrelationTexts& GeoCorrelationTexts::shared() {
    static const auto* const texts = new GeoCorrelationTexts;
    return *texts;
}

OriginCorrelation* OriginCorrelation::clone() const {
    return makeOrNull<OriginCorrelation>([&] { return new OriginCorrelation(*this); });
}

CornerCorrelation* CornerCorrelation::clone() const {
    return makeOrNull<CornerCorrelation>([&] { return new CornerCorrelation(*this); });
}

std::unique_ptr<FormatCodecGeoCorrelation> correlationOf(std::shared_ptr<const GeoFacts> facts) {
    if (!facts) {
        return nullptr;
    }
    if (facts->rotationDeterminesCorners()) {
        return std::make_unique<OriginCorrelation>(std::move(facts));
    }
    return std::make_unique<CornerCorrelation>(std::move(facts));
}

}  // namespace Pyxis
