#include "fakes/Fakes.h"

#include <gtest/gtest.h>

#include "pyxis/FileReadDescriptor.h"

TEST(FakesTest, HostFindsAFakeCodecAndItsProperty) {
    fakes::World world;
    fakes::TiffCodec codec(world);
    fakes::FrameFacts frame = fakes::bandFrame();
    frame.properties.push_back(fakes::property<fakes::StringProperty>("property 9", "value"));
    codec.add("/a.tif", frame);
    const Pyxis::ImageFormatCodec* found = nullptr;
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier("/a.tif");
    ASSERT_EQ(Pyxis::FileReadDescriptor::findImageFileCodec(file, found),
              Pyxis::FormatDecodability::Decodable);
    Pyxis::FileReadDescriptor descriptor(file, found);
    EXPECT_FALSE(descriptor.setFrame(1));
    const std::unique_ptr<Pyxis::FormatCodecPropertyInterface> property(
        descriptor.getProperty(Pyxis::toWideBuffer("property 9")));
    EXPECT_NE(dynamic_cast<Pyxis::FormatCodecStringProperty*>(property.get()), nullptr);
}
