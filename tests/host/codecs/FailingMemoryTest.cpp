#include "tests/fakes/FailingMemory.h"

#include <execinfo.h>
#include <gmock/gmock.h>
#include <link.h>
#include <sys/stat.h>

#include <cstdint>
#include <string_view>
#include <thread>

#include "host/CodecRegistry.h"
#include "tests/host/formats/Opened.h"
#include "tool/samples/FastHeaderText.h"

// In programs with a leak sanitizer only.
extern "C" [[gnu::weak]] void __lsan_disable();
extern "C" [[gnu::weak]] void __lsan_enable();

namespace {

/// GDAL and libtiff leak memory when an allocation of theirs fails; not our fault.
void passLeaks(bool pass) {
    if (void (*call)() = pass ? __lsan_disable : __lsan_enable; call != nullptr) {
        call();
    }
}

using namespace Pyxis;
using fakes::memoryFault;

/// The address range of a library's code.
struct CodeOf {
    std::string_view name;
    std::uintptr_t begin = 0, end = 0;
};

CodeOf codeOf(std::string_view name) {
    CodeOf code{name};
    dl_iterate_phdr(
        [](dl_phdr_info* library, std::size_t /*size*/, void* data) {
            auto& found = *static_cast<CodeOf*>(data);
            if (std::string_view(library->dlpi_name).find(found.name) == std::string_view::npos) {
                return 0;
            }
            for (int i = 0; i < library->dlpi_phnum; ++i) {
                const auto& part = library->dlpi_phdr[i];
                if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0) {
                    found.begin = library->dlpi_addr + part.p_vaddr;
                    found.end = found.begin + part.p_memsz;
                }
            }
            return 1;
        },
        &code);
    return code;
}

/// Whether GDAL, or a library that it calls, makes the current allocation.
bool isOfGdal() {
    static const CodeOf gdal = codeOf("/libgdal.");
    std::array<void*, 48> callers{};
    const int count = backtrace(callers.data(), static_cast<int>(callers.size()));
    return std::any_of(callers.begin(), callers.begin() + count, [](void* caller) {
        const auto at = reinterpret_cast<std::uintptr_t>(caller);
        return at >= gdal.begin && at < gdal.end;
    });
}

/// Makes all calls that a host makes for a file. Returns how far they succeeded.
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
    enum class Requests { All, Ours };

    /// Makes the calls with one allocation, then with all from it on, failing, for every one.
    static void failEach(const std::string& path, Requests requests, int usual = kAll) {
        failEach(path, requests, usual, false);
        failEach(path, requests, usual, true);
    }
    static void failEach(const std::string& path, Requests requests, int usual, bool isLasting) {
        SCOPED_TRACE(path);
        const FileSpecifier file = fileSpecifier(path);
        bool reached = true;
        for (int n = 0; reached; ++n) {
            const StandardCodecs codecs;  // with an empty cache
            // GDAL counts the files that a thread is opening, and exceptions confuse it.
            std::thread([&] {
                passLeaks(true);
                memoryFault = {n, 0, isLasting, requests == Requests::Ours ? isOfGdal : nullptr};
                EXPECT_NO_THROW(ask(file)) << n;
                reached = memoryFault.requests > n;
                memoryFault = {};
                passLeaks(false);
            }).join();
            ASSERT_EQ(ask(file), usual) << "broken for good by the loss of request " << n;
        }
    }

    std::string unplaced(const char* name, const char* driver,
                         const std::vector<std::string>& options = {}) const {
        const std::string path = fakes::writeRaster(
            directory / name, {.transform = {}, .epsg = 0, .driver = driver, .options = options});
        std::filesystem::remove(path + ".aux.xml");
        return path;
    }

    fakes::TempDirectory directory;
};

TEST_F(FailingMemory, GivesTheUsualAnswersAndBreaksNothing) {
    failEach(fakes::writeRaster(directory / "plain.tif"), Requests::All);
    failEach(fakes::writeRaster(directory / "described.tif", {.description = "scene"}),
             Requests::All);
}

/// Other libraries end the process on allocation failure, so their allocations succeed.
TEST_F(FailingMemory, BreaksNothingOfOursInOtherFormats) {
    fakes::writeFile(directory / "world.pgw", "30\n0\n0\n-30\n1015\n1985\n");
    unplaced("segments.ntf", "NITF", {"NUMI=2"});
    const std::string paths[] = {
        unplaced("segments.ntf", "NITF", {"APPEND_SUBDATASET=YES"}),
        fakes::writeRaster(directory / "envi.dat", {.epsg = 0, .driver = "ENVI"}),
        fakes::writeRaster(directory / "erdas.img", {.epsg = 0, .driver = "HFA"}),
        fakes::writeRaster(directory / "a.jp2", {.epsg = 0, .driver = "JP2OpenJPEG"}),
        unplaced("world.png", "PNG"),
    };
    for (const std::string& path : paths) {
        failEach(path, Requests::Ours);
    }
    // Opening a FAST file asks PROJ for too much to try each request. What is looked at before
    // that, here a band that is no file, is ours.
    const kestms::samples::FastProduct product{{"L7_B10.FST"}, 12, 8, 500000, 5600000, 30};
    fakes::writeFile(directory / "L7_HRF.FST", kestms::samples::fastHeaderText(product));
    ASSERT_EQ(mkfifo((directory / "L7_B10.FST").c_str(), 0600), 0);
    failEach(directory / "L7_HRF.FST", Requests::All, 0);
}

}  // namespace
