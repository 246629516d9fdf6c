#pragma once

#include <vector>

#include "bands/NamingScheme.h"
#include "pyxis/FormatCodecPropertySetIterator.h"
#include "pyxis/ImageFormatCodec.h"
#include "reader/BandRecord.h"
#include "sets/ComponentList.h"

namespace kest {

/// Gathers the bands and buckets of a set, component by component.
class BandCollector {
  public:
    /// `naming` is the set's; pixel sizes within `tolerance` share a bucket.
    BandCollector(SetNaming naming, double tolerance);

    /// Opens component `index` of the set through `codec` and adds its band. A component that
    /// cannot be opened or lacks a property adds none.
    void add(int index, const Component& component, const Pyxis::ImageFormatCodec& codec);
    /// Sorts bands and buckets by their numbers; equal numbers keep the order of discovery.
    void sort();

    const std::vector<BandRecord>& bands() const { return bands_; }
    const std::vector<BucketRecord>& buckets() const { return buckets_; }

  private:
    /// The file that names a band, and the size of the band's pixels.
    struct Source : Component {
        Pyxis::Vector2d pixelSize;
    };

    static bool readProperties(Pyxis::FormatCodecPropertySetIterator& properties, bool isFast,
                               Source& source);
    int bucketOf(const Source& source);
    void addBand(int index, const Source& source, const Pyxis::ImageFormatCodec& codec);

    SetNaming naming_;
    double tolerance_;
    std::vector<BandRecord> bands_;
    std::vector<BucketRecord> buckets_;
};

}  // namespace kest
