#include "host/gdal/Opening.h"

#include <cpl_conv.h>
#include <gdal_frmts.h>
#include <gdal_priv.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "host/file/PathPolicy.h"
#include "host/gdal/PrivateFiles.h"
#include "host/gdal/ThreadOption.h"

namespace Pyxis {
namespace {

/// The files that GDAL may look at beside the one it opens: none but its companions. It takes a
/// list of siblings at its word only when the file itself is the one name on it; with a second name
/// it goes on to auxiliary files and overviews, and through those to any file or network address.
CPLStringList siblingsOf(const Opening& opening) {
    CPLStringList names;
    names.AddString(CPLGetFilename(opening.path.c_str()));
    for (const std::string& companion : opening.companions) {
        names.AddString(CPLGetFilename(companion.c_str()));
    }
    return names;
}

/// When memory fails while GDAL sets itself up it ends the process, so there must be plenty.
template <typename Action>
void onceWithPlenty(std::once_flag& flag, const Action& action) {
    std::call_once(flag, [&action] {
        constexpr std::size_t kPlenty = 4U << 20U;
        const auto plenty = std::make_unique_for_overwrite<char[]>(kPlenty);
        *static_cast<volatile char*>(plenty.get()) = 0;  // so that the request is made at all
        action();
    });
}

DatasetPointer open(const Opening& opening, const std::string& name,
                    std::shared_ptr<PrivateFiles> files) {
    const char* const drivers[] = {opening.driver, nullptr};
    const CPLStringList siblings = siblingsOf(opening);
    return {
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          drivers, nullptr, siblings.List()),
        CloseDataset{std::move(files)}};
}

/// GDAL refuses to open what it is opening already, and after an exception believes that for
/// good. More slashes at the front make another name of the same file.
DatasetPointer openInDirectory(const Opening& opening, const std::string& prefix) {
    static thread_local std::size_t interruptions = 0;
    const std::string name = prefix + std::string(interruptions, '/') + opening.path;
    ++interruptions;  // stays counted when an exception comes
    DatasetPointer dataset = open(opening, name, nullptr);
    --interruptions;
    return dataset;
}

DatasetPointer openAlone(const Opening& opening, const std::string& prefix) {
    std::vector<std::string> paths = {opening.path};
    paths.insert(paths.end(), opening.companions.begin(), opening.companions.end());
    auto files = std::make_shared<PrivateFiles>(std::move(paths));
    const std::string name = prefix + files->name();
    return open(opening, name, std::move(files));
}

}  // namespace

/// TIFF files need no driver but their own, and registering all of them takes as long as opening
/// a hundred files. NITF files hold images of other formats.
void registerDriver(const char* driver) {
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

void CloseDataset::operator()(GDALDataset* dataset) const {
    GDALClose(dataset);
}

DatasetPointer openForReading(const Opening& opening, const std::string& prefix) {
    registerDriver(opening.driver);
    const ThreadOption noAuxiliaryFiles("GDAL_PAM_ENABLED", "NO");
    const ThreadOption noListing("GDAL_DISABLE_READDIR_ON_OPEN", "EMPTY_DIR");
    const bool isAlone = opening.view == View::FileAlone || kindOf(opening.path) != PathKind::Plain;
    DatasetPointer dataset =
        isAlone ? openAlone(opening, prefix) : openInDirectory(opening, prefix);
    // Metadata inside a file can name any other one as the place of its overviews.
    if (dataset && opening.mayNameOverviews &&
        dataset->GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        dataset.reset();
    }
    return dataset;
}

}  // namespace Pyxis
