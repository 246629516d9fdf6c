#include "tests/fakes/FailingMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "host/CodecRegistry.h"
#include "tests/host/formats/Opened.h"
#include "tool/samples/FastHeaderText.h"

#if defined(__SANITIZE_ADDRESS__)
#define KEST_LEAKS_ARE_FOUND
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KEST_LEAKS_ARE_FOUND
#endif
#endif
#if defined(KEST_LEAKS_ARE_FOUND)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

/// GDAL and libtiff lose memory when a request of theirs fails, which is not ours to report.
struct LeaksOfGdalPass {
#if defined(KEST_LEAKS_ARE_FOUND)
    LeaksOfGdalPass() {
        __lsan_disable();
    }
    LeaksOfGdalPass(const LeaksOfGdalPass&) = delete;
    LeaksOfGdalPass& operator=(const LeaksOfGdalPass&) = delete;
    ~LeaksOfGdalPass() {
        __lsan_enable();
    }
#endif
};

using namespace Pyxis;
using fakes::memoryFault;

/// Asks everything that a host asks of a file. Returns how far that came.
int ask(const FileSpecifier& file) {
    const ImageFormatCodec* codec = nullptr;
    CodecRegistry::instance().find(file, codec);
    if (codec == nullptr) {
        return 0;
    }
    StringBuffer text;
    codec->getFormatName(text);
    codec->getExtensionText(0, text);
    codec->isValidFileName(file);
    codec->isSupportedProperty(FormatCodecPropertyInterface::PropertyIdentifier::Custom, &text);
    const std::unique_ptr<ReadImageFileInterface> image(codec->openImage(&file));
    if (!image) {
        return 1;
    }
    image->getFile(image->getNumFiles() - 1);
    const std::unique_ptr<ReadImageFileFrameInterface> frame(image->openFrame(0));
    if (!frame) {
        return 2;
    }
    const std::unique_ptr<FormatCodecPropertySetIterator> properties(frame->getProperties());
    if (!properties) {
        return 3;
    }
    ChannelRange range;
    frame->frameOp1(1);
    frame->frameOp8();
    frame->frameOp11(0, &range);
    std::array<unsigned char, 16> bytes{};
    PixelRequest request{0, 0, 4, 4, 4, 4};
    request.buffer = bytes.data();
    request.bufferBytes = bytes.size();
    request.sampleFormat = SampleFormat::SignedInteger;
    request.sampleBits = 8;
    return frame->frameOp13(0, &request) ? 5 : 4;
}

constexpr int kAll = 5;

class FailingMemory : public testing::Test {
  protected:
    enum class Faults { Single, Lasting };

    /// Asks with one request for memory, or all from it on, failing, for every request there is.
    static void failEach(const std::string& path, Faults faults, int usual = kAll) {
        SCOPED_TRACE(path);
        const FileSpecifier file = fileSpecifier(path);
        bool reached = true;
        for (int n = 0; reached; ++n) {
            const StandardCodecs codecs;  // that have nothing in their cache
            // GDAL counts the files that a thread is opening, and exceptions confuse it.
            std::thread([&] {
                [[maybe_unused]] const LeaksOfGdalPass pass;
                memoryFault = {n, 0, faults == Faults::Lasting};
                EXPECT_NO_THROW(ask(file)) << n;
                reached = memoryFault.requests > n;
                memoryFault = {};
            }).join();
            ASSERT_EQ(ask(file), usual) << "broken for good by the loss of request " << n;
        }
    }

    fakes::TempDirectory directory;
};

TEST_F(FailingMemory, GivesTheUsualAnswersAndBreaksNothing) {
    const std::string tiffs[] = {
        fakes::writeRaster(directory / "plain.tif"),
        fakes::writeRaster(directory / "described.tif", {.description = "scene"}),
    };
    for (const std::string& path : tiffs) {
        failEach(path, Faults::Lasting);
        failEach(path, Faults::Single);
    }
    // Opening a FAST file asks PROJ, which ends the process when memory fails. What is looked at
    // before that, here a band that is no file, is ours.
    const kestms::samples::FastProduct product{{"L7_B10.FST"}, 12, 8, 500000, 5600000, 30};
    fakes::writeFile(directory / "L7_HRF.FST", kestms::samples::fastHeaderText(product));
    ASSERT_EQ(mkfifo((directory / "L7_B10.FST").c_str(), 0600), 0);
    failEach(directory / "L7_HRF.FST", Faults::Lasting, 0);
    failEach(directory / "L7_HRF.FST", Faults::Single, 0);
}

}  // namespace
