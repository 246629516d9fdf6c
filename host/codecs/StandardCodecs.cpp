#include "host/codecs/StandardCodecs.h"

#include <utility>

#include "host/codecs/GdalCodec.h"

namespace Pyxis {

StandardCodecs::StandardCodecs(QuickBird quickBird) {
    if (quickBird == QuickBird::With) {
        add(std::make_unique<NumberedPropertyCodec<QBTiffFormatCodec>>(quickBirdFormat()));
    }
    add(std::make_unique<NumberedPropertyCodec<TiffFormatCodec>>(tiffFormat()));
    add(std::make_unique<NumberedPropertyCodec<NITFFormatCodec>>(nitfFormat()));
    add(std::make_unique<GdalCodec<FASTFormatCodec>>(fastFormat()));
}

StandardCodecs::~StandardCodecs() = default;

void StandardCodecs::add(std::unique_ptr<ImageFormatCodec> codec) {
    registrations_.push_back(std::make_unique<CodecRegistration>(*codec));
    codecs_.push_back(std::move(codec));
}

}  // namespace Pyxis
