#include "host/gdal/GdalOpen.h"

#include <cpl_conv.h>
#include <gdal_frmts.h>
#include <unistd.h>

#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>

#include "host/file/FileHead.h"

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

/// The files that GDAL may look at beside the one it opens: the file itself and its world file.
/// Naming them keeps GDAL from reading whole directories, and from following auxiliary files and
/// overviews of any format to wherever those point.
CPLStringList allowedSiblings(const std::string& path, bool withWorldFile) {
    CPLStringList names;
    names.AddString(CPLGetFilename(path.c_str()));
    for (const std::string& name :
         withWorldFile ? worldFilesOf(path) : std::vector<std::string>()) {
        std::error_code gone;  // a pipe would block
        if (std::filesystem::is_regular_file(name, gone) && access(name.c_str(), R_OK) == 0) {
            names.AddString(CPLGetFilename(name.c_str()));
        }
    }
    return names;
}

/// TIFF files need no driver but their own, and registering all of them takes as long as opening
/// a hundred files. NITF files hold images of other formats.
void registerDrivers(std::string_view driver) {
    static std::once_flag one;
    static std::once_flag all;
    if (driver == "GTiff") {
        std::call_once(one, GDALRegister_GTiff);
    } else {
        std::call_once(all, GDALAllRegister);
    }
}

}  // namespace

GDALDatasetUniquePtr openForReading(const char* driver, const std::string& name,
                                    const std::string& path, const Opening& opening) {
    registerDrivers(driver);
    const ThreadOption noAuxiliaryFiles("GDAL_PAM_ENABLED", "NO");
    const char* const drivers[] = {driver, nullptr};
    GDALDatasetUniquePtr dataset(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          drivers, nullptr, allowedSiblings(path, opening.withWorldFile).List()));
    // Metadata inside a file can name any other one as the place of its overviews.
    if (dataset && opening.mayNameOverviews &&
        dataset->GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        dataset.reset();
    }
    return dataset;
}

}  // namespace Pyxis
