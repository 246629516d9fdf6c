// A host: opens a multispectral set and prints its bands.
// usage: print-bands TEXTS SET.xml
//   TEXTS    the plug-in's texts, share/kestms/resources/kestmultispectral-en.txt
//   SET.xml  a set that `kestms list` wrote

#include <codec/KestMultispectralCodec.h>
#include <host/CodecRegistry.h>
#include <host/DirectoryFileFinder.h>
#include <host/Text.h>
#include <host/codecs/StandardCodecs.h>
#include <properties/KestMultispectralBandNameProperty.h>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

namespace {

/// The set's document as the host hands it to codecs. Paths in it are taken from the working
/// directory.
Pyxis::FileSpecifier readSet(const char* path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return {Pyxis::StringBuffer(static_cast<int>(text.size()) + 1,
                                reinterpret_cast<const unsigned char*>(text.c_str()),
                                Pyxis::CharacterType::Narrow),
            Pyxis::FileSpecifier::Type::Compound};
}

/// The name that the plug-in publishes for a band. Properties belong to the set that opened them.
std::string bandName(Pyxis::ReadImageFileFrameInterface& band) {
    const std::unique_ptr<Pyxis::FormatCodecPropertySetIterator> properties(band.getProperties());
    std::string result;
    for (properties->start(); !properties->endOfList(); properties->step()) {
        const Pyxis::FormatCodecPropertyInterface* property = properties->openProperty();
        if (const auto* name = dynamic_cast<const KestMultispectralBandNameProperty*>(property)) {
            Pyxis::StringBuffer text;
            name->getBandName(text);
            result = Pyxis::toUtf8(text);
        }
        properties->closeProperty();
    }
    return result;
}

bool printBands(const KestMultispectralCodec& codec, const Pyxis::FileSpecifier& set) {
    Pyxis::DirectoryFileFinder finder;
    if (codec.isDecodableFile(set, &finder) != Pyxis::FormatDecodability::Decodable) {
        return false;
    }
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&set, finder));
    for (int i = 0; image && i < image->getNumFrames(); ++i) {
        const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> band(image->openFrame(i));
        if (!band) {
            return false;
        }
        std::int32_t width = 0;
        std::int32_t height = 0;
        band->frameOp3(&width, &height);
        std::cout << i << ": " << bandName(*band) << ", " << width << " x " << height
                  << " pixels of " << band->frameOp6() << " bits\n";
    }
    return image != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: print-bands TEXTS SET.xml\n";
        return 2;
    }
    // The component codecs read the files of the set; they outlive every image.
    const Pyxis::StandardCodecs components;
    KestMultispectralCodec codec;
    codec.setResourceFileName(Pyxis::fileSpecifier(argv[1]));
    const Pyxis::CodecRegistration registration(codec);
    if (!printBands(codec, readSet(argv[2]))) {
        std::cerr << argv[2] << ": not a set that can be decoded\n";
        return 1;
    }
    return 0;
}
