#include "reader/BandCollector.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numeric>
#include <utility>

#include "bands/BandIdentification.h"
#include "pyxis/ComponentCodecs.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "pyxis/ReadImageFile.h"
#include "sets/PropertyCloser.h"

namespace kest {
namespace {

/// Sorts stably by `number`; returns the new position of each record.
template <typename Record>
std::vector<int> sortByNumber(std::vector<Record>& records, int Record::*number) {
    std::vector<std::size_t> order(records.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return records[left].*number < records[right].*number;
    });
    std::vector<Record> sorted;
    sorted.reserve(records.size());
    std::vector<int> places(records.size());
    for (const std::size_t old : order) {
        places[old] = static_cast<int>(sorted.size());
        sorted.push_back(records[old]);
    }
    records.swap(sorted);
    return places;
}

int numberOf(std::size_t count) {
    return static_cast<int>(count);
}

}  // namespace

BandCollector::BandCollector(SetNaming naming, double tolerance)
    : naming_(std::move(naming)), tolerance_(tolerance) {}

void BandCollector::add(int index, const Component& component,
                        const Pyxis::ImageFormatCodec& codec) {
    Source source{component, {}};
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&source.file));
    if (!image) {
        return;
    }
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> opened(
        image->openFrame(source.frame));
    if (!opened) {
        return;
    }
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties(opened->getProperties());
    const bool isFast = dynamic_cast<const FASTFormatCodec*>(&codec) != nullptr;
    if (!properties || !readProperties(*properties, isFast, source)) {
        return;
    }
    properties.reset();
    addBand(index, source, codec);
}

bool BandCollector::readProperties(Pyxis::FormatCodecPropertySetIterator& properties, bool isFast,
                                   Source& source) {
    bool geoFound = false;
    bool bandFileFound = !isFast;
    for (properties.start(); !properties.endOfList() && !(geoFound && bandFileFound);
         properties.step()) {
        const Pyxis::FormatCodecPropertyInterface* property = properties.openProperty();
        if (property == nullptr) {
            continue;
        }
        const PropertyCloser closer(properties);
        const auto* geo =
            geoFound ? nullptr : dynamic_cast<const Pyxis::FormatCodecGeoCorrelation*>(property);
        const auto* bandFile =
            bandFileFound ? nullptr : dynamic_cast<const FASTBandFilenameProperty*>(property);
        if (geo != nullptr) {
            geoFound = true;
            // Not used (compatibility.md, 18).
            int code = 0;
            geo->getCoordinateSystemCode(code);
            geo->getPixelSize(source.pixelSize);
        } else if (bandFile != nullptr) {
            bandFileFound = true;
            Pyxis::StringBuffer name;
            bandFile->getValue(name);
            source.file.set(name, Pyxis::FileSpecifier::Type::PlainFile);
            source.frame = 0;
        }
    }
    return geoFound && bandFileFound;
}

/// Sets have few buckets, so a linear search will do. A NaN size matches none.
int BandCollector::bucketOf(const Source& source) {
    const auto found =
        std::find_if(buckets_.begin(), buckets_.end(), [this, &source](const BucketRecord& bucket) {
            return std::abs(bucket.bucketVector.x - source.pixelSize.x) <= tolerance_ &&
                   std::abs(bucket.bucketVector.y - source.pixelSize.y) <= tolerance_;
        });
    if (found != buckets_.end()) {
        return static_cast<int>(found - buckets_.begin());
    }
    BucketRecord bucket;
    bucket.bucketVector = source.pixelSize;
    identifyBucket(naming_, numberOf(buckets_.size()) + 1, source.file, source.frame,
                   bucket.bucketName, bucket.bucketNumber);
    buckets_.push_back(bucket);
    return numberOf(buckets_.size()) - 1;
}

void BandCollector::addBand(int index, const Source& source, const Pyxis::ImageFormatCodec& codec) {
    BandRecord band;
    band.componentIndex = index;
    band.bucketIndex = bucketOf(source);
    band.indexInBucket = buckets_[static_cast<std::size_t>(band.bucketIndex)].bandCount++;
    band.codec = &codec;
    BandTypeInfo info;
    identifyBand(naming_, numberOf(bands_.size()) + 1, source.file, source.frame, info,
                 band.details);
    band.bandType = info.bandType;
    band.bandAssignment = info.bandAssignment;
    band.bandNumber = info.bandNumber;
    band.bandName = info.bandName;
    bands_.push_back(band);
}

void BandCollector::sort() {
    sortByNumber(bands_, &BandRecord::bandNumber);
    const std::vector<int> places = sortByNumber(buckets_, &BucketRecord::bucketNumber);
    for (BandRecord& band : bands_) {
        band.bucketIndex = places[static_cast<std::size_t>(band.bucketIndex)];
        band.details.number = band.bandNumber;
        band.details.bucketNumber =
            buckets_[static_cast<std::size_t>(band.bucketIndex)].bucketNumber;
    }
}

}  // namespace kest
