#include "host/formats/StandardCodecs.h"

#include <utility>

#include "host/cache/ReadAhead.h"
#include "host/gdal/GdalCodec.h"

namespace Pyxis {

StandardCodecs::StandardCodecs(QuickBird quickBird, Changes changes)
    : cache_(std::make_shared<FileCache>(changes == Changes::Notice ? FileCache::Changes::Notice
                                                                    : FileCache::Changes::Ignore)) {
    if (quickBird == QuickBird::With) {
        add(std::make_unique<NumberedPropertyCodec<QBTiffFormatCodec>>(quickBirdFormat(), cache_));
    }
    add(std::make_unique<NumberedPropertyCodec<TiffFormatCodec>>(tiffFormat(), cache_));
    add(std::make_unique<NumberedPropertyCodec<NITFFormatCodec>>(nitfFormat(), cache_));
    add(std::make_unique<GdalCodec<FASTFormatCodec>>(fastFormat(), cache_));
}

StandardCodecs::~StandardCodecs() = default;

void StandardCodecs::readAhead(const std::vector<std::string>& paths,
                               const std::function<bool()>& stop) {
    readingAhead_ = nullptr;  // what is still going on ends first
    readingAhead_ = std::make_unique<ReadAhead>(cache_, paths, stop);
}

void StandardCodecs::add(std::unique_ptr<ImageFormatCodec> codec) {
    registrations_.push_back(std::make_unique<CodecRegistration>(*codec));
    codecs_.push_back(std::move(codec));
}

}  // namespace Pyxis
