#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/CodecRegistry.h"
#include "host/file/FileHead.h"
#include "host/file/PathPolicy.h"
#include "host/gdal/Export.h"

namespace Pyxis {

class FileCache;
class ReadAhead;

/// The host's component codecs, one a format, in the order in which they are asked, registered for
/// as long as the object lives.
class PYXIS_CODECS_API StandardCodecs {
  public:
    /// Without the codec for QuickBird files the plain TIFF codec reads them.
    enum class QuickBird { With, Without };

    /// Files may change while a program runs, and are then opened anew. A program that is done in
    /// a moment does better to ignore that: it asks less, and all its answers fit together.
    using Changes = FileChanges;

    /// While one lives on a thread, what it asks there is one question to the files: each is looked
    /// at for changes once. They nest.
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
    /// Opens files on several threads, so that the codecs have them at hand when they are asked;
    /// worth it for many only. Ends early when `stop`, which is asked on those threads for as long
    /// as this object lives, says so. Files that cannot be opened are left for the codecs to find.
    void readAhead(const std::vector<std::string>& paths, const std::function<bool()>& stop);
    /// What components may be beside plain files, from now on, for the whole process.
    static void allow(const PathPolicy& policy);
    /// Closes the files that GDAL holds open and nobody is reading. They open again when they are
    /// used.
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
