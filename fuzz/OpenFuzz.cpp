// A set in the plug-in, over component codecs that answer what the input chooses: it is recognised,
// purified, opened, cloned, read and closed in any order that a host may choose. The text is the
// component list of the set, or the name of a file on each line.

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "codec/KestMultispectralCodec.h"
#include "fuzz/Host.h"
#include "fuzz/Input.h"
#include "fuzz/Texts.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBandTypeProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "properties/KestMultispectralProperty.h"
#include "reader/KestMultispectralReadFile.h"
#include "sets/ComponentList.h"

namespace {

using fuzz::require;
using Pyxis::FileSpecifier;
using Pyxis::FormatDecodability;

constexpr int kMostComponents = 10;
constexpr int kMostSteps = 32;

/// Reads a property of the plug-in.
void readProperty(const Pyxis::FormatCodecPropertyInterface& property) {
    require(!property.getName().isZero(), "a property has a name");
    Pyxis::StringBuffer text;
    FileSpecifier file;
    if (const auto* name = dynamic_cast<const KestMultispectralBandNameProperty*>(&property)) {
        name->getBandName(text);
        name->getFile(file);
        require(name->getBandIndex() >= 0, "a band has a place in its bucket");
    } else if (const auto* bucket =
                   dynamic_cast<const KestMultispectralBucketProperty*>(&property)) {
        bucket->getBucketName(text);
        require(bucket->getBucketNum() >= 0 && bucket->getBucketNum() < bucket->getNumBuckets(),
                "a bucket is one of them");
    } else if (const auto* type =
                   dynamic_cast<const KestMultispectralBandTypeProperty*>(&property)) {
        require(static_cast<int>(type->bandType()) <= 10, "a band type");
        require(static_cast<int>(type->bandAssignment()) <= 3, "a channel");
    } else if (const auto* metadata =
                   dynamic_cast<const KestMultispectralMetadataTextFileProperty*>(&property)) {
        metadata->getValue(text);
        require(metadata->getMetadataFile(file) == metadata->isValid(), "one answer");
        require(metadata->isValid() == (text.numDataBytes() > 0), "a file is read whole or not");
    }
}

/// An image and its frames, which are deleted first.
struct OpenedSet {
    std::unique_ptr<Pyxis::ReadImageFileInterface> image;
    std::vector<std::unique_ptr<Pyxis::ReadImageFileFrameInterface>> frames;
};

/// A host: what it has opened, and whether its codecs are faithful, that is never fail.
class Session {
  public:
    explicit Session(fuzz::Input& input) : input_(input), host_(input) {
        if (input.text().starts_with('<')) {
            set_ = {fuzz::bufferFrom(input.text(), input), FileSpecifier::Type::Compound};
            addListed();
        } else {
            addLines();
        }
        static constexpr const char* kMetadata[] = {KEST_RESOURCES "/kestmultispectral-en.txt",
                                                    "/nonexistent", "/", "/dev/null"};
        metadata_ = input.oneOf(kMetadata);
        if (input.rarely()) {
            faithful_ = false;
            host_.letCallsFail();
        }
    }

    void run() {
        recognise();
        open(false);
        open(true);
        for (int i = 0; !sets_.empty() && i < sets_.front().image->getNumFrames(); ++i) {
            openFrame(sets_.front(), i);
        }
        for (int steps = 0; input_.hasChoices() && steps < kMostSteps; ++steps) {
            step();
        }
        properties_.clear();
        sets_.clear();
        require(host_.world.alive == static_cast<int>(host_.world.images.size()),
                "nothing is kept but images whose layout was refused");
    }

  private:
    void addListed() {
        const kest::ComponentList list(set_);
        for (int i = 0; i < std::min(list.count(), kMostComponents); ++i) {
            if (const kest::Component* component = list.get(i)) {
                host_.add(Pyxis::toUtf8(component->file.string()));
            }
        }
    }

    void addLines() {
        kest::ComponentListBuilder list;
        for (const std::string_view line : input_.lines(kMostComponents)) {
            const FileSpecifier file(fuzz::bufferFrom(line, input_),
                                     FileSpecifier::Type::PlainFile);
            host_.add(Pyxis::toUtf8(file.string()));
            list.append(file, input_.rarely() ? input_.integer() : 0);
        }
        set_ = list.specifier();
    }

    void recognise() {
        const FormatDecodability answer = codec_.isDecodableFile(set_, nullptr);
        FileSpecifier purified = set_;
        const bool isPurified = codec_.purifyFileSet(purified);
        require(isPurified || purified.isEqual(set_), "a set is purified or left alone");
        require(!isPurified || kest::countComponents(purified) >= 2, "at least two are left");
        if (!faithful_) {
            return;
        }
        require(answer != FormatDecodability::Decodable || isPurified, "a good set is purified");
        if (isPurified) {
            FileSpecifier again = purified;
            require(codec_.purifyFileSet(again) && again.isEqual(purified), "pure stays pure");
            require(codec_.isDecodableFile(purified, nullptr) == answer,
                    "components that nobody reads do not count");
        }
    }

    void open(bool withFinder) {
        fakes::Finder finder(host_.world, metadata_);
        OpenedSet opened;
        opened.image.reset(withFinder ? codec_.openImage(&set_, finder) : codec_.openImage(&set_));
        require(opened.image != nullptr || !faithful_, "any list opens");
        if (opened.image) {
            checkImage(*opened.image);
            sets_.push_back(std::move(opened));
        }
    }

    void checkImage(Pyxis::ReadImageFileInterface& image) const {
        require(image.getCodec() == &codec_, "an image knows its codec");
        const int listed = kest::countComponents(image.getFileSpecifier());
        require(image.getNumFiles() == listed || image.getNumFiles() == listed + 1,
                "a file a component, and the metadata text file");
        require(image.getNumFrames() <= listed, "no more frames than components");
        require(image.getFile(-1).isEmpty() && image.getFile(image.getNumFiles()).isEmpty(),
                "no file outside the image");
        for (int i = 0; i < image.getNumFiles(); ++i) {
            image.getFile(i);
        }
        require(image.openFrame(-1) == nullptr && image.openFrame(image.getNumFrames()) == nullptr,
                "no frame outside the image");
        checkBands(dynamic_cast<const KestMultispectralReadFile&>(image));
    }

    /// Queries by band return what the records hold.
    static void checkQueries(const KestMultispectralReadFile& set, int index) {
        const kest::BandRecord& band = set.band(index);
        kest::BandType type{};
        kest::BandAssignment assignment{};
        Pyxis::StringBuffer name;
        set.getBandType(index, type);
        set.getBandAssignment(index, assignment);
        set.getBandName(index, name);
        require(type == band.bandType && assignment == band.bandAssignment &&
                    name == band.bandName && set.getBandIndexInBucket(index) == band.indexInBucket,
                "queries and records agree");
        set.getBandBucketName(index, name);
        require(name == set.bucket(band.bucketIndex).bucketName, "the bucket's name");
    }

    static void checkBands(const KestMultispectralReadFile& set) {
        std::vector<int> bandsOf;
        for (int i = 0; i < set.getNumFrames(); ++i) {
            const kest::BandRecord& band = set.band(i);
            require(i == 0 || set.band(i - 1).bandNumber <= band.bandNumber, "bands are sorted");
            require(band.bucketIndex >= 0 && band.bucketIndex < set.getNumBuckets(i),
                    "a band lies in a bucket");
            bandsOf.resize(static_cast<std::size_t>(set.getNumBuckets(i)));
            ++bandsOf[static_cast<std::size_t>(band.bucketIndex)];
            checkQueries(set, i);
            require(band.indexInBucket >= 0 &&
                        band.indexInBucket < set.bucket(band.bucketIndex).bandCount,
                    "a band has a place in its bucket");
        }
        for (int i = 0; i < static_cast<int>(bandsOf.size()); ++i) {
            require(set.bucket(i).bandCount == bandsOf[static_cast<std::size_t>(i)],
                    "a bucket counts its bands");
            require(i == 0 || set.bucket(i - 1).bucketNumber <= set.bucket(i).bucketNumber,
                    "buckets are sorted");
        }
    }

    void openFrame(OpenedSet& set, int index) {
        std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(set.image->openFrame(index));
        require(frame != nullptr || !faithful_, "a band that was read once is read again");
        if (frame) {
            require(frame->getFrameIndex() == index, "a frame knows its index");
            readProperties(*frame);
            set.frames.push_back(std::move(frame));
        }
    }

    void readProperties(Pyxis::ReadImageFileFrameInterface& frame) {
        std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> set(frame.getProperties());
        require(set != nullptr || !faithful_, "a frame has properties");
        if (!set) {
            return;
        }
        using Id = kest::MultispectralPropertyId;
        std::vector<Id> ids;
        for (set->start(); !set->endOfList(); set->step()) {
            const Pyxis::FormatCodecPropertyInterface* property = set->openProperty();
            const auto* own = dynamic_cast<const KestMultispectralProperty*>(property);
            if (own != nullptr) {
                readProperty(*property);
            }
            if (own != nullptr && own->multispectralPropertyId() != Id::MetadataTextFile) {
                ids.push_back(own->multispectralPropertyId());
            }
            set->closeProperty();
        }
        require(ids == std::vector{Id::ReferenceName, Id::BandName, Id::BandType, Id::Bucket},
                "a frame publishes its band");
        properties_.push_back(std::move(set));
    }

    void useFrame(Pyxis::ReadImageFileFrameInterface& frame) {
        std::int32_t width = 0;
        std::int32_t height = 0;
        Pyxis::ChannelRange range;
        Pyxis::PixelRequest request;
        frame.frameOp1(input_.integer());
        frame.frameOp3(&width, &height);
        frame.frameOp11(input_.integer(), &range);
        require(range.minimum == 0.0, "a band has one channel");
        frame.frameOp13(0, &request);
        const bool isForwarded = frame.frameOp5() == 50 && frame.frameOp8() == 80 &&
                                 frame.frameOp9() == 90 && frame.frameOp10() == 100 &&
                                 frame.frameOp12() != nullptr && frame.frameOp15(&range) == &range;
        require(isForwarded || !faithful_, "answers are the component's");
        require(frame.frameOp16(0) == nullptr, "not the component's argument");
        frame.frameOp4();
        frame.frameOp6();
        frame.frameOp7();
    }

    void clone(const OpenedSet& set) {
        OpenedSet twin;
        twin.image.reset(codec_.cloneOpenImage(set.image.get()));
        require(twin.image != nullptr, "an image can be cloned");
        require(twin.image->getNumFrames() == set.image->getNumFrames() &&
                    twin.image->getNumFiles() == set.image->getNumFiles() &&
                    twin.image->getFileSpecifier().isEqual(set.image->getFileSpecifier()),
                "a clone is like its image");
        checkImage(*twin.image);
        sets_.push_back(std::move(twin));
    }

    /// The codec's description of itself never changes.
    void askForIdentity() {
        unsigned int major = 0;
        unsigned int minor = 0;
        unsigned int build = 0;
        codec_.getLibVersionInfo(major, minor, build);
        codec_.getApiVersionInfo(major, minor);
        require(major == 6 && minor == 0, "the version of the interfaces");
        require(codec_.codecCapability() == Pyxis::CodecCapability::ReadOnly &&
                    codec_.writeImage() == nullptr && !codec_.isEncodableImage({}, {}),
                "the codec only reads");
        require(!codec_.isValidFileName(set_) && codec_.getNumExtensions() == 0,
                "a set has no file name");
        const auto feature = static_cast<Pyxis::FormatFeature>(input_.below(6));
        require(codec_.isFormatFeature(feature) == (feature == Pyxis::FormatFeature::CompoundFiles),
                "the one feature");
        Pyxis::StringBuffer text;
        codec_.getFormatName(text);
        codec_.getDescriptionText(text);
        codec_.getCopyrightText(text);
        require(!text.isZero(), "the codec has its texts");
        codec_.getExtensionText(input_.integer(), text);
        require(text.isZero(), "no extension");
    }

    /// Looks up names of properties: the codec's own, and any other.
    void askForProperty() {
        using Identifier = Pyxis::FormatCodecPropertyInterface::PropertyIdentifier;
        const int id = static_cast<int>(input_.below(8)) - 1;
        Pyxis::StringBuffer name;
        const bool isOne =
            codec_.getMultispectralPropertyName(kest::MultispectralPropertyId{id}, name);
        require(isOne == (id >= 0 && id <= 4), "there are five properties");
        require(codec_.isSupportedProperty(Identifier::Custom, &name) == isOne, "known by name");
        name = fuzz::bufferFrom(input_.bytes(), input_);
        codec_.isSupportedProperty(static_cast<Identifier>(input_.below(9)), &name);
    }

    template <typename Item>
    std::size_t choose(const std::vector<Item>& items) {
        return input_.below(items.size());
    }

    void step() {
        const std::size_t action = input_.below(10);
        if (action == 0) {
            recognise();
        } else if (action == 1) {
            open(input_.flag());
        } else if (action == 2 && !properties_.empty()) {
            properties_.erase(properties_.begin() +
                              static_cast<std::ptrdiff_t>(choose(properties_)));
        } else if (action == 3) {
            askForProperty();
            askForIdentity();
        } else if (!sets_.empty()) {
            stepIn(action, choose(sets_));
        }
    }

    void stepIn(std::size_t action, std::size_t place) {
        OpenedSet& set = sets_[place];
        if (action == 4) {
            clone(set);
        } else if (action == 5 && set.image->getNumFrames() > 0) {
            openFrame(set, static_cast<int>(
                               input_.below(static_cast<std::size_t>(set.image->getNumFrames()))));
        } else if (action == 6) {
            set.frames.clear();
            sets_.erase(sets_.begin() + static_cast<std::ptrdiff_t>(place));
        } else if (!set.frames.empty()) {
            const std::size_t frame = choose(set.frames);
            if (action == 7) {
                set.frames.erase(set.frames.begin() + static_cast<std::ptrdiff_t>(frame));
            } else if (action == 8) {
                useFrame(*set.frames[frame]);
            } else {
                readProperties(*set.frames[frame]);
            }
        }
    }

    fuzz::Input& input_;
    fuzz::Host host_;
    bool faithful_ = true;
    FileSpecifier set_;
    std::string metadata_;
    KestMultispectralCodec codec_;
    std::vector<OpenedSet> sets_;
    std::vector<std::unique_ptr<Pyxis::FormatCodecPropertySetIterator>> properties_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    fuzz::loadTexts();
    Session(input).run();
    return 0;
}
