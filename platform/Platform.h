#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// What the operating system gives the plug-in. One implementation a system, in posix/ and windows/.

namespace kest::platform {

/// Longest name part and extension of a path, in characters; longer ones are cut.
inline constexpr std::size_t kMaxNamePart = 255;

/// The last part of a path: its name, and its extension with the dot.
struct PathName {
    std::u16string name;
    std::u16string extension;
};

/// Splits the name and extension off a path. A name that starts with its only dot is all
/// extension.
PathName splitPathName(std::u16string_view path);

/// A loaded module of string resources. Its texts come by number.
class StringModule {
  public:
    /// Loads the module that `path` names, as data only; null when it cannot be loaded.
    static std::unique_ptr<StringModule> load(const std::u16string& path);

    virtual ~StringModule();
    StringModule(const StringModule&) = delete;
    StringModule& operator=(const StringModule&) = delete;

    /// Copies at most `capacity` - 1 characters of text `id` and a terminator into `buffer`, and
    /// answers the number of characters copied; 0 with an empty text for an unknown id.
    virtual int loadString(unsigned int id, char16_t* buffer, int capacity) const = 0;

  protected:
    StringModule();
};

/// The first three numbers of the running plug-in module's file version.
struct ModuleVersion {
    unsigned int major = 0;
    unsigned int minor = 0;
    unsigned int build = 0;
};

/// The version of the module that bears `moduleFileName`; zeros when it cannot be told.
ModuleVersion moduleVersion(const char16_t* moduleFileName);

/// A file opened for reading; closed with the object. Only regular files open: a pipe or device
/// must not block.
class PlainFile {
  public:
    /// Opens an existing file for reading while others may only read it too; null on failure.
    static std::unique_ptr<PlainFile> open(const std::u16string& path);

    virtual ~PlainFile();
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    /// Offset of the end of the file, cut to 32 bits.
    virtual std::uint32_t size() = 0;
    /// Reads up to `count` bytes from the start of the file; answers how many were read.
    virtual std::uint32_t readFromStart(void* buffer, std::uint32_t count) = 0;

  protected:
    PlainFile();
};

/// Compares two terminated single-byte or multibyte strings exactly, by byte; 0 when equal.
int compareMultibyte(const unsigned char* left, const unsigned char* right);

}  // namespace kest::platform
