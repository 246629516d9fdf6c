#include <cpl_conv.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/file/Export.h"
#include "host/gdal/AuxiliaryPlace.h"
#include "host/gdal/ErrorCapture.h"
#include "host/gdal/GdalDataset.h"
#include "host/gdal/Opening.h"
#include "host/gdal/PrivateFiles.h"
#include "host/gdal/SystemText.h"
#include "host/gdal/VirtualFile.h"
#include "host/raster/Gdal.h"

namespace Pyxis {
namespace {

class GdalLayer final : public Gdal {
  public:
    Expected<std::unique_ptr<Dataset>> open(const Opening& opening, const std::string& prefix,
                                            std::size_t part) const override {
        const ErrorCapture errors;
        DatasetPointer dataset = openForReading(opening, prefix);
        if (!dataset) {
            return Refusal{Refusal::Kind::Damaged, PrivateFiles::withoutNames(errors.message())};
        }
        return std::unique_ptr<Dataset>(std::make_unique<GdalDataset>(std::move(dataset), part));
    }

    AuxiliaryPlace auxiliaryPlaceIn(const std::string& text) const override {
        return Pyxis::auxiliaryPlaceIn(text);
    }
    CoordinateSystem systemIn(const std::string& text) const override {
        const ErrorCapture silent;
        return Pyxis::systemIn(text);
    }
    Expected<FileHead> readHead(const std::string& path, std::size_t most) const override {
        return readVirtualHead(path, most);
    }
    Expected<std::vector<std::string>> listArchive(const std::string& path) const override {
        return Pyxis::listArchive(path);
    }

    std::optional<std::string> option(const char* name) const override {
        const char* value = CPLGetConfigOption(name, nullptr);
        return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    }
};

}  // namespace
}  // namespace Pyxis

/// The entry point for the library of component codecs.
extern "C" PYXIS_CODECS_API const Pyxis::Gdal* pyxisGdal() {
    static const Pyxis::GdalLayer layer;
    return &layer;
}
