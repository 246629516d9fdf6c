#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;
using testing::HasSubstr;

class Readability : public OnFiles {};

TEST_F(Readability, ExplainsWhatCannotBeRead) {
    const std::string tiff = fakes::writeRaster(directory / "whole.tif");
    const std::string nitf =
        fakes::writeRaster(directory / "whole.ntf", {.driver = "NITF", .options = {"ICORDS=N"}});
    const auto content = [&](const std::string& name, const std::string& bytes) {
        fakes::writeFile(directory / name, bytes);
        return directory / name;
    };
    const std::string tiffBytes = fakes::readFile(tiff);
    const std::string nitfBytes = fakes::readFile(nitf);
    const std::string jpegBytes =
        fakes::readFile(fakes::writeRaster(directory / "whole.jp2", {.driver = "JP2OpenJPEG"}));
    ASSERT_EQ(mkfifo((directory / "pipe.tif").c_str(), 0600), 0);
    // Metadata in a TIFF may name any file as overviews.
    const std::string sent = fakes::writeRaster(directory / "sent.tif");
    fakes::changeRaster(sent, [](GDALDataset& file) {
        file.SetMetadataItem("OVERVIEW_FILE", "/vsimem/elsewhere.tif", "OVERVIEWS");
    });
    const std::pair<std::string, const char*> cases[] = {
        {directory / "none.tif", "No such file"},
        {directory.path(), "is a directory"},
        {directory / "pipe.tif", "not a regular file"},
        {content("empty.tif", ""), "empty"},
        {content("virtual.tif", "<VRTDataset rasterXSize=\"1\" rasterYSize=\"1\"/>"),
         "a virtual raster"},
        {content("text.tif", "no raster"), "no known"},
        {content("head.tif", tiffBytes.substr(0, 6)), "ead"},
        {content("half.tif", tiffBytes.substr(0, tiffBytes.size() / 2)), ""},
        {content("cut.tif", tiffBytes.substr(0, tiffBytes.size() - 1)), "cut short"},
        {content("head.ntf", nitfBytes.substr(0, 300)), ""},
        {content("cut.ntf", nitfBytes.substr(0, nitfBytes.size() - 1)), "cut short"},
        {content("cut.jp2", jpegBytes.substr(0, jpegBytes.size() - 1)), "cut short"},
        {"/vsimem/whole.tif", "not a plain file"},
        {"GTIFF_DIR:1:" + tiff, "No such file"},
        {"NITF_IM:0:" + nitf, "No such file"},
        {sent, "overviews"},
        {"", "no file name"},
    };
    for (const auto& [path, reason] : cases) {
        EXPECT_EQ(codecOf(path), nullptr) << path;
        const std::string why = whyNotReadable(fileSpecifier(path));
        EXPECT_TRUE(!why.empty() && why.find(reason) != std::string::npos) << path << why;
        EXPECT_NE(why.rfind(path + ":", 0), 0U) << why;
    }
    const FileSpecifier compound(toWideBuffer(tiff), FileSpecifier::Type::Compound);
    EXPECT_NE(whyNotReadable(compound), "");
    const ImageFormatCodec* codec = nullptr;
    EXPECT_NE(FileReadDescriptor::findImageFileCodec(compound, codec),
              FormatDecodability::Decodable);
    EXPECT_EQ(whyNotReadable(fileSpecifier(tiff)), "");
}

TEST_F(Readability, NamesOfAnyBytesAndOfDriversArePlainNames) {
    for (const char* name : {"b\xE4nd.tif", "GTIFF_DIR:1:x.tif", "NITF_IM:0:x.tif"}) {
        const std::string plain = fakes::writeRaster(directory / "plain.tif");
        std::filesystem::rename(plain, directory / name);
        EXPECT_NE(Opened(directory / name).frame, nullptr) << name;
        const std::filesystem::path before = std::filesystem::current_path();
        std::filesystem::current_path(directory.path());
        EXPECT_NE(Opened(name).frame, nullptr) << name;
        std::filesystem::current_path(before);
    }
}

TEST_F(Readability, NothingIsPrintedOrWrittenBesideTheFiles) {
    const std::string whole = fakes::writeRaster(directory / "whole.tif");
    fakes::writeFile(directory / "cut.tif", fakes::readFile(whole).substr(0, 100));
    testing::internal::CaptureStderr();
    {
        const Opened opened(whole);
        opened.pixels();
        ChannelRange range;
        opened.frame->frameOp11(0, &range);
        codecOf(directory / "cut.tif");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(fakes::namesIn(directory).size(), 2U);
}

TEST(Images, CloseWithTheirCodecAndMayBeDeletedLater) {
    const fakes::TempDirectory directory;
    const std::string path = fakes::writeRaster(directory / "whole.tif");
    const FileSpecifier file = fileSpecifier(path);
    auto codecs = std::make_unique<StandardCodecs>();
    const ImageFormatCodec* codec = codecOf(path);
    const std::unique_ptr<ReadImageFileInterface> image(codec->openImage(&file));
    const std::unique_ptr<ReadImageFileInterface> copy(codec->cloneOpenImage(image.get()));
    std::unique_ptr<ReadImageFileFrameInterface> frame(copy->openFrame(0));
    EXPECT_EQ(copy->getCodec(), codec);
    codec->openImage(&file);  // never deleted, as by a caller that refuses its pixel layout
    codecs.reset();
    for (const auto* closed : {&image, &copy}) {
        EXPECT_EQ((*closed)->getCodec(), nullptr);
        EXPECT_EQ((*closed)->getNumFrames(), 0);
        EXPECT_EQ((*closed)->getNumFiles(), 0);
        EXPECT_EQ((*closed)->openFrame(0), nullptr);
    }
    EXPECT_EQ(frame->frameOp6(), 8);
    frame.reset();
    EXPECT_THAT(openBelow(directory.path()), testing::IsEmpty());
}

}  // namespace
