// The file header and an image subheader of a NITF file, as the file holds them.

#include "fuzz/Input.h"
#include "host/formats/NitfSubheader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    const std::string_view header(reinterpret_cast<const char*>(data), size);
    for (const bool version20 : {false, true}) {
        const auto bands = Pyxis::bandRepresentations(header, version20);
        require(bands.size() <= size, "every band takes a byte of the header");
        for (const std::string& band : bands) {
            require(band.size() <= 2 && !band.ends_with(' '), "representations are trimmed");
        }
    }
    require(Pyxis::endOfImages(header) < 1000 * 10'001'000'000ULL, "segments of bounded lengths");
    require(Pyxis::isVersion20(header) == header.starts_with("NITF02.00"), "the version");
    return 0;
}
