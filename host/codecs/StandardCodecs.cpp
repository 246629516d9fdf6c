#include "host/codecs/StandardCodecs.h"

#include <utility>

#include "host/cache/ReadAhead.h"
#include "host/codecs/RasterCodec.h"
#include "host/formats/Formats.h"
#include "host/raster/Gdal.h"
#include "host/raster/HandlePool.h"

namespace Pyxis {
namespace {

std::unique_ptr<ImageFormatCodec> codecFor(const Format& format,
                                           const std::shared_ptr<FileCache>& cache) {
    switch (format.interface) {
        case Format::Interface::QuickBird:
            return std::make_unique<NumberedPropertyCodec<QBTiffFormatCodec>>(format, cache);
        case Format::Interface::Tiff:
            return std::make_unique<NumberedPropertyCodec<TiffFormatCodec>>(format, cache);
        case Format::Interface::Nitf:
            return std::make_unique<NumberedPropertyCodec<NITFFormatCodec>>(format, cache);
        case Format::Interface::Fast:
            return std::make_unique<RasterCodec<FASTFormatCodec>>(format, cache);
        case Format::Interface::General:
            break;
    }
    return std::make_unique<RasterCodec<ImageFormatCodec>>(format, cache);
}

}  // namespace

StandardCodecs::Operation::Operation() : before_(FileCache::beginOperation()) {}

StandardCodecs::Operation::~Operation() {
    FileCache::endOperation(before_);
}

StandardCodecs::StandardCodecs(QuickBird quickBird, Changes changes)
    : cache_(std::make_shared<FileCache>(changes)) {
    setVirtualHeadReader(readHeadByGdal);
    for (const Format* format : formats()) {
        if (quickBird == QuickBird::With || format != &quickBirdFormat()) {
            add(codecFor(*format, cache_));
        }
    }
}

StandardCodecs::~StandardCodecs() = default;

void StandardCodecs::readAhead(const std::vector<std::string>& paths,
                               const std::function<bool()>& stop) {
    readingAhead_ = nullptr;  // waits for the previous one
    readingAhead_ = std::make_unique<ReadAhead>(cache_, paths, stop);
}

void StandardCodecs::finishReadingAhead() {
    if (readingAhead_) {
        readingAhead_->help();
    }
}

void StandardCodecs::allow(const PathPolicy& policy) {
    setPathPolicy(policy);
}

PathPolicy StandardCodecs::allowed() {
    return pathPolicy();
}

void StandardCodecs::closeFiles() {
    HandlePool::instance().closeIdle();
}

void StandardCodecs::add(std::unique_ptr<ImageFormatCodec> codec) {
    registrations_.push_back(std::make_unique<CodecRegistration>(*codec));
    codecs_.push_back(std::move(codec));
}

}  // namespace Pyxis
