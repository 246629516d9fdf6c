#pragma once

#include <memory>
#include <vector>

#include "host/CodecRegistry.h"
#include "host/codecs/Export.h"

namespace Pyxis {

/// The host's component codecs in the order in which they are asked, registered for as long as
/// the object lives.
class PYXIS_CODECS_API StandardCodecs {
  public:
    StandardCodecs();
    StandardCodecs(const StandardCodecs&) = delete;
    StandardCodecs& operator=(const StandardCodecs&) = delete;
    ~StandardCodecs();

  private:
    std::vector<std::unique_ptr<ImageFormatCodec>> codecs_;
    std::vector<std::unique_ptr<CodecRegistration>> registrations_;
};

}  // namespace Pyxis
