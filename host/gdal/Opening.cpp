#include "host/gdal/Opening.h"

#include <cpl_conv.h>
#include <gdal_frmts.h>
#include <gdal_priv.h>

#include <mutex>
#include <optional>
#include <string_view>

namespace Pyxis {
namespace {

/// A configuration option of GDAL for this thread, put back at the end.
class ThreadOption {
  public:
    ThreadOption(const char* key, const char* value) : key_(key) {
        const char* before = CPLGetThreadLocalConfigOption(key, nullptr);
        if (before != nullptr) {
            before_ = before;
        }
        CPLSetThreadLocalConfigOption(key, value);
    }
    ThreadOption(const ThreadOption&) = delete;
    ThreadOption& operator=(const ThreadOption&) = delete;
    ~ThreadOption() { CPLSetThreadLocalConfigOption(key_, before_ ? before_->c_str() : nullptr); }

  private:
    const char* key_;
    std::optional<std::string> before_;
};

/// The files that GDAL may look at beside the one it opens: none. It takes a list of siblings at
/// its word only when the file itself is the one name on it; with a second name it goes on to
/// auxiliary files and overviews, and through those to any file or network address.
CPLStringList nothingBeside(const std::string& path) {
    CPLStringList names;
    names.AddString(CPLGetFilename(path.c_str()));
    return names;
}

/// TIFF files need no driver but their own, and registering all of them takes as long as opening
/// a hundred files. NITF files hold images of other formats.
void registerDrivers(const char* driver) {
    if (GDALGetDriverByName(driver) != nullptr) {
        return;  // the program has chosen its drivers, and may have left out others
    }
    static std::once_flag one;
    static std::once_flag all;
    if (std::string_view(driver) == "GTiff") {
        std::call_once(one, GDALRegister_GTiff);
    } else {
        std::call_once(all, GDALAllRegister);
    }
}

}  // namespace

DatasetPointer openForReading(const char* driver, const std::string& name, const std::string& path,
                              bool mayNameOverviews) {
    registerDrivers(driver);
    const ThreadOption noAuxiliaryFiles("GDAL_PAM_ENABLED", "NO");
    const char* const drivers[] = {driver, nullptr};
    DatasetPointer dataset(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          drivers, nullptr, nothingBeside(path).List()));
    // Metadata inside a file can name any other one as the place of its overviews.
    if (dataset && mayNameOverviews &&
        dataset->GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        dataset.reset();
    }
    return dataset;
}

}  // namespace Pyxis
