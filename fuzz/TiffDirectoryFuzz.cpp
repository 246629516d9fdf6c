// The first directory of a TIFF file, as far as the bytes read first hold it.

#include "fuzz/Input.h"
#include "host/tiff/TiffDirectory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    Pyxis::FileHead head;
    head.bytes.assign(reinterpret_cast<const char*>(data), size);
    head.state.size = size;
    const Pyxis::KnownFacts facts = Pyxis::tiffFacts("", head);
    if (facts.transform) {
        const auto& transform = *facts.transform;
        require(transform[1] > 0 && transform[5] < 0, "pixels have a size");
        require(transform[2] == 0 && transform[4] == 0, "the raster is upright");
    }
    require(facts.mayHaveDescription || !facts.mayNameOverviews, "metadata may describe");
    require(facts.systemKey.size() <= 4 * 65536, "keys are bounded");
    if (facts.raster) {
        const Pyxis::KnownRaster& raster = *facts.raster;
        require(raster.width > 0 && raster.height > 0 && raster.bits >= 8, "a raster has pixels");
        require(raster.blockWidth > 0 && raster.blockHeight > 0, "blocks have pixels");
        require(facts.lastBlock.has_value() && !facts.mayHaveDescription && !facts.mayHaveColours,
                "all is known of a plain raster");
    }
    require(facts.projectedSystem >= 0 && facts.projectedSystem < 32767, "a registered code");
    require(!facts.lastBlock || facts.blocks > 0, "the last block is one of them");
    return 0;
}
