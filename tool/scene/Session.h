#pragma once

#include <string>
#include <vector>

#include "codec/KestMultispectralCodec.h"
#include "host/CodecRegistry.h"
#include "host/DirectoryFileFinder.h"
#include "host/codecs/Places.h"
#include "host/codecs/StandardCodecs.h"
#include "tool/scene/Products.h"

namespace kestms {

/// The host with its codecs, set up for one run of a program.
class Session {
  public:
    using Changes = Pyxis::StandardCodecs::Changes;
    using Operation = Pyxis::StandardCodecs::Operation;

    /// `language` is that of the texts; empty for the environment's. Throws a Failure with
    /// ExitCode::Usage for an unavailable language.
    explicit Session(const std::string& language, Changes changes = Changes::Ignore);

    /// Sets the catalogues of products. Throws a Failure with ExitCode::CannotRead.
    void useProducts(const ProductChoice& choice) { kestms::useProducts(codec_, choice); }

    const KestMultispectralCodec& codec() const { return codec_; }
    Pyxis::FindFileInterface& finder() { return archiveFinder_; }
    /// Begins to open files that may be needed soon, on other threads.
    void readAhead(const std::vector<std::string>& paths);
    /// Returns when those files are opened or being opened.
    void finishReadingAhead() { componentCodecs_.finishReadingAhead(); }
    /// Closes the files that nobody is reading.
    void closeFiles() { componentCodecs_.closeFiles(); }
    /// The language in use.
    const std::string& language() const { return language_; }

  private:
    std::string language_;
    Pyxis::StandardCodecs componentCodecs_;
    KestMultispectralCodec codec_;
    Pyxis::CodecRegistration registration_;
    Pyxis::DirectoryFileFinder finder_;
    Pyxis::ArchiveFileFinder archiveFinder_{finder_};
};

}  // namespace kestms
