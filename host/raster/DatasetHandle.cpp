#include "host/raster/DatasetHandle.h"

#include <utility>

#include "host/file/AuxiliaryFile.h"
#include "host/raster/HandlePool.h"
#include "pyxis/NoThrow.h"

namespace Pyxis {
namespace {

/// GDAL and its libraries each prefix the name. The caller names the file itself, and perhaps not
/// by its absolute path.
std::string withoutFile(std::string message, const std::string& path) {
    const std::string start = path + ":";
    while (message.starts_with(start)) {
        message.erase(0, message.find_first_not_of(' ', start.size()));
    }
    return message;
}

}  // namespace

DatasetHandle::DatasetHandle(Opening opening, const FileState& state)
    : DatasetHandle(opening, {state, stateOf(auxiliaryFileOf(opening.path)), {}}, {""}) {}

DatasetHandle::DatasetHandle(Opening opening, FileStamp stamp, std::vector<std::string> prefixes)
    : opening_(std::move(opening)), stamp_(std::move(stamp)), prefixes_(std::move(prefixes)) {
    HandlePool::instance();  // an allocation may fail here, but not in the destructor
}

DatasetHandle::~DatasetHandle() {
    HandlePool::instance().forget(*this);
}

std::unique_ptr<DatasetHandle> DatasetHandle::another() const {
    return std::unique_ptr<DatasetHandle>(new DatasetHandle(opening_, stamp_, prefixes_));
}

bool DatasetHandle::hasChanged() const {
    return stampOf(path(), !stamp_.worldFiles.empty()) != stamp_;
}

bool DatasetHandle::mayHaveAuxiliaryFile() const {
    return stamp_.auxiliary != FileState();
}

void DatasetHandle::watchWorldFiles() {
    stamp_ = stampOf(path(), true);
}

Expected<std::unique_ptr<Dataset>> DatasetHandle::openDataset(const std::string& prefix,
                                                              std::size_t part) const {
    const Expected<const Gdal*> gdal = Gdal::load();
    if (!gdal) {
        return gdal.refusal();
    }
    Expected<std::unique_ptr<Dataset>> dataset = (*gdal)->open(opening_, prefix, part);
    if (!dataset) {
        const Refusal& refusal = dataset.refusal();
        return Refusal{refusal.kind, withoutFile(refusal.reason, path())};
    }
    return dataset;
}

Expected<const Dataset*> DatasetHandle::keep(Expected<std::unique_ptr<Dataset>> dataset) {
    if (!dataset) {
        return dataset.refusal();
    }
    datasets_.push_back(std::move(*dataset));
    return datasets_.back().get();
}

Expected<const Dataset*> DatasetHandle::open() {
    return keep(openDataset("", 0));
}

Expected<const Dataset*> DatasetHandle::openPart(const std::string& prefix) {
    Expected<const Dataset*> dataset = keep(openDataset(prefix, datasets_.size()));
    if (dataset) {
        prefixes_.push_back(prefix);
    }
    return dataset;
}

void DatasetHandle::loaded() {
    if (isOpen()) {
        const std::lock_guard<std::mutex> lock(mutex_);
        HandlePool::instance().used(*this);
    }
}

bool DatasetHandle::closeIfIdle() {
    const std::unique_lock<std::mutex> lock(mutex_, std::try_to_lock);
    if (lock) {
        datasets_.clear();
    }
    return lock.owns_lock();
}

/// False when the file has changed since it was first opened, so that its known facts and its
/// pixels would not agree.
bool DatasetHandle::openAgain() {
    if (isOpen()) {
        return true;
    }
    if (hasChanged()) {
        return false;
    }
    std::vector<std::unique_ptr<Dataset>> datasets;
    for (const std::string& prefix : prefixes_) {
        Expected<std::unique_ptr<Dataset>> dataset = openDataset(prefix, datasets.size());
        if (!dataset && HandlePool::instance().makeRoom(this)) {
            dataset = openDataset(prefix, datasets.size());
        }
        if (!dataset) {
            return false;
        }
        datasets.push_back(std::move(*dataset));
    }
    datasets_ = std::move(datasets);
    return true;
}

const Dataset* DatasetHandle::Use::dataset(std::size_t part) noexcept {
    return answerOr<const Dataset*>(nullptr, [&]() -> const Dataset* {
        if (!handle_.openAgain()) {
            return nullptr;
        }
        HandlePool::instance().used(handle_);
        return handle_.datasets_[part].get();
    });
}

}  // namespace Pyxis
