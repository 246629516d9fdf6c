#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "codec/KestMultispectralCodec.h"
#include "host/DirectoryFileFinder.h"
#include "host/Text.h"
#include "host/codecs/StandardCodecs.h"
#include "sets/ComponentList.h"
#include "tests/fakes/Paths.h"
#include "tests/fakes/Rasters.h"

namespace {

/// All answers of a frame, as one text.
std::string told(Pyxis::ReadImageFileInterface& image, int index) {
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image.openFrame(index));
    std::string all(12 * 8, '\0');
    Pyxis::PixelRequest request{0, 0, 12, 8, 12, 8};
    request.buffer = all.data();
    request.bufferBytes = all.size();
    EXPECT_TRUE(frame->frameOp13(0, &request));
    const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties(frame->getProperties());
    for (properties->start(); !properties->endOfList(); properties->step()) {
        all += Pyxis::toUtf8(properties->openProperty()->getName()) + '\n';
    }
    return all;
}

std::string openAndTell(const KestMultispectralCodec& codec, const Pyxis::FileSpecifier& set) {
    EXPECT_EQ(codec.isDecodableFile(set, nullptr), Pyxis::FormatDecodability::Decodable);
    Pyxis::DirectoryFileFinder finder;
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&set, finder));
    std::string all;
    for (int i = 0; i < image->getNumFrames(); ++i) {
        all += told(*image, i);
    }
    const std::unique_ptr<Pyxis::ReadImageFileInterface> copy(codec.cloneOpenImage(image.get()));
    return all + told(*copy, 0);
}

}  // namespace

// Several threads open one set, each with its own codec object. The codecs are created before the
// threads start and destroyed after they end, because all share the module of texts.
TEST(ThreadsTest, OneSetFromSeveralThreads) {
    constexpr int kThreads = 4;
    const fakes::TempDirectory directory;
    const Pyxis::StandardCodecs standard;
    Pyxis::FileSpecifier set;
    for (const char* name : {"po_1_red_0.tif", "po_1_grn_0.tif", "po_1_blu_0.tif"}) {
        kest::appendComponent(Pyxis::fileSpecifier(fakes::writeRaster(directory / name)), 0, set);
    }
    fakes::writeFile(directory / "po_1_metadata.txt", "text");
    std::this_thread::sleep_for(
        std::chrono::milliseconds(60));  // older files are opened once for all

    std::vector<KestMultispectralCodec> codecs(kThreads);
    codecs.front().setResourceFileName(
        Pyxis::fileSpecifier(std::string(fakes::kResources) + "/kestmultispectral-en.txt"));
    const std::string expected = openAndTell(codecs.front(), set);
    std::vector<std::string> answers(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 10; ++round) {
                answers[i] = openAndTell(codecs[i], set);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(answers, std::vector<std::string>(kThreads, expected));
    EXPECT_NE(expected.find("Metadata"), std::string::npos);
}
