#include "host/raster/Dataset.h"

namespace Pyxis {

std::uint64_t bytesAtOnce(const FrameFacts& facts, std::size_t bands) {
    const std::uint64_t pixels = static_cast<std::uint64_t>(facts.blockWidth) *
                                 static_cast<std::uint64_t>(facts.blockHeight);
    const std::uint64_t pixelBytes =
        (static_cast<std::uint64_t>(facts.bits) + 7) / 8 * static_cast<std::uint64_t>(bands);
    std::uint64_t bytes = 0;
    return __builtin_mul_overflow(pixels, pixelBytes, &bytes) ? UINT64_MAX : bytes;
}

}  // namespace Pyxis
