#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "pyxis/StringBuffer.h"

// Services of the operating system. Each system implements them in its own folder, posix/ or
// windows/, one of which is built.

namespace kest::platform {

/// Longest name part and extension of a path, in characters; longer ones are cut (compatibility.md,
/// 25).
inline constexpr std::size_t kMaxNamePart = 255;

/// The last part of a path: its name, and its extension with the dot.
struct PathName {
    std::u16string name;
    std::u16string extension;
};

/// Splits the name and extension off a path. A name whose only dot comes first is all extension.
PathName splitPathName(std::u16string_view path);

/// A loaded module of string resources: texts by number.
class StringModule {
  public:
    /// Loads the module that `path` names, as data only; nothing when it cannot be loaded.
    static std::optional<StringModule> load(const Pyxis::StringBuffer& path);

    StringModule(StringModule&& other) noexcept;
    StringModule& operator=(StringModule&&) = delete;
    ~StringModule();

    /// Copies at most `capacity` - 1 characters of text `id` and a terminator into `buffer`, and
    /// returns the number of characters copied; 0 with an empty text for an unknown id.
    int loadString(unsigned int id, char16_t* buffer, int capacity) const;

  private:
    struct Texts;
    explicit StringModule(std::unique_ptr<Texts> texts);

    std::unique_ptr<Texts> texts_;
};

/// The first three numbers of the running plug-in module's file version.
struct ModuleVersion {
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int build = 0;
};

/// The version of the loaded module of that file name; zeros when it is unknown.
ModuleVersion moduleVersion(const char16_t* moduleFileName);

/// A file opened for reading; closed with the object. Only regular files open: a pipe or device
/// must not block.
class PlainFile {
  public:
    /// Opens an existing file for reading, on Windows while others may only read it too; nothing on
    /// failure.
    static std::optional<PlainFile> open(const Pyxis::StringBuffer& path);

    PlainFile(PlainFile&& other) noexcept : handle_(std::exchange(other.handle_, kNoHandle)) {}
    PlainFile& operator=(PlainFile&&) = delete;
    ~PlainFile();

    /// Offset of the end of the file; on Windows its low 32 bits. 0 when it is unknown.
    std::uint64_t size() const;
    /// Reads up to `count` bytes from the start of the file; returns how many were read.
    std::uint32_t readFromStart(void* buffer, std::uint32_t count) const;

  private:
    static constexpr std::intptr_t kNoHandle = -1;
    explicit PlainFile(std::intptr_t handle) : handle_(handle) {}

    std::intptr_t handle_;  ///< as the system numbers it
};

/// Compares two terminated single-byte or multibyte strings exactly, by byte; 0 when equal.
int compareMultibyte(const unsigned char* left, const unsigned char* right);

}  // namespace kest::platform
