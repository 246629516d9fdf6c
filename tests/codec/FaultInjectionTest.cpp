#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>
#include <optional>
#include <set>

#include "codec/KestMultispectralCodec.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "properties/KestMultispectralProperty.h"
#include "reader/KestMultispectralReadFile.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/FailingMemory.h"
#include "tests/fakes/Resources.h"
#include "tests/fakes/Sets.h"

namespace {

#if defined(_WIN32)
constexpr bool kHostTakesMemoryFromHere = false;
#else
constexpr bool kHostTakesMemoryFromHere = true;
#endif

using fakes::blocksInUse;
using fakes::Fault;
using fakes::memoryFault;
using fakes::property;
using fakes::StringProperty;
using BandName = KestMultispectralBandNameProperty;
using Bucket = KestMultispectralBucketProperty;
using MetadataText = KestMultispectralMetadataTextFileProperty;

enum class Product { Po, BandListTiff, Nitf, Fast };

/// An opened set of three bands, and the result of the operation under test.
struct Scene {
    explicit Scene(Product product) : set(addComponents(product)), listed(set) {
        opened.reset(codec.openImage(&set, finder));
        openedFrame.reset(opened->openFrame(1));
        ownProperties.reset(openedFrame->getProperties());
        aliveBefore = world.alive;
    }

    Pyxis::FileSpecifier addComponents(Product product);
    /// One file of three frames, each with its own property.
    template <typename Codec>
    Pyxis::FileSpecifier addFrames(Codec& reader, const std::string& path,
                                   const std::vector<fakes::PropertyPointer>& frames) {
        fakes::FileFacts file;
        for (const fakes::PropertyPointer& each : frames) {
            file.frames.push_back(fakes::bandFrame(1.0, &world));
            file.frames.back().properties.push_back(each);
        }
        reader.add(path, std::move(file));
        return fakes::framesOf(path, {0, 1, 2});
    }

    static const std::string& metadataPath() {
        static const fakes::TempFile metadata("faults", std::string(100, 'x'));
        return metadata.path();
    }

    fakes::TextsFrom texts{fakes::stringModule("numbers")};
    fakes::World world;
    fakes::Codec plain{world};
    fakes::TiffCodec tiff{world};
    fakes::NitfCodec nitf{world};
    fakes::FastCodec fast{world};
    fakes::Finder finder{world, metadataPath()};
    KestMultispectralCodec codec;
    Pyxis::FileSpecifier set;
    const Pyxis::FileSpecifier listed;
    std::unique_ptr<Pyxis::ReadImageFileInterface> opened;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> openedFrame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> ownProperties;
    int aliveBefore = 0;

    std::string answer;
    std::unique_ptr<Pyxis::ReadImageFileInterface> image;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties;
};

Pyxis::FileSpecifier Scene::addComponents(Product product) {
    const auto list = property<StringProperty>("property 9", fakes::kBandListHeader + "(3, 2, 1)");
    const auto bandFile = [](const char* code) {
        return property<fakes::FastBandFile>("L71195025_02520010730_" + std::string(code));
    };
    switch (product) {
        case Product::BandListTiff:
            return addFrames(tiff, "/a.tif", {list, list, list});
        case Product::Nitf:
            return addFrames(nitf, "/a.ntf",
                             {property<StringProperty>("property 10", "R"),
                              property<StringProperty>("property 10", "M"),
                              property<StringProperty>("property 10", "N")});
        case Product::Fast:
            return addFrames(fast, "/L71195025_02520010730_HRF.FST",
                             {bandFile("B30"), bandFile("B10"), bandFile("B20")});
        case Product::Po:
            break;
    }
    const std::vector<std::string> paths = {"/po_1_red_0.tif", "/po_1_pan_0.tif",
                                            "/po_1_nir_0.tif"};
    fakes::FrameFacts facts = fakes::bandFrame(1.0, &world);
    facts.model = 2;
    facts.bits = 24;
    facts.format = 3;
    for (const std::string& path : paths) {
        plain.add(path, facts);
    }
    return fakes::setOf(paths);
}

/// The places of a frame's properties in their order: the component's own, metadata text, reference
/// name, band name, band type, bucket. A metadata text that could not be read is empty.
std::vector<int> placesOf(Pyxis::FormatCodecPropertySetIterator& set) {
    const std::vector<std::string> names = {"",        "<18113>", "<18107>",
                                            "<18109>", "<18116>", "<18111>"};
    std::vector<int> places;
    for (set.start(); !set.endOfList(); set.step()) {
        const auto* each = set.openProperty();
        const auto name = std::find(names.begin(), names.end(), Pyxis::toUtf8(each->getName()));
        places.push_back(static_cast<int>(name - names.begin()));
        if (const auto* text = dynamic_cast<const MetadataText*>(each)) {
            Pyxis::StringBuffer value;
            text->getValue(value);
            EXPECT_EQ(value.numDataBytes(), text->isValid() ? 101 : 0);
        }
        set.closeProperty();
    }
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
    EXPECT_EQ(std::adjacent_find(places.begin(), places.end()), places.end());
    return places;
}

/// How many bands have which name, and whether the image has its metadata text.
std::string describe(const KestMultispectralReadFile& image) {
    std::map<std::string, int> counts;
    for (int i = 0; i < image.getNumFrames(); ++i) {
        const std::string name = Pyxis::toUtf8(image.band(i).bandName);
        ++counts[name.empty() ? "nameless" : name.starts_with("<18106>") ? "generic" : "named"];
    }
    std::string text;
    for (const auto& [kind, count] : counts) {
        text += (text.empty() ? "" : " ") + std::to_string(count) + " " + kind;
    }
    const Pyxis::FileSpecifier last = image.getFile(image.getNumFiles() - 1);
    return text + (last.type() == Pyxis::FileSpecifier::Type::PlainFile ? " +text" : "");
}

/// The result of the operation in a word or two. No host object may be left.
std::string outcome(Scene& scene) {
    std::string text = scene.answer;
    if (!scene.set.isEqual(scene.listed)) {
        text += " of " + std::to_string(kest::countComponents(scene.set));
    }
    if (scene.image) {
        text += describe(dynamic_cast<KestMultispectralReadFile&>(*scene.image));
    }
    if (scene.frame) {
        text += "frame " + std::to_string(scene.frame->getFrameIndex());
    }
    if (scene.properties) {
        text += placesOf(*scene.properties).size() == 6 ? "all" : "some";
    }
    scene.frame.reset();
    EXPECT_EQ(scene.world.alive, scene.aliveBefore);
    EXPECT_EQ(scene.world.misuse, 0);
    return text.empty() ? "null" : text;
}

using Answers = std::set<std::string>;

struct Operation {
    const char* name;
    void (*run)(Scene&);
    /// The allowed answers when any host call fails and when an allocation fails. They include the
    /// answer without a fault.
    Answers whenCallsFail;
    Answers whenMemoryFails;
    /// When a host call throws, if that is not answered as its failure is.
    std::optional<Answers> whenCallsThrow = std::nullopt;
    Product product = Product::Po;
};

void openImage(Scene& scene) {
    scene.image.reset(scene.codec.openImage(&scene.set, scene.finder));
}

template <typename Take>
void forEachOwnProperty(Scene& scene, Take take) {
    auto& set = *scene.ownProperties;
    for (set.start(); !set.endOfList(); set.step()) {
        const auto* property = set.openProperty();
        if (dynamic_cast<const KestMultispectralProperty*>(property) != nullptr) {
            take(*property);
        }
        set.closeProperty();
    }
}

void cloneProperties(Scene& scene) {
    int copies = 0;
    forEachOwnProperty(scene, [&copies](const auto& property) {
        const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> copy(property.clone());
        copies += copy ? 1 : 0;
    });
    scene.answer = copies == 5 ? "all" : "some";
}

/// The output of the properties that hold a file or a text.
void askProperties(Scene& scene) {
    int files = 0;
    int texts = 0;
    forEachOwnProperty(scene, [&](const auto& property) {
        Pyxis::StringBuffer text;
        Pyxis::FileSpecifier file;
        if (const auto* band = dynamic_cast<const BandName*>(&property)) {
            band->getFile(file);
            band->getBandName(text);
        } else if (const auto* bucket = dynamic_cast<const Bucket*>(&property)) {
            bucket->getBucketName(text);
        } else if (const auto* metadata = dynamic_cast<const MetadataText*>(&property)) {
            metadata->getMetadataFile(file);
        }
        files += file.isEmpty() ? 0 : 1;
        texts += text.isZero() ? 0 : 1;
    });
    scene.answer = std::to_string(files) + " files " + std::to_string(texts) + " texts";
}

void askTexts(Scene& scene) {
    Pyxis::StringBuffer text;
    Pyxis::StringBuffer name;
    scene.codec.getFormatName(text);
    const bool named = scene.codec.getMultispectralPropertyName({}, name);
    const bool supported = scene.codec.isSupportedProperty({}, &name);
    scene.answer = !text.isZero() && named && supported ? "all" : "some";
}

// A component that fails is left out of the set or has no band. A band whose list or letter cannot
// be read gets a generic name, and a set whose scheme cannot be recognised is generic.
const std::vector<Operation> kOperations = {
    {"isDecodableFile",
     [](Scene& s) {
         s.answer = std::to_string(static_cast<int>(s.codec.isDecodableFile(s.set, nullptr)));
     },
     {"0", "1", "3"},
     {"0", "1", "3"}},
    {"purifyFileSet",
     [](Scene& s) { s.answer = s.codec.purifyFileSet(s.set) ? "true" : "false"; },
     {"true", "true of 2"},
     {"true", "false"}},
    {"openImage",
     openImage,
     {"1 named +text", "2 named +text", "3 named", "3 named +text"},
     {"null", "3 named +text"},
     Answers{"null", "1 named +text", "2 named +text", "3 named +text"}},
    {"openImage by band lists",
     openImage,
     {"1 named", "2 named", "1 generic 2 named", "3 generic", "3 named"},
     {"null", "1 generic 2 named", "3 generic", "3 named"},
     Answers{"null", "1 named", "2 named", "1 generic 2 named", "3 generic", "3 named"},
     Product::BandListTiff},
    {"openImage by band letters",
     openImage,
     {"1 named", "2 named", "1 generic 2 named", "2 named 1 nameless", "3 generic", "3 named"},
     {"null", "1 generic 2 named", "3 named"},
     Answers{"null", "1 named", "2 named", "1 generic 2 named", "2 named 1 nameless", "3 generic",
             "3 named"},
     Product::Nitf},
    {"openImage by band files",
     openImage,
     {"1 named", "2 named", "3 named"},
     {"null", "3 named"},
     Answers{"null", "1 named", "2 named", "3 named"},
     Product::Fast},
    {"openFrame",
     [](Scene& s) { s.frame.reset(s.opened->openFrame(2)); },
     {"null", "frame 2"},
     {"null", "frame 2"}},
    {"getProperties",
     [](Scene& s) { s.properties.reset(s.openedFrame->getProperties()); },
     {"some", "all"},
     {"null", "some", "all"},
     Answers{"null", "all"}},
    {"cloneOpenImage",
     [](Scene& s) { s.image.reset(s.codec.cloneOpenImage(s.opened.get())); },
     {"3 named +text"},
     {"null", "3 named +text"}},
    {"getFile",
     [](Scene& s) { s.answer = s.opened->getFile(0).isEmpty() ? "none" : "file"; },
     {"file"},
     {"file", "none"}},
    {"texts", askTexts, {"all"}, {"all", "some"}},
    {"clone", cloneProperties, {"all"}, {"all", "some"}},
    {"what properties write", askProperties, {"2 files 2 texts"}, {"2 files 2 texts"}},
};

/// Runs the operation with a fault in the n-th host call; false when it makes fewer calls.
bool runWithFault(const Operation& operation, Fault::Kind kind, int n, Answers& answers) {
    SCOPED_TRACE(n);
    Scene scene(operation.product);
    int calls = 0;
    scene.world.fail = [&](std::string_view) { return calls++ == n ? kind : Fault::None; };
    if (kind == Fault::Throw) {
        scene.world.failing = [&](std::string_view) { return calls++ == n; };
    }
    EXPECT_NO_THROW(operation.run(scene));
    scene.world.fail = nullptr;
    scene.world.failing = nullptr;
    answers.insert(outcome(scene));
    return calls > n;
}

TEST(FaultInjectionTest, EveryHostCallMayFailOrThrow) {
    int faults = 0;
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        for (const Fault::Kind kind : {Fault::Fail, Fault::FailOtherwise, Fault::Throw}) {
            Answers answers;
            for (int n = 0; runWithFault(operation, kind, n, answers); ++n) {
                ++faults;
            }
            EXPECT_EQ(answers, kind == Fault::Throw && operation.whenCallsThrow
                                   ? *operation.whenCallsThrow
                                   : operation.whenCallsFail);
        }
    }
    std::cout << "host calls made to fail or throw: " << faults << "\n";
}

/// Runs the operation with a failing n-th allocation; false when it makes fewer.
bool runShortOfMemory(const Operation& operation, int n, bool sticky, Answers& answers) {
    SCOPED_TRACE(n);
    std::string answer(200, ' ');  // room for the answer, so that it takes no other memory
    const long before = blocksInUse;
    bool reached = false;
    {
        Scene scene(operation.product);
        kest::releaseResourceModule();  // so that loading the texts may fail as well
        memoryFault = {n, 0, sticky};
        EXPECT_NO_THROW(operation.run(scene));
        reached = memoryFault.requests > n;
        memoryFault = {};
        answer = outcome(scene);
    }
    EXPECT_TRUE(blocksInUse == before || !kHostTakesMemoryFromHere);
    answers.insert(answer);
    return reached;
}

TEST(FaultInjectionTest, EveryRequestForMemoryMayFail) {
    int faults = 0;
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        Scene(operation.product);  // allocates what stays
        Answers answers;
        for (const bool sticky : {false, true}) {
            for (int n = 0; runShortOfMemory(operation, n, sticky, answers); ++n) {
                ++faults;
            }
        }
        if (kHostTakesMemoryFromHere) {
            EXPECT_EQ(answers, operation.whenMemoryFails);
        }
    }
    std::cout << "requests for memory made to fail: " << faults << "\n";
}

std::vector<int> answersOf(Pyxis::ReadImageFileFrameInterface& frame) {
    using Frame = Pyxis::ReadImageFileFrameInterface;
    std::int32_t width = 0;
    std::int32_t height = 0;
    Pyxis::ChannelRange range;
    Pyxis::PixelRequest pixels;
    frame.frameOp3(&width, &height);
    frame.frameOp11(5, &range);
    std::vector<int> answers = {frame.frameOp1(0), frame.frameOp1(3), width, height};
    for (const auto number :
         {&Frame::frameOp4, &Frame::frameOp5, &Frame::frameOp6, &Frame::frameOp7, &Frame::frameOp8,
          &Frame::frameOp9, &Frame::frameOp10}) {
        answers.push_back((frame.*number)());
    }
    const bool read = frame.frameOp13(4, &pixels);
    const int others[] = {static_cast<int>(range.minimum),
                          static_cast<int>(range.maximum),
                          frame.frameOp12() != nullptr,
                          read,
                          pixels.x,
                          frame.frameOp15(&frame) == &frame,
                          frame.frameOp16(16) != nullptr,
                          frame.frameOp16(1) != nullptr};
    answers.insert(answers.end(), std::begin(others), std::end(others));
    return answers;
}

TEST(FaultInjectionTest, RequestsThatThrowAreAnsweredAsByAFrameThatHoldsNothing) {
    Scene scene(Product::Po);
    // The component gets channel 0 for any channel.
    EXPECT_THAT(
        answersOf(*scene.openedFrame),
        testing::ElementsAre(1, 0, 30, 31, 2, 50, 24, 3, 80, 90, 100, 0, 111, 1, 1, 4, 1, 1, 0));
    scene.world.fail = [](std::string_view) { return Fault::Throw; };
    scene.world.failing = [](std::string_view) { return true; };
    EXPECT_THAT(answersOf(*scene.openedFrame),
                testing::ElementsAre(0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

}  // namespace
