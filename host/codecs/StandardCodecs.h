#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/CodecRegistry.h"
#include "host/file/Export.h"
#include "host/file/FileHead.h"
#include "host/file/PathPolicy.h"

namespace Pyxis {

class FileCache;
class ReadAhead;

/// The host's component codecs, one a format, in the order in which they are asked, registered for
/// the lifetime of the object.
class PYXIS_CODECS_API StandardCodecs {
  public:
    /// Without the codec for QuickBird files the plain TIFF codec reads them.
    enum class QuickBird { With, Without };

    /// Files may change while a program runs, and are then opened again. A short-lived program
    /// should ignore changes: it makes fewer system calls, and its answers stay consistent.
    using Changes = FileChanges;

    /// For its lifetime on a thread, each file is checked for changes only once. Operations nest.
    class PYXIS_CODECS_API Operation {
      public:
        Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        ~Operation();

      private:
        std::uint64_t before_;
    };

    explicit StandardCodecs(QuickBird quickBird = QuickBird::With,
                            Changes changes = Changes::Notice);
    StandardCodecs(const StandardCodecs&) = delete;
    StandardCodecs& operator=(const StandardCodecs&) = delete;
    /// Begins to open files on other threads if there are many; files of a previous call that are
    /// not open yet are not opened. Ends early when `stop` returns true; those threads call it as
    /// long as this object lives. The codecs report files that cannot be opened.
    void readAhead(const std::vector<std::string>& paths, const std::function<bool()>& stop);
    /// Opens files of the last call on this thread too; returns when all are open or being opened.
    void finishReadingAhead();
    /// Sets what components may be besides plain files, for the whole process.
    static void allow(const PathPolicy& policy);
    static PathPolicy allowed();
    /// Closes the files that GDAL holds open and nobody is reading. They reopen when used.
    void closeFiles();
    /// Closes the images of these codecs that nobody has deleted.
    ~StandardCodecs();

  private:
    void add(std::unique_ptr<ImageFormatCodec> codec);

    std::shared_ptr<FileCache> cache_;
    std::vector<std::unique_ptr<ImageFormatCodec>> codecs_;
    std::vector<std::unique_ptr<CodecRegistration>> registrations_;
    std::unique_ptr<ReadAhead> readingAhead_;
};

}  // namespace Pyxis
