#include "host/gdal/DatasetHandle.h"

#include <gdal_priv.h>

#include <utility>

#include "host/gdal/HandlePool.h"
#include "host/gdal/PrivateFiles.h"
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
    : DatasetHandle(opening, {state, stampOf(opening.path, false).auxiliary, {}}, {""}) {}

DatasetHandle::DatasetHandle(Opening opening, FileStamp stamp, std::vector<std::string> prefixes)
    : opening_(std::move(opening)), stamp_(std::move(stamp)), prefixes_(std::move(prefixes)) {
    HandlePool::instance();  // an allocation may fail here, but not in the destructor
}

DatasetHandle::~DatasetHandle() {
    HandlePool::instance().forget(*this);
    if (isOpen()) {
        const ErrorCapture silent;
        datasets_.clear();
    }
}

std::unique_ptr<DatasetHandle> DatasetHandle::another() const {
    return std::unique_ptr<DatasetHandle>(new DatasetHandle(opening_, stamp_, prefixes_));
}

bool DatasetHandle::hasChanged() const {
    return stampOf(path(), !stamp_.worldFiles.empty()) != stamp_;
}

void DatasetHandle::watchWorldFiles() {
    stamp_ = stampOf(path(), true);
}

Expected<DatasetPointer> DatasetHandle::openDataset(const std::string& prefix) const {
    const ErrorCapture errors;
    DatasetPointer dataset = openForReading(opening_, prefix);
    if (!dataset) {
        return Refusal{Refusal::Kind::Damaged,
                       withoutFile(PrivateFiles::withoutNames(errors.message()), path())};
    }
    return dataset;
}

Expected<Dataset> DatasetHandle::open() {
    Expected<DatasetPointer> dataset = openDataset("");
    if (!dataset) {
        return dataset.refusal();
    }
    datasets_.push_back(std::move(*dataset));
    return Dataset(*datasets_.front(), 0);
}

Expected<Dataset> DatasetHandle::openPart(const std::string& prefix) {
    Expected<DatasetPointer> dataset = openDataset(prefix);
    if (!dataset) {
        return dataset.refusal();
    }
    prefixes_.push_back(prefix);
    datasets_.push_back(std::move(*dataset));
    return Dataset(*datasets_.back(), datasets_.size() - 1);
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
        const ErrorCapture silent;
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
    std::vector<DatasetPointer> datasets;
    for (const std::string& prefix : prefixes_) {
        Expected<DatasetPointer> dataset = openDataset(prefix);
        if (!dataset && HandlePool::instance().makeRoom(this)) {
            dataset = openDataset(prefix);
        }
        if (!dataset) {
            return false;
        }
        datasets.push_back(std::move(*dataset));
    }
    datasets_ = std::move(datasets);
    return true;
}

GDALDataset* DatasetHandle::Use::dataset(std::size_t part) noexcept {
    return answerOr<GDALDataset*>(nullptr, [&]() -> GDALDataset* {
        if (!handle_.openAgain()) {
            return nullptr;
        }
        HandlePool::instance().used(handle_);
        return handle_.datasets_[part].get();
    });
}

GDALRasterBand* DatasetHandle::Use::band(std::size_t part, int number) noexcept {
    GDALDataset* open = dataset(part);
    return open != nullptr ? open->GetRasterBand(number) : nullptr;
}

}  // namespace Pyxis
