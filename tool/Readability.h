#pragma once

#include <string>

namespace kestms {

/// Why no codec reads the file, in a few words; call it for files that none does.
std::string whyNotReadable(const std::string& path);

}  // namespace kestms
