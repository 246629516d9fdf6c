#pragma once

#include <memory>
#include <string>
#include <vector>

#include "codec/KestMultispectralCodec.h"
#include "codec/strings/BufferText.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Sets.h"

// The sets that are measured, by their number of components.

namespace benchmarks {

/// A path as long as those of real products.
inline std::string pathOf(int component) {
    return "/data/scenes/2001-07-30/LE07_L1TP_196025_band" + std::to_string(component) + ".tif";
}

inline std::vector<std::string> paths(int count) {
    std::vector<std::string> all;
    for (int i = 0; i < count; ++i) {
        all.push_back(pathOf(i));
    }
    return all;
}

/// The document that lists so many components.
inline std::string listText(int count) {
    return kest::narrowText(fakes::setOf(paths(count)).string());
}

/// The set codec over a fake codec that reads the set's components.
class FakeSet {
  public:
    explicit FakeSet(int count) : specifier_(fakes::setOf(paths(count))) {
        for (int i = 0; i < count; ++i) {
            fakes::FrameFacts frame = fakes::bandFrame();
            // Two pixel sizes, as sets with a panchromatic band have.
            components_.add(pathOf(i), i % 5 == 0 ? fakes::bandFrame(0.5) : frame);
        }
    }

    const KestMultispectralCodec& codec() const { return codec_; }
    const fakes::Codec& components() const { return components_; }
    const Pyxis::FileSpecifier& specifier() const { return specifier_; }
    std::unique_ptr<Pyxis::ReadImageFileInterface> open() const {
        return std::unique_ptr<Pyxis::ReadImageFileInterface>(codec_.openImage(&specifier_));
    }
    /// Clears the record of calls, which would grow without bound.
    void forget() { world_.events.clear(); }

  private:
    fakes::World world_;
    fakes::Codec components_{world_};
    KestMultispectralCodec codec_;
    Pyxis::FileSpecifier specifier_;
};

}  // namespace benchmarks
