#include "platform/Platform.h"

namespace kest::platform {

StringModule::StringModule() = default;
StringModule::~StringModule() = default;
PlainFile::PlainFile() = default;
PlainFile::~PlainFile() = default;

}  // namespace kest::platform
