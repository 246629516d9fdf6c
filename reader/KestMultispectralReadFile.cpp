#include "reader/KestMultispectralReadFile.h"

#include <cstddef>
#include <cstdlib>

#include "bands/MetadataTextFile.h"
#include "bands/NamingScheme.h"
#include "bands/ReferenceName.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "pyxis/NoThrow.h"
#include "reader/BandCollector.h"
#include "reader/KestMultispectralReadFileFrame.h"
#include "sets/FindCodec.h"

namespace {

/// A wrong index is a bug in the caller; there is no sensible result.
template <typename Record>
const Record& checkedAt(const std::vector<Record>& records, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= records.size()) {
        std::abort();
    }
    return records[static_cast<std::size_t>(index)];
}

}  // namespace

KestMultispectralReadFile::KestMultispectralReadFile(const Pyxis::ImageFormatCodec* codec,
                                                     const Pyxis::FileSpecifier* setSpecifier,
                                                     Pyxis::FindFileInterface* findFile)
    : codec_(codec),
      components_(specifier_),
      propertySet_(std::make_shared<KestMultispectralPropertySetIterator>()) {
    const Codecs codecs = keepReadable(kest::ComponentList(*setSpecifier));
    components_ = kest::ComponentList(specifier_);
    naming_ = kest::nameSet(components_, codec, findFile);
    findBands(codecs);
    if (naming_.scheme == kest::SchemePoProduct && findFile != nullptr) {
        addMetadataTextFile(*findFile);
    }
}

KestMultispectralReadFile::KestMultispectralReadFile(const KestMultispectralReadFile& other)
    : geoTolerance_(other.geoTolerance_),
      codec_(other.codec_),
      specifier_(other.specifier_),
      components_(other.components_),
      bands_(other.bands_),
      buckets_(other.buckets_),
      files_(other.files_),
      metadataFile_(other.metadataFile_),
      naming_(other.naming_),
      propertySet_(std::make_shared<KestMultispectralPropertySetIterator>(*other.propertySet_)) {}

KestMultispectralReadFile::~KestMultispectralReadFile() = default;

KestMultispectralReadFile::Codecs KestMultispectralReadFile::keepReadable(
    const kest::ComponentList& listed) {
    Codecs codecs(static_cast<std::size_t>(listed.count()), nullptr);
    kest::ComponentListBuilder kept;
    for (int i = 0; i < listed.count(); ++i) {
        const kest::Component* component = listed.get(i);
        const Pyxis::ImageFormatCodec* codec =
            component != nullptr ? kest::findCodec(component->file) : nullptr;
        if (codec != nullptr) {
            codecs[static_cast<std::size_t>(i)] = codec;
            files_.push_back(*component);
            kept.append(component->file, component->frame);
        }
    }
    specifier_ = kept.specifier();
    return codecs;
}

void KestMultispectralReadFile::findBands(const Codecs& codecs) {
    kest::BandCollector collector(naming_, geoTolerance_);
    for (int i = 0; i < components_.count(); ++i) {
        // By position in the input list, although unreadable components have been removed
        // (compatibility.md, 16).
        const Pyxis::ImageFormatCodec* codec = codecs[static_cast<std::size_t>(i)];
        if (codec != nullptr) {
            collector.add(i, components_.at(i), *codec);
        }
    }
    collector.sort();
    bands_ = collector.bands();
    buckets_ = collector.buckets();
}

void KestMultispectralReadFile::addMetadataTextFile(Pyxis::FindFileInterface& findFile) {
    const Pyxis::FileSpecifier first = components_.at(0).file;
    Pyxis::FileSpecifier metadata;
    kest::getMetadataTextFile(first, metadata);
    if (!findFile.findFile(codec_, first, metadata, metadata)) {
        return;
    }
    metadataFile_ = metadata;
    const KestMultispectralMetadataTextFileProperty property(metadata);
    propertySet_->appendProperty(&property);
}

const Pyxis::ImageFormatCodec* KestMultispectralReadFile::getCodec() const {
    return codec_;
}

const Pyxis::FileSpecifier& KestMultispectralReadFile::getFileSpecifier() const {
    return specifier_;
}

int KestMultispectralReadFile::getNumFiles() const {
    return static_cast<int>(files_.size()) + (metadataFile_ ? 1 : 0);
}

Pyxis::FileSpecifier KestMultispectralReadFile::getFile(int index) const {
    return Pyxis::answerOr(Pyxis::FileSpecifier(), [this, index] {
        Pyxis::FileSpecifier file;
        if (index >= 0 && static_cast<std::size_t>(index) < files_.size()) {
            const kest::Component& component = files_[static_cast<std::size_t>(index)];
            kest::appendComponent(component.file, component.frame, file);
        } else if (index >= 0 && index < getNumFiles()) {
            file = *metadataFile_;
        }
        return file;
    });
}

int KestMultispectralReadFile::getNumFrames() const {
    return static_cast<int>(bands_.size());
}

Pyxis::ReadImageFileFrameInterface* KestMultispectralReadFile::openFrame(int frameIndex) {
    if (frameIndex < 0 || frameIndex >= getNumFrames()) {
        return nullptr;
    }
    return Pyxis::makeOrNull<Pyxis::ReadImageFileFrameInterface>([this, frameIndex] {
        const kest::Component source = components_.at(band(frameIndex).componentIndex);
        return new KestMultispectralReadFileFrame(source.file, source.frame, band(frameIndex).codec,
                                                  this, frameIndex, propertySet_);
    });
}

const kest::BandRecord& KestMultispectralReadFile::band(int index) const {
    return checkedAt(bands_, index);
}

const kest::BucketRecord& KestMultispectralReadFile::bucket(int index) const {
    return checkedAt(buckets_, index);
}

int KestMultispectralReadFile::getBandBucketIndex(int band) const {
    return checkedAt(bands_, band).bucketIndex;
}

int KestMultispectralReadFile::getBandIndexInBucket(int band) const {
    return checkedAt(bands_, band).indexInBucket;
}

int KestMultispectralReadFile::getNumBuckets(int /*band*/) const {
    return static_cast<int>(buckets_.size());
}

void KestMultispectralReadFile::getBandBucketName(int band, Pyxis::StringBuffer& name) const {
    name = bucket(getBandBucketIndex(band)).bucketName;
}

void KestMultispectralReadFile::getBandComponent(int band, Pyxis::FileSpecifier& component,
                                                 int& frameNumber) const {
    const kest::Component source = components_.at(checkedAt(bands_, band).componentIndex);
    component = source.file;
    frameNumber = source.frame;
}

void KestMultispectralReadFile::getBandName(int band, Pyxis::StringBuffer& name) const {
    name = checkedAt(bands_, band).bandName;
}

void KestMultispectralReadFile::getBandType(int band, kest::BandType& type) const {
    type = checkedAt(bands_, band).bandType;
}

void KestMultispectralReadFile::getBandAssignment(int band,
                                                  kest::BandAssignment& assignment) const {
    assignment = checkedAt(bands_, band).bandAssignment;
}

void KestMultispectralReadFile::getReferenceName(Pyxis::StringBuffer& name) const {
    kest::getReferenceNameOfComponent(naming_, components_.at(0).file, name);
}
