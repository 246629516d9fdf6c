#include "tool/scene/OpenedSet.h"

#include <cerrno>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "bands/NamingScheme.h"
#include "host/Text.h"
#include "host/codecs/RasterSource.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBandTypeProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "properties/KestMultispectralReferenceNameProperty.h"
#include "pyxis/FormatCodecGeoCorrelation.h"
#include "sets/ComponentList.h"
#include "sets/SetMembership.h"
#include "tool/scene/AuxiliaryFile.h"
#include "tool/scene/BandLabels.h"
#include "tool/scene/Diagnosis.h"
#include "tool/scene/Inputs.h"
#include "tool/scene/Misfits.h"
#include "tool/scene/PathParts.h"
#include "tool/scene/PropertyText.h"
#include "tool/terminal/Interrupt.h"

namespace kestms {
namespace {

using Pyxis::toUtf8;

struct SystemText {
    Pyxis::StringBuffer buffer;
    std::shared_ptr<const std::string> text = std::make_shared<std::string>();
};

/// The text from one of the codec's getters.
template <typename Getter>
std::string textOf(Getter getter) {
    Pyxis::StringBuffer text;
    getter(text);
    return toUtf8(text);
}

/// The text of a band's coordinate system, nearly always that of the previous band.
std::shared_ptr<const std::string> systemText(const Pyxis::StringBuffer& text, SystemText& last) {
    const auto size = static_cast<std::size_t>(text.numDataBytes());
    const bool same = last.buffer.type() == text.type() &&
                      last.buffer.numDataBytes() == text.numDataBytes() &&
                      std::equal(text.data(), text.data() + size, last.buffer.data());
    if (!same) {
        last = {text, std::make_shared<std::string>(toUtf8(text))};
    }
    return last.text;
}

Georeference georeferenceOf(const Pyxis::FormatCodecGeoCorrelation& geo, SystemText& system) {
    kest::InclusionData data;
    kest::measureGeoreference(geo, data);
    Pyxis::Vector2d size;
    Pyxis::Vector2d scale;
    Georeference result;
    geo.getPixelSize(size);
    geo.getUnitScale(scale);
    geo.getRotation(result.rotation);
    result.pixelWidth = size.x * scale.x;
    result.pixelHeight = size.y * scale.y;
    result.upperLeft = data.upperLeft;
    result.upperRight = data.upperRight;
    result.lowerLeft = data.lowerLeft;
    result.lowerRight = data.lowerRight;
    result.coordinateSystem = systemText(data.coordinateSystem, system);
    result.epsg = data.coordinateSystemCode;
    return result;
}

/// Reads the properties of a frame into its band and the description of the set.
class PropertyReader {
  public:
    PropertyReader(Band& band, SetDescription& set, SystemText& system)
        : band_(band), set_(set), system_(system) {}

    void read(const Pyxis::FormatCodecPropertyInterface& property) {
        using Identifier = Pyxis::FormatCodecPropertyInterface::PropertyIdentifier;
        if (property.getIdentifier() == Identifier::GeoCorrelation) {
            const auto* geo = dynamic_cast<const Pyxis::FormatCodecGeoCorrelation*>(&property);
            if (geo != nullptr && !band_.georeference) {
                band_.georeference = georeferenceOf(*geo, system_);
            }
        } else if (const auto* reference =
                       dynamic_cast<const KestMultispectralReferenceNameProperty*>(&property)) {
            set_.referenceName =
                textOf([reference](Pyxis::StringBuffer& out) { reference->getValue(out); });
        } else if (const auto* name =
                       dynamic_cast<const KestMultispectralBandNameProperty*>(&property)) {
            readName(*name);
        } else if (const auto* type =
                       dynamic_cast<const KestMultispectralBandTypeProperty*>(&property)) {
            band_.type = type->bandType();
            band_.assignment = type->bandAssignment();
        } else if (const auto* bucket =
                       dynamic_cast<const KestMultispectralBucketProperty*>(&property)) {
            band_.bucket = bucket->getBucketNum();
            band_.bucketName =
                textOf([bucket](Pyxis::StringBuffer& out) { bucket->getBucketName(out); });
        } else if (const auto* metadata =
                       dynamic_cast<const KestMultispectralMetadataTextFileProperty*>(&property)) {
            Pyxis::FileSpecifier file;
            set_.metadataIsValid = metadata->getMetadataFile(file);
            set_.metadataFile = toUtf8(file.string());
        }
    }

  private:
    void readName(const KestMultispectralBandNameProperty& name) {
        Pyxis::FileSpecifier file;
        name.getFile(file);
        band_.componentPath = toUtf8(file.string());
        band_.componentFrame = name.getFrame();
        band_.indexInBucket = name.getBandIndex();
        band_.name = textOf([&name](Pyxis::StringBuffer& out) { name.getBandName(out); });
    }

    Band& band_;
    SetDescription& set_;
    SystemText& system_;
};

void readPixelFacts(Pyxis::ReadImageFileFrameInterface& frame, Band& band) {
    frame.frameOp3(&band.width, &band.height);
    band.model = static_cast<Pyxis::PixelModel>(frame.frameOp4());
    band.bits = frame.frameOp6();
    band.format = static_cast<Pyxis::SampleFormat>(frame.frameOp7());
    band.block = {frame.frameOp9(), frame.frameOp10()};
    Pyxis::ChannelRange range;
    frame.frameOp11(0, &range);
    if (range.hasNoData) {
        band.noData = range.noData;
    }
}

/// What a component says itself, and its auxiliary file. Keeps the last one of these: bands of one
/// component follow each other.
class ComponentReader {
  public:
    void describe(Band& band) {
        const auto source = Pyxis::rasterSourceOf(band.componentPath, band.componentFrame);
        if (!source) {
            return;
        }
        band.label = source->label;
        if (path_ != band.componentPath) {
            path_ = band.componentPath;
            content_ = source->mayHaveAuxiliaryFile ? readAuxiliaryFile(path_) : AuxiliaryFile();
        }
        const auto found = content_.bands.find(source->band);
        if (found != content_.bands.end()) {
            band.sideDescription = found->second.description.value_or("");
            if (found->second.noData) {
                band.noData = found->second.noData;  // before the file's own, as in GDAL
            }
        }
    }

  private:
    std::string path_;
    AuxiliaryFile content_;
};

/// Whether two lists have as many components. Equal ones, as nearly always, are not parsed.
bool haveEqualCounts(const Pyxis::FileSpecifier& one, const Pyxis::FileSpecifier& other) {
    return one.isEqual(other) || kest::countComponents(one) == kest::countComponents(other);
}

void readProperties(Pyxis::ReadImageFileFrameInterface& frame, Band& band, SetDescription& set,
                    SystemText& system) {
    PropertyReader reader(band, set, system);
    forEachProperty(frame, [&reader](const auto& property) { reader.read(property); });
}

}  // namespace

Pyxis::Size OpenedSet::finestSize() const {
    Pyxis::Size size;
    for (const Band& band : bands_) {
        if (std::int64_t{band.width} * band.height > std::int64_t{size.width} * size.height) {
            size = {band.width, band.height};
        }
    }
    return size;
}

OpenedSet::OpenedSet(Session& session, const Pyxis::FileSpecifier& set) {
    const KestMultispectralCodec& codec = session.codec();
    if (codec.isDecodableFile(set, &session.finder()) != Pyxis::FormatDecodability::Decodable) {
        failUndecodable(diagnose(session, set));
    }
    image_.reset(codec.openImage(&set, session.finder()));
    if (image_ && !haveEqualCounts(specifier(), set)) {
        // Components after an unreadable one may lose their bands; the codec's remedy is a list
        // without it.
        Pyxis::FileSpecifier readable = set;
        codec.purifyFileSet(readable);
        image_.reset(codec.openImage(&readable, session.finder()));
    }
    if (!image_) {
        throw Failure(ExitCode::Unexpected, "the set cannot be opened");
    }
    gatherFiles();
    gatherBands(codec);
    gatherBuckets();
    labelUnknownBands();
}

std::unique_ptr<Pyxis::ReadImageFileFrameInterface> OpenedSet::openFrame(int frame) const {
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> opened(image_->openFrame(frame));
    if (!opened) {
        const std::string file = static_cast<std::size_t>(frame) < bands_.size()
                                     ? bands_[static_cast<std::size_t>(frame)].componentPath
                                     : "frame " + std::to_string(frame);
        throw Failure(ExitCode::CannotRead, file, "the band cannot be opened");
    }
    return opened;
}

void OpenedSet::gatherFiles() {
    std::unordered_set<std::string> seen;
    const auto add = [&](const std::string& path) {
        if (seen.insert(path).second) {
            files_.push_back(path);
        }
    };
    const std::vector<Component> components = componentsOf(image_->getFileSpecifier());
    for (const Component& component : components) {
        add(component.path);
    }
    // The metadata text file follows the components.
    for (int i = static_cast<int>(components.size()); i < image_->getNumFiles(); ++i) {
        add(toUtf8(image_->getFile(i).string()));
    }
}

void OpenedSet::gatherBands(const KestMultispectralCodec& codec) {
    description_.scheme = codec.getNamingScheme(*image_);
    SystemText system;
    ComponentReader component;
    for (int i = 0; i < image_->getNumFrames(); ++i) {
        throwIfInterrupted();
        const auto frame = openFrame(i);
        Band band;
        band.frame = i;
        readPixelFacts(*frame, band);
        readProperties(*frame, band, description_, system);
        component.describe(band);
        codec.getBandDetails(*image_, i, band);
        if (!band.noData) {
            band.noData = band.productNoData;
        }
        bands_.push_back(std::move(band));
    }
}

namespace {

/// One file of a numbered set may end in something else ("SCL"), which is no number of a band.
bool endsInNumber(const std::string& path) {
    const std::string_view name = stemOf(path);
    return !name.empty() && name.back() >= '0' && name.back() <= '9';
}

}  // namespace

void OpenedSet::labelUnknownBands() {
    std::vector<Band*> unknown;
    std::vector<Band*> numbered;
    std::vector<std::string> paths;
    for (Band& band : bands_) {
        paths.push_back(band.componentPath);
        const bool isNumbered = description_.scheme == kest::SchemeNumbered;
        // Products in the catalogue name bands of unknown type, too.
        const bool isCounted = band.type == kest::BandType::Unknown && !isNumbered &&
                               description_.scheme != kest::SchemeCatalogue;
        if (isCounted || band.number == kest::kUnrecognisedNumber ||
            (isNumbered && !endsInNumber(band.componentPath))) {
            unknown.push_back(&band);
        } else if (isNumbered) {
            numbered.push_back(&band);
        }
    }
    labelBands(unknown, paths, true);
    labelBands(numbered, paths, false);  // the number is what their names differ in
}

void OpenedSet::gatherBuckets() {
    for (const Band& band : bands_) {
        const auto index = static_cast<std::size_t>(band.bucket);
        if (index >= buckets_.size()) {
            buckets_.resize(index + 1);
        }
        Bucket& bucket = buckets_[index];
        if (bucket.bandCount++ == 0) {
            const Georeference place = band.georeference.value_or(Georeference());
            bucket = {band.bucket, band.bucketNumber, band.bucketName,
                      1,           place.pixelWidth,  place.pixelHeight};
        }
    }
}

namespace {

/// Adds a hint to a refusal if an option would help.
OpenedSet openOrHint(Session& session, const Pyxis::FileSpecifier& set) {
    try {
        return {session, set};
    } catch (const Failure& failure) {
        if (failure.code() != ExitCode::NotDecodable || !isSetWithoutMisfits(session, set)) {
            throw;
        }
        throw Failure(failure.code(),
                      std::string(failure.what()) + " (--skip-misfits leaves out what differs)");
    }
}

void warnOfLeftOut(const Context& context, const Pyxis::FileSpecifier& given,
                   const Pyxis::FileSpecifier& taken) {
    if (haveEqualCounts(taken, given)) {
        return;
    }
    const std::vector<Component> rest = componentsOf(taken);
    std::size_t next = 0;
    // The opened components are the given ones in order, with some left out.
    for (const Component& component : componentsOf(given)) {
        if (next < rest.size() && rest[next].path == component.path &&
            rest[next].frame == component.frame) {
            ++next;
        } else {
            const std::string why = whyNotReadable(component.path);
            if (why.find(std::generic_category().message(EMFILE)) != std::string::npos) {
                throw Failure(ExitCode::CannotRead, component.path, why);
            }
            context.warn(component.path, "left out: " + why);
        }
    }
}

}  // namespace

std::vector<Band> framesAlone(const std::string& path) {
    std::vector<Band> bands;
    const auto image = openImage(path);
    SetDescription unused;
    SystemText system;
    for (int i = 0; image && i < image->getNumFrames(); ++i) {
        const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image->openFrame(i));
        if (!frame) {
            return {};
        }
        Band& band = bands.emplace_back();
        band.componentPath = path;
        band.componentFrame = i;
        readPixelFacts(*frame, band);
        readProperties(*frame, band, unused, system);
    }
    return bands;
}

OpenedSet openSet(Context& context, const std::vector<std::string>& arguments) {
    const Session::Operation operation;
    const Pyxis::FileSpecifier given =
        withoutMisfits(context, readSet(arguments, context, MissingFile::Fail));
    OpenedSet opened = openOrHint(context.session(), given);
    for (const std::string& file : opened.files()) {
        context.inputs.add(file);
    }
    warnOfLeftOut(context, given, opened.specifier());
    return opened;
}

}  // namespace kestms
