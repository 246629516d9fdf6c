#include "host/formats/GdalFormat.h"

#include "host/gdal/OpenedFile.h"

namespace Pyxis {

GdalFormat::GdalFormat() = default;
GdalFormat::~GdalFormat() = default;

std::string GdalFormat::refuse(const std::string& /*path*/, const FileHead& /*head*/) const {
    return {};
}

std::string GdalFormat::load(OpenedFile& file) const {
    file.addBandsOf(file.mainDataset());
    return {};
}

std::string_view GdalFormat::reject(const OpenedFile& /*file*/) const {
    return {};
}

bool GdalFormat::takesWorldFile() const {
    return false;
}

bool GdalFormat::mayBeKept() const {
    return true;
}

KnownFacts GdalFormat::knownFacts(const std::string& /*path*/, const FileHead& /*head*/) const {
    return {};
}

bool GdalFormat::hasOverviews() const {
    return true;
}

}  // namespace Pyxis
