#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bands/BandTypes.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/Geometry.h"
#include "pyxis/ReadImageFile.h"
#include "reader/KestMultispectralReadFile.h"
#include "tool/commands/Context.h"

namespace kestms {

/// Where a band lies in the world, in units of its coordinate system.
struct Georeference {
    double pixelWidth = 0.0;
    double pixelHeight = 0.0;
    double rotation = 0.0;  ///< radians, counter-clockwise
    Pyxis::Point2d upperLeft;
    Pyxis::Point2d upperRight;
    Pyxis::Point2d lowerLeft;
    Pyxis::Point2d lowerRight;
    std::string coordinateSystem;  ///< WKT
    int epsg = 0;                  ///< 0: no code
};

/// What is known of one band of an opened set. Texts are UTF-8.
struct BandView {
    int frame = 0;   ///< in the set
    int number = 0;  ///< sort key; kest::kUnrecognisedNumber for a band that no rule knows
    std::string name;
    kest::BandType type = kest::BandType::Unknown;
    kest::BandAssignment assignment = kest::BandAssignment::NotAssigned;
    int bucket = 0;  ///< index in the set
    int indexInBucket = 0;
    std::string bucketName;
    std::string componentPath;
    int componentFrame = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bits = 0;
    Pyxis::PixelModel model = Pyxis::PixelModel::SingleChannel;
    Pyxis::SampleFormat format = Pyxis::SampleFormat::UnsignedInteger;
    std::optional<Georeference> georeference;
};

/// Bands that share one pixel size.
struct BucketView {
    int index = 0;
    int number = 0;  ///< sort key
    std::string name;
    int bandCount = 0;
    double pixelWidth = 0.0;
    double pixelHeight = 0.0;
};

/// What all bands share.
struct SetView {
    int scheme = 0;  ///< a kest::NamingScheme
    std::string referenceName;
    std::string metadataFile;      ///< the product's metadata text file; empty without one
    bool metadataIsValid = false;  ///< whether it could be read
    std::vector<std::string> files;
    std::vector<BandView> bands;
    std::vector<BucketView> buckets;
};

/// Size in pixels of the band with the most pixels.
Pyxis::Size finestSize(const SetView& set);

/// A set opened through its codec.
class OpenedSet {
  public:
    /// Throws a Failure that names the first component to blame when the codec does not decode
    /// the set: ExitCode::CannotRead when too few components can be read, else
    /// ExitCode::NotDecodable.
    OpenedSet(Session& session, const Pyxis::FileSpecifier& set);

    const SetView& view() const { return view_; }
    int numFrames() const { return image_->getNumFrames(); }
    /// A frame of the set, which must not outlive it. Throws a Failure with ExitCode::CannotRead.
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> openFrame(int frame) const;
    /// The components that a codec reads, as a compound specifier.
    const Pyxis::FileSpecifier& specifier() const { return image_->getFileSpecifier(); }

  private:
    void gatherFiles();
    void gatherBands(const KestMultispectralReadFile& reader);
    void gatherBuckets(const KestMultispectralReadFile& reader);

    std::unique_ptr<Pyxis::ReadImageFileInterface> image_;
    SetView view_;
};

/// Opens the set that command arguments name (see `readSet`). A warning names every component
/// that is left out because no codec reads it.
OpenedSet openSet(Context& context, const std::vector<std::string>& arguments);

}  // namespace kestms
