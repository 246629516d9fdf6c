#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>

namespace kest::platform {

/// A regular file opened for reading, closed with the object. Opening never blocks: pipes and
/// devices are refused.
class RegularFile {
  public:
    static std::optional<RegularFile> open(const std::string& path);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    RegularFile& operator=(RegularFile&&) = delete;
    ~RegularFile();

    /// Size now; -1 when it cannot be told.
    off_t size() const;
    /// Reads up to `count` bytes from the start; answers how many there were.
    std::size_t readFromStart(void* buffer, std::size_t count) const;

  private:
    explicit RegularFile(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

}  // namespace kest::platform
