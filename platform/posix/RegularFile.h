#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace kest::platform {

/// An open regular file; closed with the object.
class RegularFile {
  public:
    /// Opens an existing regular file for reading; nothing when it is none or cannot be opened.
    static std::optional<RegularFile> open(std::u16string_view path);

    RegularFile(RegularFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    RegularFile& operator=(RegularFile&&) = delete;
    ~RegularFile();

    /// Size in bytes at this moment; 0 when it cannot be told.
    std::uint64_t size() const;
    /// Reads from the start of the file; answers the bytes read, fewer at its end or on an error.
    std::size_t readFromStart(void* buffer, std::size_t count) const;

  private:
    explicit RegularFile(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

}  // namespace kest::platform
