#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "bands/NamingScheme.h"
#include "properties/KestMultispectralPropertySetIterator.h"
#include "pyxis/FileSpecifier.h"
#include "pyxis/FindFileInterface.h"
#include "pyxis/ImageFormatCodec.h"
#include "pyxis/ReadImageFile.h"
#include "reader/BandRecord.h"
#include "sets/ComponentList.h"

/// An opened multispectral set: one frame a band, in the order of the band numbers. Fully built by
/// its constructor and never changed afterwards; it keeps no component file open.
class KestMultispectralReadFile : public Pyxis::ReadImageFileInterface {
  public:
    /// `codec` is the set's own codec, not owned. `findFile` may be null; it is used during
    /// construction only. Components that cannot be read are left out; a set without a usable
    /// band has no frames.
    KestMultispectralReadFile(const Pyxis::ImageFormatCodec* codec,
                              const Pyxis::FileSpecifier* setSpecifier,
                              Pyxis::FindFileInterface* findFile);
    /// A copy that shares nothing with `other`.
    KestMultispectralReadFile(const KestMultispectralReadFile& other);
    KestMultispectralReadFile& operator=(const KestMultispectralReadFile&) = delete;
    ~KestMultispectralReadFile() override;

    const Pyxis::ImageFormatCodec* getCodec() const override;
    /// The set's components for which the host found a codec.
    const Pyxis::FileSpecifier& getFileSpecifier() const override;
    int getNumFiles() const override;
    Pyxis::FileSpecifier getFile(int index) const override;
    int getNumFrames() const override;
    Pyxis::ReadImageFileFrameInterface* openFrame(int frameIndex) override;

    // Queries by band. An index outside the set ends the program.

    int getBandBucketIndex(int band) const;
    int getBandIndexInBucket(int band) const;
    /// The number of buckets of the set, whatever the band (compatibility.md, 20).
    int getNumBuckets(int band) const;
    void getBandBucketName(int band, Pyxis::StringBuffer& name) const;
    void getBandComponent(int band, Pyxis::FileSpecifier& component, int& frameNumber) const;
    void getBandName(int band, Pyxis::StringBuffer& name) const;
    void getBandType(int band, kest::BandType& type) const;
    void getBandAssignment(int band, kest::BandAssignment& assignment) const;
    void getReferenceName(Pyxis::StringBuffer& name) const;

    /// The naming scheme that the set follows, a kest::NamingScheme.
    int setKind() const { return naming_.scheme; }
    /// The record of a band, or of a bucket.
    const kest::BandRecord& band(int index) const;
    const kest::BucketRecord& bucket(int index) const;

  private:
    using Codecs = std::vector<const Pyxis::ImageFormatCodec*>;

    /// Fills `specifier_` and `files_` with the components that a codec reads. Returns the codecs
    /// by position in `listed`, null for the others.
    Codecs keepReadable(const kest::ComponentList& listed);
    void findBands(const Codecs& codecs);
    void addMetadataTextFile(Pyxis::FindFileInterface& findFile);

    /// Largest difference in x and in y at which two pixel sizes count as equal.
    double geoTolerance_ = 1e-5;
    const Pyxis::ImageFormatCodec* codec_;
    Pyxis::FileSpecifier specifier_;
    kest::ComponentList components_;  ///< `specifier_`, parsed
    std::vector<kest::BandRecord> bands_;
    std::vector<kest::BucketRecord> buckets_;
    std::vector<kest::Component> files_;  ///< each published as a list (compatibility.md, 17)
    std::optional<Pyxis::FileSpecifier> metadataFile_;  ///< the last of the files, if found
    kest::SetNaming naming_;
    /// Shared with every frame, which may outlive the image.
    std::shared_ptr<KestMultispectralPropertySetIterator> propertySet_;
};
