#include "host/gdal/Opening.h"

#include <cpl_conv.h>
#include <gdal_frmts.h>
#include <gdal_priv.h>

#include <cstddef>
#include <memory>
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

/// When memory fails while GDAL sets itself up it ends the process, so there must be plenty.
template <typename Action>
void onceWithPlenty(std::once_flag& flag, const Action& action) {
    std::call_once(flag, [&action] {
        constexpr std::size_t kPlenty = 4 * 1024 * 1024;
        const auto plenty = std::make_unique_for_overwrite<char[]>(kPlenty);
        *static_cast<volatile char*>(plenty.get()) = 0;  // so that the request is made at all
        action();
    });
}

/// TIFF files need no driver but their own, and registering all of them takes as long as opening
/// a hundred files. NITF files hold images of other formats.
void registerDrivers(const char* driver) {
    static std::once_flag manager;
    static std::once_flag one;
    static std::once_flag all;
    onceWithPlenty(manager, GetGDALDriverManager);
    if (GDALGetDriverByName(driver) != nullptr) {
        return;  // the program has chosen its drivers, and may have left out others
    }
    if (std::string_view(driver) == "GTiff") {
        onceWithPlenty(one, GDALRegister_GTiff);
    } else {
        onceWithPlenty(all, GDALAllRegister);
    }
}

/// GDAL refuses to open what it is opening already, and after an exception believes that for good.
/// More slashes at the front make another name of the same file.
std::string nameNeverInterrupted(const std::string& prefix, const std::string& path, int times) {
    return prefix + std::string(static_cast<std::size_t>(times), '/') + path;
}

}  // namespace

DatasetPointer openForReading(const char* driver, const std::string& prefix,
                              const std::string& path, bool mayNameOverviews) {
    static thread_local int interruptions = 0;
    registerDrivers(driver);
    const ThreadOption noAuxiliaryFiles("GDAL_PAM_ENABLED", "NO");
    const char* const drivers[] = {driver, nullptr};
    const std::string name = nameNeverInterrupted(prefix, path, interruptions);
    const CPLStringList siblings = nothingBeside(path);
    ++interruptions;  // stays counted when an exception comes
    DatasetPointer dataset(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          drivers, nullptr, siblings.List()));
    --interruptions;
    // Metadata inside a file can name any other one as the place of its overviews.
    if (dataset && mayNameOverviews &&
        dataset->GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        dataset.reset();
    }
    return dataset;
}

}  // namespace Pyxis
