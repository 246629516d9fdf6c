#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <new>

#include "codec/KestMultispectralCodec.h"
#include "fakes/Fakes.h"
#include "fakes/Resources.h"
#include "fakes/Sets.h"
#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "properties/KestMultispectralProperty.h"

namespace {

/// Which request for memory fails, counted from 0; every later one too when `sticky`.
struct MemoryFault {
    static constexpr int kNever = std::numeric_limits<int>::max();
    int failing = kNever;
    int requests = 0;
    bool sticky = false;

    bool failsNow() {
        const int request = failing == kNever ? -1 : requests++;
        return request == failing || (sticky && request > failing);
    }
} memoryFault;

void* allocateOrNull(std::size_t size) noexcept {
    return memoryFault.failsNow() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size) {
    void* memory = allocateOrNull(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocateOrNull(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using fakes::Fault;

/// A product set of three bands with its metadata text file, opened, and what came of the
/// operation under test.
struct Scene {
    Scene() {
        for (const char* path : {"/po_1_red_0.tif", "/po_1_pan_0.tif", "/po_1_nir_0.tif"}) {
            host.add(path, fakes::bandFrame());
        }
        opened.reset(codec.openImage(&set, finder));
        openedFrame.reset(opened->openFrame(1));
        ownProperties.reset(openedFrame->getProperties());
        aliveBefore = world.alive;
    }

    fakes::TextsFrom texts{fakes::stringModule("numbers")};
    fakes::World world;
    fakes::Codec host{world};
    fakes::TempFile metadata{"faults", std::string(100, 'x')};
    fakes::Finder finder{world, metadata.path()};
    KestMultispectralCodec codec;
    const Pyxis::FileSpecifier listed =
        fakes::setOf({"/po_1_red_0.tif", "/po_1_pan_0.tif", "/po_1_nir_0.tif"});
    Pyxis::FileSpecifier set = listed;
    std::unique_ptr<Pyxis::ReadImageFileInterface> opened;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> openedFrame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> ownProperties;
    int aliveBefore = 0;

    int number = -1;
    std::unique_ptr<Pyxis::ReadImageFileInterface> image;
    std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame;
    std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties;
};

struct Operation {
    const char* name;
    void (*run)(Scene&);
    /// Answers with host call 0, 1, 2, ... failing, the last one without a failure.
    std::vector<std::string> whenCallsFail;
    std::vector<std::string> whenCallsThrow;
};

/// What came of the operation, in words.
std::string outcome(Scene& scene) {
    std::string text = std::to_string(scene.number);
    if (!scene.set.isEqual(scene.listed)) {
        text += " of " + std::to_string(kest::countComponents(scene.set));
    }
    if (scene.image) {
        text += " bands " + std::to_string(scene.image->getNumFrames()) + " files " +
                std::to_string(scene.image->getNumFiles());
    }
    if (scene.frame) {
        text += " frame " + std::to_string(scene.frame->getFrameIndex());
    }
    if (scene.properties) {
        text += " properties " + std::to_string(scene.properties->numProperties());
    }
    return text;
}

std::vector<std::string> repeat(int count, const std::string& answer,
                                std::vector<std::string> then) {
    then.insert(then.begin(), static_cast<std::size_t>(count), answer);
    return then;
}

/// Per component five calls: which codec, image, frame, property set, property. A component
/// without a codec is skipped; another fault refuses the second as too few, the third as unfit.
const std::vector<std::string> kDecodability = {"0", "3", "3", "3", "3", "0", "3", "3",
                                                "3", "3", "0", "1", "1", "1", "1", "0"};
const std::vector<std::string> kPurified = {"1 of 2", "1 of 2", "1 of 2", "1"};

const std::vector<Operation> kOperations = {
    {"isDecodableFile",
     [](Scene& s) { s.number = static_cast<int>(s.codec.isDecodableFile(s.set, nullptr)); },
     kDecodability, kDecodability},
    {"purifyFileSet",
     [](Scene& s) { s.number = s.codec.purifyFileSet(s.set) ? 1 : 0; },
     kPurified,
     {"0", "0", "0", "1"}},
    // The codecs are asked first; then each component is opened in four calls; then the finder.
    {"openImage", [](Scene& s) { s.image.reset(s.codec.openImage(&s.set, s.finder)); },
     [] {
         auto answers =
             repeat(12, "-1 bands 2 files 4", {"-1 bands 3 files 3", "-1 bands 3 files 4"});
         const char* first[] = {"-1 bands 1 files 3", "-1 bands 1 files 3", "-1 bands 2 files 3"};
         answers.insert(answers.begin(), std::begin(first), std::end(first));
         return answers;
     }(),
     repeat(16, "-1", {"-1 bands 3 files 4"})},
    {"openFrame", [](Scene& s) { s.frame.reset(s.opened->openFrame(2)); },
     repeat(2, "-1", {"-1 frame 2"}), repeat(2, "-1", {"-1 frame 2"})},
    {"getProperties", [](Scene& s) { s.properties.reset(s.openedFrame->getProperties()); },
     repeat(2, "-1 properties 5", {"-1 properties 6"}), repeat(2, "-1", {"-1 properties 6"})},
    {"cloneOpenImage",
     [](Scene& s) { s.image.reset(s.codec.cloneOpenImage(s.opened.get())); },
     {"-1 bands 3 files 4"},
     {"-1 bands 3 files 4"}},
};

/// Runs the operation with the n-th host call going wrong, for every n that it gets to.
std::vector<std::string> outcomesOf(const Operation& operation, Fault::Kind kind) {
    std::vector<std::string> outcomes;
    bool injected = true;
    for (int n = 0; injected; ++n) {
        Scene scene;
        int calls = 0;
        scene.world.fail = [&](std::string_view) { return calls++ == n ? kind : Fault::None; };
        EXPECT_NO_THROW(operation.run(scene));
        injected = calls > n;
        scene.world.fail = nullptr;
        outcomes.push_back(outcome(scene));
        scene.frame.reset();
        EXPECT_EQ(scene.world.alive, scene.aliveBefore) << operation.name << " " << n;
    }
    return outcomes;
}

TEST(FaultInjectionTest, EveryHostCallMayFailOrThrow) {
    std::size_t injected = 0;
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        const auto failed = outcomesOf(operation, Fault::Fail);
        EXPECT_EQ(failed, operation.whenCallsFail);
        const auto thrown = outcomesOf(operation, Fault::Throw);
        EXPECT_EQ(thrown, operation.whenCallsThrow);
        injected += failed.size() + thrown.size() - 2;
    }
    RecordProperty("injected", static_cast<int>(injected));
    std::cout << "host calls made to fail or throw: " << injected << "\n";
}

/// Whether the outcome is all or nothing, but for `missing` properties of the set at most.
bool isWholeOrNothing(const std::string& answer, const std::string& whole, int missing) {
    const std::vector<std::string> refusals = {"-1", "0", "1", "3"};
    if (answer == whole || std::count(refusals.begin(), refusals.end(), answer) != 0) {
        return true;
    }
    for (int properties = 6 - missing; properties < 6; ++properties) {
        if (answer == "-1 properties " + std::to_string(properties)) {
            return true;
        }
    }
    return false;
}

TEST(FaultInjectionTest, EveryRequestForMemoryMayFail) {
    int injected = 0;
    for (const Operation& operation : kOperations) {
        Scene untouched;
        operation.run(untouched);
        const std::string whole = outcome(untouched);
        for (const bool sticky : {false, true}) {
            bool reached = true;
            for (int n = 0; reached; ++n) {
                SCOPED_TRACE(operation.name + std::string(" ") + std::to_string(n));
                Scene scene;
                memoryFault = {n, 0, sticky};
                bool thrown = false;
                try {
                    operation.run(scene);
                } catch (...) {
                    thrown = true;
                }
                reached = memoryFault.requests > n;
                memoryFault = {};
                EXPECT_FALSE(thrown);
                const std::string answer = outcome(scene);
                EXPECT_TRUE(isWholeOrNothing(answer, whole, sticky ? 6 : 1)) << answer;
                scene.frame.reset();
                EXPECT_EQ(scene.world.alive, scene.aliveBefore);
                injected += reached ? 1 : 0;
            }
        }
    }
    RecordProperty("injected", injected);
    std::cout << "requests for memory made to fail: " << injected << "\n";
}

TEST(FaultInjectionTest, MetadataTextIsTheWholeFileOrNone) {
    const fakes::TempFile file("whole", std::string(100, 'x'));
    const Pyxis::FileSpecifier specifier = Pyxis::fileSpecifier(file.path());
    bool reached = true;
    for (int n = 0; reached; ++n) {
        memoryFault = {n, 0, false};
        std::unique_ptr<KestMultispectralMetadataTextFileProperty> property;
        try {
            property = std::make_unique<KestMultispectralMetadataTextFileProperty>(specifier);
        } catch (const std::bad_alloc&) {
        }
        reached = memoryFault.requests > n;
        memoryFault = {};
        Pyxis::StringBuffer value;
        if (property) {
            property->getValue(value);
            EXPECT_EQ(value.numDataBytes(), property->isValid() ? 101 : 0) << n;
        }
        EXPECT_TRUE(reached || (property && property->isValid()));
    }
}

TEST(FaultInjectionTest, PropertiesTellTheirTextsOrNothing) {
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier("/a.tif");
    const KestMultispectralBandNameProperty band(0, file, 0, file.string());
    const KestMultispectralBucketProperty bucket(0, 1, file.string());
    const KestMultispectralMetadataTextFileProperty metadata(file);
    Pyxis::StringBuffer text;
    Pyxis::FileSpecifier out;
    bool thrown = false;
    memoryFault = {0, 0, true};
    try {
        band.getBandName(text);
        band.getFile(out);
        bucket.getBucketName(text);
        metadata.getMetadataFile(out);
    } catch (...) {
        thrown = true;
    }
    memoryFault = {};
    EXPECT_FALSE(thrown);
}

TEST(FaultInjectionTest, CloneGivesNullWheneverMemoryFails) {
    Scene scene;
    for (scene.ownProperties->start(); !scene.ownProperties->endOfList();
         scene.ownProperties->step()) {
        const auto* property = scene.ownProperties->openProperty();
        if (dynamic_cast<const KestMultispectralProperty*>(property) == nullptr) {
            continue;
        }
        std::unique_ptr<Pyxis::FormatCodecPropertyInterface> copy;
        int n = 0;
        for (; !copy; ++n) {
            memoryFault = {n, 0, false};
            copy.reset(property->clone());
            const bool reached = memoryFault.requests > n;
            memoryFault = {};
            ASSERT_NE(reached, copy != nullptr);
        }
        EXPECT_GE(n, 2);  // more where the host's library takes its memory from here, too
    }
}

}  // namespace
