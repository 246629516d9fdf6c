#include "tool/raster/RelativePath.h"

namespace fs = std::filesystem;

namespace kestms {

fs::path throughRealDirectory(const std::string& path) {
    const fs::path absolute = fs::absolute(path);
    return fs::weakly_canonical(absolute.parent_path()) / absolute.filename();
}

std::string relativePath(const std::string& file, const std::string& from) {
    // The output itself takes the place of the file that a link leads to.
    const fs::path directory = fs::weakly_canonical(fs::absolute(from)).parent_path();
    return throughRealDirectory(file).lexically_relative(directory).string();
}

}  // namespace kestms
