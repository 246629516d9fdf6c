#pragma once

#include <memory>
#include <vector>

#include "host/CodecRegistry.h"
#include "host/codecs/Export.h"

namespace Pyxis {

/// The host's component codecs in the order in which they are asked (QuickBird TIFF, TIFF, NITF,
/// FAST), registered for as long as the object lives.
class PYXIS_CODECS_API StandardCodecs {
  public:
    /// Without the codec for QuickBird files the plain TIFF codec reads them.
    enum class QuickBird { With, Without };

    explicit StandardCodecs(QuickBird quickBird = QuickBird::With);
    StandardCodecs(const StandardCodecs&) = delete;
    StandardCodecs& operator=(const StandardCodecs&) = delete;
    /// Closes the images of these codecs that nobody has deleted.
    ~StandardCodecs();

  private:
    void add(std::unique_ptr<ImageFormatCodec> codec);

    std::vector<std::unique_ptr<ImageFormatCodec>> codecs_;
    std::vector<std::unique_ptr<CodecRegistration>> registrations_;
};

}  // namespace Pyxis
