#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pyxis/FileSpecifier.h"
#include "pyxis/ReadImageFile.h"
#include "tool/scene/Band.h"
#include "tool/scene/Context.h"

namespace kestms {

/// Properties of a whole set.
struct SetDescription {
    int scheme = 0;  ///< a kest::NamingScheme
    std::string referenceName;
    std::string metadataFile;      ///< the product's metadata text file; empty without one
    bool metadataIsValid = false;  ///< whether it could be read
};

/// A set opened through its codec, with everything the tool knows about its bands.
class OpenedSet {
  public:
    /// Throws a Failure that names the first failing component when the codec does not decode the
    /// set: ExitCode::CannotRead when too few components can be read, else ExitCode::NotDecodable.
    OpenedSet(Session& session, const Pyxis::FileSpecifier& set);

    const SetDescription& description() const { return description_; }
    /// In the order of the set's frames.
    const std::vector<Band>& bands() const { return bands_; }
    const std::vector<Bucket>& buckets() const { return buckets_; }
    /// The components' files, each once, then the metadata text file.
    const std::vector<std::string>& files() const { return files_; }
    /// Size in pixels of the band with the most pixels.
    Pyxis::Size finestSize() const;

    /// A frame of the set, which must not outlive it. Throws a Failure with ExitCode::CannotRead.
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> openFrame(int frame) const;
    /// The components that a codec reads, as a compound specifier.
    const Pyxis::FileSpecifier& specifier() const { return image_->getFileSpecifier(); }

  private:
    void gatherFiles();
    void gatherBands(const KestMultispectralCodec& codec);
    void gatherBuckets();
    void labelUnknownBands();

    std::unique_ptr<Pyxis::ReadImageFileInterface> image_;
    SetDescription description_;
    std::vector<Band> bands_;
    std::vector<Bucket> buckets_;
    std::vector<std::string> files_;
};

/// The frames of a single file, without the properties of a set; empty when no codec reads it.
std::vector<Band> framesAlone(const std::string& path);

/// Opens the set that command arguments name (see `readSet`). A warning names every component that
/// no codec reads and that is left out.
OpenedSet openSet(Context& context, const std::vector<std::string>& arguments);

}  // namespace kestms
