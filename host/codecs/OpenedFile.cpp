#include "host/codecs/OpenedFile.h"

#include <cpl_conv.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "host/codecs/GdalFormat.h"

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

void registerDrivers() {
    static std::once_flag once;
    std::call_once(once, GDALAllRegister);
}

/// A relative path could read as one of the drivers' own names for parts of files.
std::string plainName(const std::string& path) {
    return path.front() == '/' ? path : "./" + path;
}

/// The files that GDAL may look at beside the one it opens: the file itself and, where there is
/// one, its world file. Naming them keeps GDAL from reading whole directories, and from following
/// auxiliary files and overviews of any format to wherever those point.
CPLStringList allowedSiblings(const std::string& path) {
    CPLStringList names;
    names.AddString(CPLGetFilename(path.c_str()));
    const std::size_t dot = path.rfind('.');
    const std::size_t slash = path.rfind('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) {
        return names;
    }
    for (const char* extension : {".tfw", ".TFW", ".tifw", ".wld"}) {
        const std::string worldFile = path.substr(0, dot) + extension;
        if (access(worldFile.c_str(), R_OK) == 0) {
            names.AddString(CPLGetFilename(worldFile.c_str()));
        }
    }
    return names;
}

/// Opens without ever writing beside the file: what GDAL computes about it is not stored.
GDALDatasetUniquePtr openWith(const GdalFormat& format, const std::string& name,
                              const CPLStringList& siblings) {
    const ThreadOption noAuxiliaryFiles("GDAL_PAM_ENABLED", "NO");
    const char* const drivers[] = {format.driver(), nullptr};
    return GDALDatasetUniquePtr(
        GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                          drivers, nullptr, siblings.List()));
}

/// Metadata inside a file can name any other one as the place of its overviews.
bool namesForeignOverviews(GDALDataset& dataset) {
    return dataset.GetMetadataItem("OVERVIEW_FILE", "OVERVIEWS") != nullptr;
}

}  // namespace

std::optional<FileHead> readHead(const std::string& path, std::string& why) {
    if (path.empty()) {
        why = "no file name";
        return std::nullopt;
    }
    if (path.rfind("/vsi", 0) == 0) {
        why = "not a plain file";
        return std::nullopt;
    }
    // A pipe or device must not block before it is known to be one.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    std::optional<FileHead> head;
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        why = std::strerror(errno);
    } else if (S_ISDIR(status.st_mode)) {
        why = "is a directory";
    } else if (!S_ISREG(status.st_mode)) {
        why = "not a regular file";
    } else {
        head.emplace();
        head->size = static_cast<std::uint64_t>(status.st_size);
        head->bytes.resize(GdalFormat::kHeadBytes);
        const ssize_t got = pread(descriptor, head->bytes.data(), head->bytes.size(), 0);
        head->bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    close(descriptor);
    return head;
}

OpenedFile::OpenedFile(std::string path, std::uint64_t size)
    : path_(std::move(path)), size_(size), files_{path_} {}

OpenedFile::~OpenedFile() {
    const ErrorCapture silent;
    datasets_.clear();
}

std::shared_ptr<OpenedFile> OpenedFile::open(const GdalFormat& format, const std::string& path,
                                             std::string& why) {
    const std::optional<FileHead> head = readHead(path, why);
    if (!head) {
        return nullptr;
    }
    if (!format.matches(head->bytes)) {
        why = std::string("not a ") + format.texts().name + " file";
        return nullptr;
    }
    why = format.refuse(path, *head);
    if (!why.empty()) {
        return nullptr;
    }
    registerDrivers();
    const ErrorCapture errors;
    std::shared_ptr<OpenedFile> file(new OpenedFile(path, head->size));
    if (file->openPart(format, plainName(path)) == nullptr) {
        why = errors.message().empty() ? std::string("damaged ") + format.texts().name + " file"
                                       : errors.message();
        return nullptr;
    }
    why = format.load(*file);
    if (why.empty() && file->frames_.empty()) {
        why = "holds no raster";
    }
    return why.empty() ? file : nullptr;
}

GDALDataset* OpenedFile::openPart(const GdalFormat& format, const std::string& name) {
    GDALDatasetUniquePtr dataset = openWith(format, name, allowedSiblings(path_));
    if (!dataset) {
        return nullptr;
    }
    if (namesForeignOverviews(*dataset)) {
        CPLError(CE_Failure, CPLE_AppDefined, "names another file as its overviews");
        return nullptr;
    }
    datasets_.push_back(std::move(dataset));
    return datasets_.back().get();
}

GDALRasterBand& OpenedFile::band(int index) {
    const FrameSource& source = frame(index);
    return *source.dataset->GetRasterBand(source.band);
}

std::shared_ptr<const GeoFacts> OpenedFile::geoFacts(int index) {
    GDALDataset* dataset = frame(index).dataset;
    if (dataset != geoDataset_) {
        geoFacts_ = readGeoFacts(*dataset);
        geoDataset_ = dataset;
    }
    return geoFacts_;
}

void OpenedFile::addBandsOf(GDALDataset& dataset) {
    for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
        addFrame({&dataset, band, {}});
    }
}

}  // namespace Pyxis
