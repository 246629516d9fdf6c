#include "tests/fakes/Paths.h"

namespace fakes {

const char* const kResources = KEST_RESOURCES;
const char* const kTool = KEST_TOOL;

}  // namespace fakes
