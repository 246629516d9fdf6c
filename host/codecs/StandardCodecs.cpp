#include "host/codecs/StandardCodecs.h"

namespace Pyxis {

StandardCodecs::StandardCodecs() = default;
StandardCodecs::~StandardCodecs() = default;

}  // namespace Pyxis
