#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Pyxis {

class FileCache;

/// Opens the files on several threads and leaves them in the cache. Ends early when `stop` says so.
void readAhead(FileCache& cache, const std::vector<std::string>& paths,
               const std::function<bool()>& stop);

}  // namespace Pyxis
