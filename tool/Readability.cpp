#include "tool/Readability.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace kestms {

std::string whyNotReadable(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return std::generic_category().message(errno);
    }
    if (S_ISDIR(status.st_mode)) {
        return std::generic_category().message(EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        return "not a regular file";
    }
    if (status.st_size == 0) {
        return "the file is empty";
    }
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::generic_category().message(errno);
    }
    close(descriptor);
    return "no codec reads it: not a TIFF, NITF or FAST raster, or damaged";
}

}  // namespace kestms
