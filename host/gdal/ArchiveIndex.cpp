#include "host/gdal/ArchiveIndex.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <cpl_vsi.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "host/file/FileHead.h"

namespace Pyxis {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kMostEntries = 20'000;
constexpr std::size_t kLongestName = 1024;
constexpr std::ptrdiff_t kMostFolders = 32;

struct CloseFile {
    void operator()(VSILFILE* file) const { VSIFCloseL(file); }
};

/// Reads a file sequentially or at offsets.
class Reader {
  public:
    explicit Reader(const std::string& path) : file_(VSIFOpenL(path.c_str(), "rb")) {}

    bool isOpen() const { return file_ != nullptr; }
    /// The next bytes; fewer at the end of the file.
    std::string take(std::size_t count) {
        std::string bytes(count, '\0');
        bytes.resize(VSIFReadL(bytes.data(), 1, count, file_.get()));
        at_ += bytes.size();
        return bytes;
    }
    void seek(std::uint64_t offset) {
        VSIFSeekL(file_.get(), offset, SEEK_SET);
        at_ = offset;
    }
    std::uint64_t at() const { return at_; }

  private:
    std::unique_ptr<VSILFILE, CloseFile> file_;
    std::uint64_t at_ = 0;
};

std::uint64_t littleEndian(std::string_view bytes, std::size_t at, std::size_t count) {
    std::uint64_t number = 0;
    for (std::size_t i = count; i > 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    }
    return number;
}

bool leadsOut(std::string_view name) {
    return name.starts_with('/') ||
           ("/" + std::string(name) + "/").find("/../") != std::string::npos;
}

bool isTooLarge(std::string_view name) {
    return name.size() > kLongestName || std::count_if(name.begin(), name.end(), [](char c) {
                                             return c == '/' || c == '\\';
                                         }) > kMostFolders;
}

Refusal nameTooLarge() {
    return {Refusal::Kind::Unsafe, "holds a name of too many folders or bytes"};
}

/// Collects the names in an archive.
class Names {
  public:
    /// Why reading the archive must stop; nothing if it may continue.
    std::optional<Refusal> add(std::string name, bool isFile) {
        if (++entries_ > kMostEntries) {
            return Refusal{Refusal::Kind::Unsafe,
                           "holds more than " + std::to_string(kMostEntries) + " entries"};
        }
        std::replace(name.begin(), name.end(), '\\', '/');  // as GDAL does
        if (isTooLarge(name)) {
            return nameTooLarge();
        }
        if (name.starts_with("./")) {
            name.erase(0, 2);
        }
        if (isFile && !name.empty() && !name.ends_with('/') && !leadsOut(name)) {
            files_.push_back(std::move(name));
        }
        return std::nullopt;
    }
    std::vector<std::string> take() { return std::move(files_); }

  private:
    std::size_t entries_ = 0;
    std::vector<std::string> files_;
};

/// The start and number of entries of a zip file's central directory, from the end record and the
/// 64-bit one before it.
struct Directory {
    std::uint64_t offset = 0;
    std::uint64_t entries = 0;
};

std::optional<Directory> zipDirectory(Reader& file, std::uint64_t size) {
    constexpr std::uint64_t kLongestComment = 0xffff;
    constexpr std::size_t kEnd = 22;
    constexpr std::size_t kLocator = 20;
    const std::uint64_t start =
        size - std::min<std::uint64_t>(size, kLongestComment + kEnd + kLocator);
    file.seek(start);
    const std::string tail = file.take(static_cast<std::size_t>(size - start));
    const std::size_t end = tail.rfind("PK\5\6"sv);
    if (end == tail.npos || end + kEnd > tail.size()) {
        return std::nullopt;
    }
    Directory directory{littleEndian(tail, end + 16, 4), littleEndian(tail, end + 10, 2)};
    const std::uint64_t length = littleEndian(tail, end + 12, 4);
    if (end >= kLocator && std::string_view(tail).substr(end - kLocator).starts_with("PK\6\7"sv)) {
        file.seek(littleEndian(tail, end - kLocator + 8, 8));
        const std::string wide = file.take(56);
        if (wide.size() == 56 && wide.starts_with("PK\6\6"sv)) {
            return Directory{littleEndian(wide, 48, 8), littleEndian(wide, 32, 8)};
        }
    }
    // Bytes before the archive, as in a self-extracting one, shift it.
    if (start + end >= length) {
        directory.offset = start + end - length;
    }
    return directory;
}

/// The path in the extra fields of an entry, in UTF-8; empty without one.
std::string pathInExtra(std::string_view extra) {
    constexpr std::uint64_t kUnicodePath = 0x7075;
    constexpr std::size_t kHeader = 4;
    constexpr std::size_t kVersionAndSum = 5;
    while (extra.size() > kHeader + kVersionAndSum) {
        const auto size = static_cast<std::size_t>(littleEndian(extra, 2, 2));
        if (littleEndian(extra, 0, 2) == kUnicodePath) {
            return std::string(
                extra.substr(kHeader + kVersionAndSum, size - std::min(size, kVersionAndSum)));
        }
        extra.remove_prefix(std::min(kHeader + size, extra.size()));
    }
    return {};
}

/// From the code page of entries that are not marked as UTF-8, as GDAL does.
std::string recoded(const std::string& name) {
    return CPLString(name).Recode(CPLGetConfigOption("CPL_ZIP_ENCODING", "CP437"), CPL_ENC_UTF8);
}

Expected<std::vector<std::string>> zipNames(Reader& file, std::uint64_t size) {
    constexpr std::size_t kHeader = 46;
    const std::optional<Directory> directory = zipDirectory(file, size);
    if (!directory) {
        return unreadable("a damaged or empty archive");
    }
    Names names;
    file.seek(directory->offset);
    for (std::uint64_t i = 0; i < directory->entries; ++i) {
        const std::string header = file.take(kHeader);
        if (header.size() < kHeader || !header.starts_with("PK\1\2"sv)) {
            return unreadable("a damaged archive");
        }
        const std::string own = file.take(littleEndian(header, 28, 2));
        const std::string extra = file.take(littleEndian(header, 30, 2));
        if (isTooLarge(own) || isTooLarge(extra)) {  // whichever name GDAL takes
            return nameTooLarge();
        }
        const std::string path = pathInExtra(extra);
        constexpr std::uint64_t kUtf8 = 1U << 11U;
        const bool isUtf8 = (littleEndian(header, 8, 2) & kUtf8) != 0;
        std::string name = !path.empty() ? path : isUtf8 ? own : recoded(own);
        if (std::optional<Refusal> refusal = names.add(std::move(name), true)) {
            return *refusal;
        }
        file.seek(file.at() + littleEndian(header, 32, 2));
    }
    return names.take();
}

/// A field of a tar header up to its first zero.
std::string textAt(std::string_view header, std::size_t at, std::size_t length) {
    const std::string_view field = header.substr(at, length);
    return std::string(field.substr(0, field.find('\0')));
}

std::optional<std::uint64_t> octalAt(std::string_view header, std::size_t at, std::size_t length) {
    const std::string text = textAt(header, at, length);
    const std::size_t start = std::min(text.find_first_not_of(' '), text.size());
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data() + start, text.data() + text.size(), number, 8);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// The path in the records "LENGTH KEY=VALUE\n" of an extended header; empty without one.
std::string pathIn(std::string_view records) {
    constexpr std::string_view kKey = " path=";
    const std::size_t key = records.find(kKey);
    if (key == records.npos) {
        return {};
    }
    const std::string_view value = records.substr(key + kKey.size());
    return std::string(value.substr(0, value.find('\n')));
}

/// Whether the file has so many bytes. A compressed one does not know.
bool hasBytes(Reader& file, std::uint64_t count) {
    if (count > 0) {
        file.seek(count - 1);
    }
    return count == 0 || !file.take(1).empty();
}

Expected<std::vector<std::string>> tarNames(Reader& file, std::uint64_t mostBytes) {
    constexpr std::size_t kBlock = 512;
    constexpr std::uint64_t kMostOfName = 32768;
    Names names;
    std::string longName;
    bool isAny = false;
    std::uint64_t end = 0;  // of the last file
    for (;;) {
        const std::string header = file.take(kBlock);
        // Some have no blocks of zeros at their end. GDAL lists what there is of a broken download.
        if (header.size() < kBlock && (!header.empty() || !hasBytes(file, end))) {
            return unreadable("the archive is cut short");
        }
        if (header.size() < kBlock || header[0] == '\0') {
            break;
        }
        const std::optional<std::uint64_t> size = octalAt(header, 124, 12);
        if (header.compare(257, 5, "ustar") != 0 || !size || file.at() > mostBytes) {
            return unreadable(file.at() > mostBytes ? "unpacks out of proportion to its size"
                              : isAny               ? "a damaged archive"
                                                    : "no archive of a kind that is read");
        }
        isAny = true;
        const std::uint64_t next = file.at() + (*size + kBlock - 1) / kBlock * kBlock;
        end = file.at() + *size;
        const char type = header[156];
        if (type == 'L' || type == 'x') {
            const std::string text = file.take(std::min(*size, kMostOfName));
            longName = type == 'L' ? textAt(text, 0, text.size()) : pathIn(text);
        } else {
            const std::string prefix =
                header.compare(257, 6, "ustar\0"sv) == 0 ? textAt(header, 345, 155) : "";
            std::string name = longName;
            if (name.empty()) {
                name = prefix;
                name.append(prefix.empty() ? "" : "/").append(textAt(header, 0, 100));
            }
            longName.clear();
            if (std::optional<Refusal> refusal =
                    names.add(std::move(name), type == '0' || type == '\0')) {
                return *refusal;
            }
        }
        file.seek(next);
    }
    return isAny ? Expected(names.take()) : unreadable("a damaged or empty archive");
}

/// Whether a compressed file unpacks within its bound.
bool unpacksInProportion(const std::string& path, std::uint64_t size) {
    Reader file("/vsigzip/" + path);
    constexpr std::size_t kStep = 1U << 20U;
    while (file.isOpen() && file.at() <= mostUnpacked(size)) {
        if (file.take(kStep).size() < kStep) {
            return true;
        }
    }
    return !file.isOpen();
}

}  // namespace

std::uint64_t mostUnpacked(std::uint64_t size) {
    constexpr std::uint64_t kFreeBytes = 64U << 20U;
    constexpr std::uint64_t kMostTimes = 64;
    return std::max(kFreeBytes, kMostTimes * size);
}

Expected<std::vector<std::string>> readArchiveIndex(const std::string& path) {
    const Expected<FileHead> head = readHead(path);  // never blocks on a pipe
    if (!head) {
        return head.refusal();
    }
    const std::uint64_t size = head->state.size;
    const bool isCompressed = head->bytes.starts_with("\x1f\x8b");
    if (isCompressed && !unpacksInProportion(path, size)) {
        return Refusal{Refusal::Kind::Unsafe, "unpacks to more than " +
                                                  std::to_string(mostUnpacked(size)) +
                                                  " bytes from " + std::to_string(size)};
    }
    Reader file(isCompressed ? "/vsigzip/" + path : path);
    if (!file.isOpen()) {
        return unreadable("cannot be opened");
    }
    return head->bytes.starts_with("PK") ? zipNames(file, size)
                                         : tarNames(file, mostUnpacked(size));
}

}  // namespace Pyxis
