#include "host/gdal/Opening.h"

#include <cpl_conv.h>
#include <gdal_frmts.h>
#include <gdal_priv.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "host/file/PathPolicy.h"
#include "host/gdal/PrivateFiles.h"
#include "host/gdal/ThreadOption.h"

namespace Pyxis {
namespace {

/// The files that GDAL may read beside the one it opens: only its companions. GDAL respects a list
/// of siblings only if the file itself is its one entry; with a second entry it also reads
/// auxiliary files and overviews, and through those any file or network address.
CPLStringList siblingsOf(const Opening& opening) {
    CPLStringList names;
    names.AddString(CPLGetFilename(opening.path.c_str()));
    for (const std::string& companion : opening.companions) {
        names.AddString(CPLGetFilename(companion.c_str()));
    }
    return names;
}

/// GDAL ends the process when an allocation fails during its setup, so memory must be available.
template <typename Action>
void onceWithPlenty(std::once_flag& flag, const Action& action) {
    std::call_once(flag, [&action] {
        constexpr std::size_t kPlenty = 4U << 20U;
        const auto plenty = std::make_unique_for_overwrite<char[]>(kPlenty);
        // So that the allocation is not optimised away.
        *static_cast<volatile char*>(plenty.get()) = 0;
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

/// GDAL refuses to open a file that it is opening already, and after an exception does so for good.
/// More leading slashes make another name of the same file.
DatasetPointer openInDirectory(const Opening& opening, const std::string& prefix) {
    static thread_local std::size_t interruptions = 0;
    const std::string name = prefix + std::string(interruptions, '/') + opening.path;
    ++interruptions;  // remains counted after an exception
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

/// TIFF files need only their own driver, and registering all takes as long as opening a hundred
/// files. NITF files contain images of other formats.
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
    // Metadata in a file can name any other file as its overviews.
    if (dataset && opening.mayNameOverviews &&
        dataset->GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        dataset.reset();
    }
    return dataset;
}

}  // namespace Pyxis
