#include "host/codecs/StandardCodecs.h"

#include <utility>

#include "host/codecs/GdalCodec.h"

namespace Pyxis {

StandardCodecs::StandardCodecs(QuickBird quickBird) {
    const auto cache = std::make_shared<FileCache>();
    if (quickBird == QuickBird::With) {
        add(std::make_unique<NumberedPropertyCodec<QBTiffFormatCodec>>(quickBirdFormat(), cache));
    }
    add(std::make_unique<NumberedPropertyCodec<TiffFormatCodec>>(tiffFormat(), cache));
    add(std::make_unique<NumberedPropertyCodec<NITFFormatCodec>>(nitfFormat(), cache));
    add(std::make_unique<GdalCodec<FASTFormatCodec>>(fastFormat(), cache));
}

StandardCodecs::~StandardCodecs() = default;

void StandardCodecs::add(std::unique_ptr<ImageFormatCodec> codec) {
    registrations_.push_back(std::make_unique<CodecRegistration>(*codec));
    codecs_.push_back(std::move(codec));
}

}  // namespace Pyxis
